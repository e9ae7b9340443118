#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace rvf::test {

// Binaries contain no paths of the build machine. The tests find the build by their own location in
// it, and the sources by a file that the build leaves next to them.

/// A file in the build, such as "rvfcompare".
inline std::string builtPath(const std::string& name) {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / name;
}

/// A file or folder in the sources, such as "tests/reference".
inline std::string sourcePath(const std::string& name) {
  std::ifstream file(builtPath("tests/source-folder"));
  std::string folder;
  if (!std::getline(file, folder))
    throw std::runtime_error("cannot read " + builtPath("tests/source-folder"));
  return std::filesystem::path(folder) / name;
}

}  // namespace rvf::test
