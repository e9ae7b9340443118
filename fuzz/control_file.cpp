// A control file, preceded by the number of its encoding: its lines and the options on them.

#include <string>

#include "run/OptionTable.h"
#include "support/Fuzz.h"
#include "text/encoding/RecordReader.h"

namespace rvf::fuzz {
namespace {

constexpr const char16_t* kNames[] = {u"JEF-930", u"UTF-16", u"utf-8",      u"Shift_JIS",
                                      u"IBM-930", u"hz",     u"ISO_2022JP", u"UTF-7"};
constexpr u8 kFirstName = 48;  // smaller values: the ids from -2 on

void parseLine(RunOptions& options, const eString& line) {
  const RunOptions before = options;
  if (!options.parseOption(line)) {
    require(options.tolerances == before.tolerances &&
                options.simpleReturn == before.simpleReturn &&
                options.firstFile == before.firstFile && options.secondFile == before.secondFile &&
                options.controlFiles.size() == before.controlFiles.size(),
            "a line that is not understood changes nothing");
    static_cast<void>(printableCopy(line));
  }
}

}  // namespace

void checkInput(FuzzInput input) {
  const u8 encoding = input.take();
  const i32 longest = (input.take() & 1) != 0 ? 32767 : 40;
  const char16_t* name = encoding >= kFirstName ? kNames[encoding % std::size(kNames)] : u"";
  InputFile lines(input.rest());
  RecordReader reader;
  reader.Attach(&lines.file);
  RunOptions options;
  if (reader.Open(name, encoding - 2, longest)) {
    std::size_t records = 0;
    const char16_t* text = nullptr;
    for (i32 length = 0; reader.ReadRecord(text, length) >= 0; ++records) {
      require(length <= longest && text[length] == 0, "a line has its length and its end");
      parseLine(options, eString(std::u16string_view(text, static_cast<std::size_t>(length))));
    }
    eString errorText;
    require(reader.GetErrorText(errorText) == reader.GetWarningText(errorText), "one error");
    require(records <= input.rest().size(), "no line comes from nothing");
  }
  std::string cleaned(input.rest());
  cleanJefRecord(cleaned);
  require(cleaned.size() <= input.rest().size(), "cleaning only removes");
}

}  // namespace rvf::fuzz
