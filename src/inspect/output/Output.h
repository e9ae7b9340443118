#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace rvf::inspect {

/// Where a command writes: standard output or a file. Buffered; a failed write throws Trouble with
/// the path and the reason.
class Output {
 public:
  /// An empty path means standard output.
  explicit Output(std::string path);
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  void write(std::string_view bytes) {
    buffer_ += bytes;
    if (buffer_.size() >= kBufferSize) {
      writeOut();
    }
  }
  void line(std::string_view bytes) {
    write(bytes);
    write("\n");
  }
  /// Writes the rest. Must be called before the output is destroyed if its failure matters.
  void finish();

  /// Whether the output is a terminal whose user has not turned colours off.
  [[nodiscard]] bool takesColour() const;

 private:
  static constexpr std::size_t kBufferSize = 65536;

  void writeOut();
  [[noreturn]] void fail(int error) const;

  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::string path_;
  std::unique_ptr<std::FILE, Closer> file_;
  std::string buffer_;
};

/// Throws Trouble if an output is also an input. Paths may be empty.
void refuseToOverwrite(const std::string& output, const std::string& input);

}  // namespace rvf::inspect
