#include "inspect/output/Output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "inspect/model/Trouble.h"
#include "text/NativeText.h"

namespace rvf::inspect {

Output::Output(std::string path) : path_(std::move(path)) {
  if (!path_.empty()) {
    file_.reset(std::fopen(path_.c_str(), "wb"));
    if (file_ == nullptr) {
      fail(errno);
    }
  }
}

void Output::finish() {
  writeOut();
  std::FILE* file = file_ ? file_.get() : stdout;
  if (std::fflush(file) != 0) {
    fail(errno);
  }
  if (file_ != nullptr && std::fclose(file_.release()) != 0) {
    fail(errno);
  }
}

bool Output::takesColour() const {
  const char* noColour = std::getenv("NO_COLOR");
  const bool isRefused = noColour != nullptr && *noColour != '\0';
  return !isRefused && file_ == nullptr && ::isatty(STDOUT_FILENO) == 1;
}

void Output::writeOut() {
  std::FILE* file = file_ ? file_.get() : stdout;
  if (std::fwrite(buffer_.data(), 1, buffer_.size(), file) != buffer_.size()) {
    fail(errno);
  }
  buffer_.clear();
}

void Output::fail(int error) const {
  const std::string reason = toNative(systemErrorText(error).view());
  throw Trouble(path_.empty() ? "standard output" : path_, reason);
}

void refuseToOverwrite(const std::string& output, const std::string& input) {
  std::error_code ignored;
  if (!output.empty() && std::filesystem::equivalent(output, input, ignored)) {
    throw Trouble(output, "is also an input");
  }
}

}  // namespace rvf::inspect
