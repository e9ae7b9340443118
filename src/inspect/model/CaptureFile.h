#pragma once

#include <optional>
#include <string>

#include "capture/CompareContext.h"
#include "capture/RvfReader.h"
#include "storage/DiskFile.h"

namespace rvf::inspect {

/// How text is stored in files too old to specify it.
enum class OldText { kOneByte, kTwoBytes };

/// Whether a file that a run would reject is an error at once.
enum class Acceptance { kRequired, kOptional };

/// A page-capture file on disk, loaded: its tables, its index, and one page at a time.
class CaptureFile {
 public:
  /// Throws Trouble with the reason if the file cannot be opened or, with kRequired, is not
  /// accepted.
  CaptureFile(const std::string& path, OldText oldText,
              Acceptance acceptance = Acceptance::kRequired);

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] RvfReader& reader() { return reader_; }
  [[nodiscard]] const RvfReader& reader() const { return reader_; }
  [[nodiscard]] CompareContext& context() { return context_; }
  [[nodiscard]] const CompareContext& context() const { return context_; }
  [[nodiscard]] eDiskFile& file() { return file_; }

  [[nodiscard]] i32 customerCount() const { return static_cast<i32>(reader_.customers.size()); }
  [[nodiscard]] const CustomerRecord& customer(i32 c) const {
    return reader_.customers[static_cast<std::size_t>(c)];
  }
  [[nodiscard]] const PageRecord& page(i32 c, i32 p) const {
    return customer(c).pages[static_cast<std::size_t>(p)];
  }

  /// Loads a page into the context. The result says why it is incomplete, if it is; everything
  /// before that place has been read.
  const std::optional<PageFailure>& loadPage(i32 customer, i32 page);

 private:
  std::string path_;
  eDiskFile file_;
  CompareContext context_;
  RvfReader reader_;
};

/// Describes what is wrong with a file that was not accepted.
[[nodiscard]] std::string inWords(const LoadResult& result);
/// The same for a page, without its location.
[[nodiscard]] std::string inWords(const PageFailure& failure);

}  // namespace rvf::inspect
