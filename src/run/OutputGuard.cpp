#include "run/OutputGuard.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "messages/catalogue/CatalogueSearch.h"
#include "messages/catalogue/MessageCatalogue.h"
#include "run/RunOptions.h"
#include "text/NativeText.h"

namespace rvf {

namespace {

namespace fs = std::filesystem;

struct FileIdentity {
  dev_t device{};
  ino_t number{};
  std::string newName;  // for a file that does not exist yet; the numbers are its folder's

  bool operator==(const FileIdentity&) const = default;
};

/// A path and what it refers to.
struct Place {
  explicit Place(const eString& path);

  std::optional<FileIdentity> file;  // empty: a device, or nothing can be opened there
  int failure = 0;                   // the error number if this could not be determined
};

/// Where opening a path for writing would create the file: the end of a chain of dangling links.
fs::path followDanglingLinks(fs::path path) {
  constexpr int kMostLinks = 40;
  std::error_code failure;
  for (int i = 0; i < kMostLinks && fs::is_symlink(fs::symlink_status(path, failure)); ++i) {
    path = path.parent_path() / fs::read_symlink(path, failure);
  }
  return path;
}

/// Errors that mean that this process cannot reach the path, so the run cannot open it either.
bool leadsNowhere(int errorNumber) {
  constexpr int kErrors[] = {ENOENT, ENOTDIR, EACCES, ELOOP, ENAMETOOLONG};
  return std::ranges::find(kErrors, errorNumber) != std::end(kErrors);
}

/// Returns 0, or the system's error number.
int lookUp(const char* path, struct stat& status) { return stat(path, &status) == 0 ? 0 : errno; }

Place::Place(const eString& path) {
  const std::string native = toNative(path.text());
  std::string newName;
  struct stat status {};
  int error = lookUp(native.c_str(), status);
  if (error == ENOENT && !native.empty()) {
    const fs::path target = followDanglingLinks(native);
    const fs::path folder = target.parent_path();
    newName = target.filename();
    error = lookUp(folder.empty() ? "." : folder.c_str(), status);
  }
  if (error != 0) {
    failure = leadsNowhere(error) ? 0 : error;
  } else if (!S_ISCHR(status.st_mode)) {
    file = FileIdentity{status.st_dev, status.st_ino, newName};
  }
}

struct GuardedFile {
  Place place;
  const char16_t* objection;
};

/// Everything that the run reads. The catalogue is looked for only when the messages are written,
/// so no output may create a file of that name before then.
std::vector<GuardedFile> guardedFiles(const RunOptions& options) {
  constexpr const char16_t* kInput = u"It is also an input of this run";
  constexpr const char16_t* kControlFile = u"It is also a control file of this run";
  constexpr const char16_t* kCatalogue = u"It is also the message catalogue of this run";
  std::vector<GuardedFile> files = {{Place(options.firstFile), kInput},
                                    {Place(options.secondFile), kInput},
                                    {Place(kCatalogueFile), kCatalogue},
                                    {Place(findCatalogue(kCatalogueFile)), kCatalogue}};
  for (const eString& path : options.controlFiles) {
    files.push_back({Place(path), kControlFile});
  }
  return files;
}

eString objectionTo(const Place& output, const std::vector<GuardedFile>& guarded) {
  if (output.failure != 0) {
    return systemErrorText(output.failure);
  }
  for (const GuardedFile& file : guarded) {
    // A file that could not be identified might be the output itself.
    if (file.place.failure != 0) {
      return systemErrorText(file.place.failure);
    }
    if (output.file && output.file == file.place.file) {
      return file.objection;
    }
  }
  return {};
}

}  // namespace

OutputObjections checkOutputs(const RunOptions& options) {
  const std::vector<GuardedFile> guarded = guardedFiles(options);
  const Place messageFile(options.messageFile);
  const Place differenceFile(options.differenceFile);
  OutputObjections objections{objectionTo(messageFile, guarded),
                              objectionTo(differenceFile, guarded)};
  if (messageFile.file && messageFile.file == differenceFile.file) {
    objections.messageFile = u"It is also the difference file of this run";
  }
  return objections;
}

}  // namespace rvf
