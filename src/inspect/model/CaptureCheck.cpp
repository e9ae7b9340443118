#include "inspect/model/CaptureCheck.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "inspect/model/Digest.h"
#include "messages/MessageReporter.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf::inspect {

namespace {

constexpr i32 kTrailerSize = 8;

class CaptureCheck {
 public:
  CaptureCheck(CaptureFile& file, FindingListener& listener)
      : file_(file), listener_(listener), length_(file.file().GetLength()) {}

  void run() {
    const LoadResult& result = file_.reader().loadResult();
    if (!file_.reader().valid()) {
      tell({Severity::kDamage, "not accepted", std::max<i64>(result.offset, -1), -1, -1,
            "a sound page-capture file", inWords(result)});
      return;
    }
    used_.push_back({0, file_.reader().tablesEnd});
    used_.push_back({file_.reader().indexPosition, file_.reader().indexEnd});
    checkNames();
    checkPages();
    checkBytes();
  }

 private:
  /// A range of bytes that something refers to.
  struct Stretch {
    i64 begin = 0;
    i64 end = 0;
    i32 customer = -1;
    i32 page = -1;
  };

  void tell(const Finding& finding) { listener_.finding(finding); }

  static bool hasControls(std::u16string_view text) {
    return std::ranges::any_of(text,
                               [](char16_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); });
  }

  void checkNames() {
    std::vector<std::pair<u64, i32>> ids;
    for (i32 c = 0; c < file_.customerCount(); ++c) {
      const CustomerRecord& customer = file_.customer(c);
      Digest digest;
      digest.addText(customer.id.text());
      ids.emplace_back(digest.value(), c);
      if (hasControls(customer.id.view())) {
        tell({Severity::kWarning, "control character", -1, c, -1, "a printable customer id",
              "a control character in it"});
      }
      if (customer.pageCount < 0) {
        tell({Severity::kWarning, "negative page count", -1, c, -1, "a number of pages from 0",
              std::to_string(customer.pageCount)});
      }
      for (i32 p = 0; p < static_cast<i32>(customer.pages.size()); ++p) {
        if (hasControls(file_.page(c, p).name.text().view())) {
          tell({Severity::kWarning, "control character", -1, c, p, "a printable page name",
                "a control character in it"});
        }
      }
    }
    std::ranges::sort(ids);
    for (std::size_t i = 1; i < ids.size(); ++i) {
      if (ids[i].first == ids[i - 1].first) {
        tell({Severity::kWarning, "duplicate customer", -1, ids[i].second, -1, "a unique id",
              "that of customer " + std::to_string(ids[i - 1].second + 1)});
      }
    }
  }

  void checkPages() {
    for (i32 c = 0; c < file_.customerCount(); ++c) {
      for (i32 p = 0; p < static_cast<i32>(file_.customer(c).pages.size()); ++p) {
        if (file_.page(c, p).filePosition >= 0) {
          checkPage(c, p);
        }
      }
      static_cast<void>(messageReporter.takePending());
    }
  }

  void checkPage(i32 c, i32 p) {
    const i32 position = file_.page(c, p).filePosition;
    if (position >= length_) {
      tell({Severity::kDamage, "page outside the file", position, c, p,
            "a position below " + std::to_string(length_), std::to_string(position)});
      return;
    }
    const std::optional<PageFailure>& failure = file_.loadPage(c, p);
    const CompareContext& page = file_.context();
    if (failure) {
      tell({Severity::kDamage, failure->newer ? "newer record" : "damaged page", failure->offset, c,
            p, failure->newer ? "a known version" : "a whole page body", inWords(*failure)});
    } else {
      used_.push_back({position, position + page.bodyLength(), c, p});
    }
    std::set<std::pair<i32, i32>> missing;
    checkParts(page.pageList, c, p, missing);
    for (i32 i = 0; i < page.staticCount; ++i) {
      checkParts(page.staticList(i), c, p, missing);
    }
  }

  // Each missing object is reported once per page.
  void checkParts(const DrawList& list, i32 c, i32 p, std::set<std::pair<i32, i32>>& missing) {
    const i32 position = file_.page(c, p).filePosition;
    for (const DrawPart& part : list.parts()) {
      if (!isKnownPartType(part.type) && missing.insert({-1, 0}).second) {
        tell({Severity::kWarning, "unknown type of part", position, c, p, "a type up to 44",
              std::to_string(partIndex(part.type))});
      }
      if (part.type != PartType::kStaticRef || childList(part) != nullptr) {
        continue;
      }
      const StaticRefFields& fields = part.fields.staticRef;
      if (missing.insert({fields.objectType, fields.staticIndex}).second) {
        tell({Severity::kWarning, "missing object", position, c, p, "a shared object of the file",
              "a reference to " + std::to_string(fields.objectType) + "/" +
                  std::to_string(fields.staticIndex)});
      }
    }
  }

  void checkBytes() {
    std::ranges::sort(used_, {}, [](const Stretch& s) { return std::pair(s.begin, s.end); });
    i64 end = 0;
    const Stretch* last = nullptr;
    for (const Stretch& stretch : used_) {
      const bool isShared =
          last != nullptr && stretch.begin == last->begin && stretch.end == last->end;
      if (stretch.begin > end) {
        tellUnused(end, stretch.begin);
      } else if (stretch.begin < end && !isShared && stretch.page >= 0) {
        tell({Severity::kWarning, "overlapping page", stretch.begin, stretch.customer, stretch.page,
              "a body from " + std::to_string(end) + " on, or one that is shared as a whole",
              "bytes " + std::to_string(stretch.begin) + " to " + std::to_string(stretch.end)});
      } else if (stretch.begin < end && !isShared) {
        tell({Severity::kWarning, "overlapping page", stretch.begin, last->customer, last->page,
              "a body before " + std::to_string(stretch.begin),
              "one up to " + std::to_string(end)});
      }
      end = std::max(end, stretch.end);
      last = &stretch;
    }
    const bool hasTrailer = file_.reader().hasTrailer;
    const i64 bodyEnd = length_ - (hasTrailer ? kTrailerSize : 0);
    if (end < bodyEnd) {
      tellUnused(end, bodyEnd);
    }
  }

  void tellUnused(i64 begin, i64 end) {
    tell({Severity::kWarning, "unused bytes", begin, -1, -1, "a reference to them",
          std::to_string(end - begin) + " bytes without a reference"});
  }

  CaptureFile& file_;
  FindingListener& listener_;
  i64 length_;
  std::vector<Stretch> used_;
};

}  // namespace

void checkCapture(CaptureFile& file, FindingListener& listener) {
  CaptureCheck(file, listener).run();
}

}  // namespace rvf::inspect
