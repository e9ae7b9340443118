// Replaces the fuzzing engine where there is none: runs the fuzz target once on each file in the
// given folders. Options of the engine are ignored.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  int replayed = 0;
  for (int i = 1; i < argc; ++i) {
    if (argv[i][0] == '-') continue;
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      std::ifstream file(entry.path(), std::ios::binary);
      // A block of the exact size, so that reads beyond it are detected.
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      if (!file) throw std::runtime_error("cannot read " + entry.path().string());
      const std::vector<std::uint8_t> block(bytes.begin(), bytes.end());
      LLVMFuzzerTestOneInput(block.data(), block.size());
      ++replayed;
    }
  }
  std::printf("%d inputs\n", replayed);
  return replayed > 0 ? 0 : 1;
}
