#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/Integers.h"
#include "storage/Archive.h"
#include "storage/MemFile.h"

namespace rvf::fuzz {

/// Takes values from the front of a fuzzed input. After its end, values are 0 and stretches empty.
class FuzzInput {
 public:
  explicit FuzzInput(std::string_view bytes) : left_(bytes) {}

  template <class T = u8>
  T take() {
    static_assert(std::is_arithmetic_v<T>);
    T value{};
    const std::string_view bytes = takeBytes(sizeof(T));
    if (!bytes.empty()) std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }

  std::string_view takeBytes(std::size_t count) {
    const std::string_view bytes = left_.substr(0, count);
    left_.remove_prefix(bytes.size());
    return bytes;
  }

  [[nodiscard]] std::string_view rest() const { return left_; }

 private:
  std::string_view left_;
};

/// Defined by each target: checks one input, starting from the process-wide state of a new process.
void checkInput(FuzzInput input);

/// Ends the process with a trace if something that must hold for every input does not.
inline void require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

/// A memory file on a block of exactly these bytes, so that a sanitizer detects every read beyond
/// them.
struct InputFile {
  explicit InputFile(std::string_view bytes) : block(bytes.begin(), bytes.end()) {}

  std::vector<char> block;
  eMemFile file{reinterpret_cast<std::byte*>(block.data()), static_cast<i32>(block.size()), 0};
};

/// An archive that loads from a file.
struct Loader : eArchive {
  explicit Loader(FileObject& file) : eArchive(file, Mode::kLoad, kSectionBufferSize) {}
};

}  // namespace rvf::fuzz
