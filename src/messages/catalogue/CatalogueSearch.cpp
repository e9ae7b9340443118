#include "messages/catalogue/CatalogueSearch.h"

#include <unistd.h>

#include <system_error>
#include <vector>

#include "text/NativeText.h"

namespace rvf {

namespace {

namespace fs = std::filesystem;

constexpr const char* kShareFolder = "share/rvfcompare";

/// The folders that are searched after the working directory, in this order.
std::vector<fs::path> catalogueFolders(const fs::path& programFile) {
  std::vector<fs::path> folders;
  if (!programFile.empty()) {
    const fs::path programFolder = programFile.parent_path();
    folders.push_back(programFolder);
    folders.push_back(programFolder.parent_path() / kShareFolder);
  }
#ifdef RVF_INSTALL_SHARE_DIR
  folders.emplace_back(RVF_INSTALL_SHARE_DIR);
#endif
  return folders;
}

bool isReadableFile(const fs::path& path) {
  std::error_code failure;
  return fs::is_regular_file(path, failure) && access(path.c_str(), R_OK) == 0;
}

}  // namespace

eString findCatalogue(const eString& name) {
  std::error_code failure;
  return findCatalogue(name, fs::read_symlink("/proc/self/exe", failure));
}

eString findCatalogue(const eString& name, const fs::path& programFile) {
  const fs::path bareName = toNative(name.text());
  if (bareName.has_parent_path() || isReadableFile(bareName)) {
    return name;
  }
  for (const fs::path& folder : catalogueFolders(programFile)) {
    const fs::path candidate = folder / bareName;
    if (isReadableFile(candidate)) {
      return fromNative(candidate.native());
    }
  }
  return name;
}

}  // namespace rvf
