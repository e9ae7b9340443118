// Two page-capture files, explained, checked, drawn and written in every format; what is written
// has to be what it claims to be.

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <string>

#include "inspect/model/CaptureCheck.h"
#include "inspect/model/Inspection.h"
#include "inspect/model/Trouble.h"
#include "inspect/output/ChangesWriter.h"
#include "inspect/output/CheckWriter.h"
#include "inspect/output/PageDrawing.h"
#include "support/CapturePair.h"

namespace rvf::fuzz {
namespace {

using namespace rvf::inspect;

/// Files of this process, in memory where the system has room for that.
struct Scratch {
  Scratch() {
    const char* folder = std::getenv("TMPDIR");
    base = std::string(folder == nullptr ? "/dev/shm" : folder) + "/rvfinspect-fuzz-" +
           std::to_string(::getpid());
  }
  ~Scratch() {
    for (const char* name : {"a", "b", "out"}) ::unlink(path(name).c_str());
  }
  [[nodiscard]] std::string path(const char* name) const { return base + name; }
  [[nodiscard]] std::string write(const char* name, std::string_view bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
    return path(name);
  }
  [[nodiscard]] std::string read(const char* name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::string base;
};

void requireJsonLines(const std::string& text) {
  std::size_t begin = 0;
  for (std::size_t end = text.find('\n'); end != text.npos; end = text.find('\n', begin)) {
    require(nlohmann::json::accept(text.substr(begin, end - begin)), "a line is JSON");
    begin = end + 1;
  }
}

void requireXml(const std::string& text) {
  require(pugi::xml_document().load_buffer(text.data(), text.size()), "it is XML");
}

void requireNoControls(const std::string& text) {
  for (const char c : text)
    require(c == '\n' || static_cast<u8>(c) >= 0x20, "no control character");
}

void explain(const CapturePair& pair, const Scratch& scratch, int format) {
  const auto oldText = pair.flag(0) ? OldText::kTwoBytes : OldText::kOneByte;
  CaptureFile first(scratch.path("a"), oldText), second(scratch.path("b"), oldText);
  Output output(scratch.path("out"));
  const auto writer = format == 0   ? makeTextChangesWriter(output, {})
                      : format == 1 ? makeJsonChangesWriter(output, true)
                                    : makeJUnitChangesWriter(output);
  inspectFiles(first, second, {.tolerances = pair.tolerances, .oldText = oldText}, *writer);
  output.finish();
  const std::string text = scratch.read("out");
  requireNoControls(text);
  if (format == 1) requireJsonLines(text);
  if (format == 2) requireXml(text);
}

void checkAndDraw(const Scratch& scratch) {
  CaptureFile file(scratch.path("a"), OldText::kOneByte, Acceptance::kOptional);
  Output output(scratch.path("out"));
  const auto writer = makeJsonCheckWriter(output, file);
  checkCapture(file, *writer);
  writer->end();
  output.finish();
  requireJsonLines(scratch.read("out"));
  require(file.reader().valid() || writer->damage() > 0, "a file that is refused is damaged");
  if (file.reader().valid() && !file.customer(0).pages.empty()) {
    static_cast<void>(file.loadPage(0, 0));
    requireXml(drawPage(file.context(), {}));
  }
}

}  // namespace

void checkInput(FuzzInput input) {
  const CapturePair pair(input);
  const Scratch scratch;
  static_cast<void>(scratch.write("a", pair.first) + scratch.write("b", pair.second));
  checkAndDraw(scratch);
  try {
    for (int format = 0; format < 3; ++format) explain(pair, scratch, format);
  } catch (const Trouble&) {
    // One of the files is refused.
  }
}

}  // namespace rvf::fuzz
