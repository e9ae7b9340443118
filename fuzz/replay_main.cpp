// Stands in for the fuzzing engine where there is none: runs the fuzz target once on each file that
// is named, and on all files of each folder. Options of the engine are passed over.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file) {
    std::fprintf(stderr, "cannot read %s\n", path.c_str());
    return false;
  }
  // An own block of the exact size: what reads behind it is found.
  const std::vector<std::uint8_t> block(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(block.data(), block.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  int replayed = 0;
  for (int i = 1; i < argc; ++i) {
    if (argv[i][0] == '-') {
      continue;
    }
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(argv[i])) {
      for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
        if (entry.is_regular_file()) {
          files.push_back(entry.path());
        }
      }
    } else {
      files.emplace_back(argv[i]);
    }
    for (const auto& path : files) {
      if (!replay(path)) {
        return 1;
      }
      ++replayed;
    }
  }
  std::printf("%d inputs\n", replayed);
  return replayed > 0 ? 0 : 1;
}
