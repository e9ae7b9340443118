#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace rvf::test {

/// A new folder that is removed with all its contents. All failures throw.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "rvfcompare-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp: " + name);
    path_ = name;
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string path(std::string_view name) const { return (path_ / name).string(); }
  bool has(std::string_view name) const { return std::filesystem::exists(path_ / name); }

  /// Returns the path of the written file.
  std::string write(std::string_view name, std::string_view bytes) const {
    if (!(std::ofstream(path_ / name, std::ios::binary) << bytes).flush()) {
      throw std::runtime_error("cannot write " + path(name));
    }
    return path(name);
  }
  std::string read(std::string_view name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path(name));
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::filesystem::path path_;
};

}  // namespace rvf::test
