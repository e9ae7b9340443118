#include "run/OperatorNotes.h"

#include <cstdio>
#include <string>

#include "run/OptionTable.h"
#include "storage/FileObject.h"
#include "text/NativeText.h"

namespace rvf {

namespace {

// Where the explanations of the usage text begin.
constexpr std::size_t kHelpColumn = 30;

std::string usageOf(const OptionRow& option) {
  std::string text = "  -";
  text += toNative(option.name);
  if (option.takesValue()) {
    text += '=';
    text += toNative(option.valueForm);
  }
  text.append(text.size() < kHelpColumn ? kHelpColumn - text.size() : 1, ' ');
  for (const char c : toNative(option.help)) {
    text += c;
    if (c == '\n') {
      text.append(kHelpColumn, ' ');
    }
  }
  return text + "\n";
}

void tellFileProblem(const char* label, const eString& path, const eString& reason) {
  std::fprintf(stderr, "rvfcompare: %s %s: %s\n", label, toNative(path.text()).c_str(),
               toNative(reason.text()).c_str());
}

std::string usageText() {
  std::string text =
      "usage: rvfcompare [OPTION]...\n"
      "Compares two page-capture files. Options, in any case, with - or / in front:\n";
  for (const OptionRow& option : optionTable()) {
    text += usageOf(option);
  }
  return text +
         "Exit status: 0 identical, 255 failed, otherwise the bits of what differs\n"
         "(with -SIMPLERETURN 1).\n";
}

}  // namespace

void tellFailedOptions(const RunOptions& options) {
  if (options.controlFileFailure) {
    const auto& [path, reason] = *options.controlFileFailure;
    tellFileProblem("control file", path, reason);
  }
  if (options.badArgument || options.badControlLine) {
    std::fputs(usageText().c_str(), stderr);
  }
}

void tellMessageFileProblem(const eString& path, const eString& reason) {
  tellFileProblem("message file", path, reason);
}

void tellTooLarge(const eString& path, i64 length) {
  std::fprintf(stderr, "rvfcompare: %s: too large: it has %lld bytes, the limit is %lld\n",
               toNative(path.text()).c_str(), static_cast<long long>(length),
               static_cast<long long>(kLongestFile));
}

void reportFatalError(const char* reason) { std::fprintf(stderr, "rvfcompare: %s\n", reason); }

}  // namespace rvf
