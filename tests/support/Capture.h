#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Parts.h"

namespace rvf::test {

// A whole capture file as a test writes it. The fields have the values of an ordinary, valid file;
// a test names those that it needs to be different. Other damage is done to the bytes. A count that
// is not given is the number of items.

inline constexpr int kNewestList = 107, kNewestStatic = 111, kIndexTag = -102, kNoTag = 0;
inline constexpr int kNarrowMagic = 12345679, kWideMagic = 97654321, kTrailerMagic = 87654321;

struct ListFields {
  int version = kNewestList, partVersion = kNewestPart;
  std::vector<Part> parts{};
  std::optional<int> count{};
  int originX = 0, originY = 0, contentTally = 1, skippedByte = 2, hasBytes = 3;
  int byteA = 4, byteB = 5, listFlags = 0, valueA = 6, valueB = 7, listExtra = 8;
  Sections sections{};
};
void writeList(ByteWriter& w, const ListFields& f);

struct StaticFields {
  int version = kNewestStatic;
  ListFields first{};
  std::optional<ListFields> second{};
  std::u16string name = u"static";
  int valueA = 1, valueB = 2, valueC = 3, valueD = 4, valueE = 5, valueF = 6;
  int indexA = 7, indexB = 8, skipped = 9;
  Sections sections{};
};
void writeStatic(ByteWriter& w, const StaticFields& f);

struct PlacedList {
  ListFields list{};
  int x = 10, y = 20;
};
struct PageBody {
  ListFields list{};
  std::vector<PlacedList> placed{};
  std::optional<int> staticCount{};
  int extentA = 8, extentB = 9;
};
void writePageBody(ByteWriter& w, const PageBody& f);

/// A page of the index. A record without a tag is in the oldest form.
struct PageFields {
  std::u16string name = u"P1";
  std::optional<PageBody> body{};
  std::optional<int> filePosition{};  // what the index says, if not where the body is
  int leadValue = 1, tailValue = 0, tag = kIndexTag;
  Sections sections{};
};
struct CustomerFields {
  std::u16string id = u"C1";
  std::vector<PageFields> pages = {{}};
  std::optional<int> pageCount{};
  int leadValue = 1, tag = kIndexTag;
  Sections sections{};
};
/// `filePositions` has one entry per page.
void writeCustomer(ByteWriter& w, const CustomerFields& f, const std::vector<int>& filePositions);

struct CaptureFields {
  int magic = kNarrowMagic, version = 3, resolution = 300;
  std::optional<bool> wide{};  // how texts are written; from the magic, if not given
  std::u16string label{};
  double firstDate = 0, secondDate = 0;
  int firstStatus = 2, secondStatus = 2;
  std::vector<StaticFields> statics21{}, statics24{}, statics23{}, statics175{};
  std::vector<CustomerFields> customers = {{}};
  std::optional<int> customerCount{};
};

/// A written file and where its pieces are.
struct Capture {
  std::string bytes;
  std::vector<int> bodyOffsets;  // of all pages in index order; -1 without a body
  int indexOffset = 0;
};
Capture writeCapture(const CaptureFields& f);

/// A page whose body holds these parts.
PageFields page(std::vector<Part> parts, int partVersion = kNewestPart);
/// A file with one customer who has these pages.
CaptureFields captureOf(std::vector<PageFields> pages);
/// The bytes of a file with one page that has these parts.
std::string onePage(std::vector<Part> parts, int partVersion = kNewestPart);

/// The smallest valid file: customer "C1" with a page "P1" that has no body. Its index is found
/// through the first word (103 bytes) or through the trailer (111 bytes).
std::string smallestCapture(bool trailer);

}  // namespace rvf::test
