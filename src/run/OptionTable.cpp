#include "run/OptionTable.h"

#include <algorithm>

#include "messages/catalogue/MessageRecord.h"
#include "text/encoding/CodePages.h"

namespace rvf {

namespace {

struct NamedEncoding {
  std::u16string_view name;
  i32 id;
};

constexpr NamedEncoding kMessageEncodings[] = {
    {u"UTF16", encoding_id::kUtf16},
    {u"UTF16LE", encoding_id::kUtf16Le},
    {u"UTF16BE", encoding_id::kUtf16Be},
    {u"ASCII", encoding_id::kAscii},
    {u"EBCDIC", encoding_id::kEbcdic},
    {u"UTF8", encoding_id::kUtf8},
    {u"LATIN1", encoding_id::kWindowsLatin1},
    {u"LATIN2", encoding_id::kWindowsLatin2},
    {u"ISO88592", encoding_id::kLatin2},
    {u"SJIS", encoding_id::kShiftJis},
    {u"BIG5", encoding_id::kBig5},
};

constexpr NamedEncoding kControlFileEncodings[] = {
    {u"UTF8", encoding_id::kUtf8},
    {u"UTF16LE", encoding_id::kUtf16Le},
    {u"UTF16BE", encoding_id::kUtf16Be},
};

eString upperCased(const eString& text) {
  eString upper = text;
  upper.MakeUpper();
  return upper;
}

i32 encodingId(std::span<const NamedEncoding> table, const eString& name, i32 otherwise) {
  const auto row = std::ranges::find(table, name.text(), &NamedEncoding::name);
  return row == table.end() ? otherwise : row->id;
}

bool setFiles(RunOptions& options, const eString& value) {
  const i32 comma = value.Find(u',', 0);
  if (comma <= 0) {
    return false;
  }
  options.firstFile = value.Left(comma);
  options.secondFile = value.Mid(comma + 1);
  return true;
}

bool setSimpleReturn(RunOptions& options, const eString&) {
  options.simpleReturn = true;
  return true;
}

bool setPositionTolerance(RunOptions& options, const eString& value) {
  options.tolerances.positionTolerance = leadingDecimal(value.text());
  return true;
}

bool setLineTolerance(RunOptions& options, const eString& value) {
  options.tolerances.lineTolerance = leadingDecimal(value.text());
  return true;
}

bool setBothTolerances(RunOptions& options, const eString& value) {
  return setPositionTolerance(options, value) && setLineTolerance(options, value);
}

bool setDifferenceFile(RunOptions& options, const eString& value) {
  options.differenceFile = value;
  return true;
}

bool setMessageFile(RunOptions& options, const eString& value) {
  options.messageFile = value;
  return true;
}

bool setMessageEncoding(RunOptions& options, const eString& value) {
  // An unknown name is accepted and has no effect, so that jobs written for other encodings still
  // run.
  options.msgEncoding = encodingId(kMessageEncodings, upperCased(value), options.msgEncoding);
  return true;
}

bool setDbcsMode(RunOptions& options, const eString& value) {
  options.dbcsMode = upperCased(value).text() == u"TRUE";
  return true;
}

bool setControlFile(RunOptions& options, const eString& value) {
  options.addControlFile(value);
  return true;
}

bool setControlFileEncoding(RunOptions& options, const eString& value) {
  options.controlFileEncoding = value;
  return true;
}

// Values that are accepted, but not as they are written

std::u16string_view withoutSignAndZeros(std::u16string_view number) {
  number.remove_prefix(number.starts_with(u'+') || number.starts_with(u'-') ? 1 : 0);
  while (number.size() > 1 && number.front() == u'0') {
    number.remove_prefix(1);
  }
  return number;
}

eString numberTakenAs(const RunOptions&, const eString& value) {
  eString written = value;
  written.TrimLeft();
  eString number;
  number.Format(u"%d", leadingDecimal(value.text()));
  eString text;
  if (withoutSignAndZeros(written.text()) != withoutSignAndZeros(number.text())) {
    text.Format(u"taken as %ls", number);
  }
  return text;
}

eString messageEncodingTakenAs(const RunOptions& options, const eString& value) {
  const eString name = upperCased(value);
  if (std::ranges::find(kMessageEncodings, name.text(), &NamedEncoding::name) !=
      std::end(kMessageEncodings)) {
    return {};
  }
  const auto* row = std::ranges::find(kMessageEncodings, options.msgEncoding, &NamedEncoding::id);
  eString text;
  text.Format(u"no such encoding; the message file is written in %ls", eString(row->name));
  return text;
}

eString controlFileEncodingTakenAs(const RunOptions&, const eString& value) {
  const bool isKnown = value.text() == kDefaultControlFileEncoding ||
                       controlFileEncodingId(value) != encoding_id::kLatin1;
  return isKnown ? u"" : u"no such encoding (names are in capitals); read as ISO88591";
}

eString dbcsModeTakenAs(const RunOptions& options, const eString& value) {
  constexpr std::u16string_view kUsualNegations[] = {u"", u"FALSE", u"NO", u"OFF", u"0"};
  const bool isExpected =
      options.dbcsMode ||
      std::ranges::find(kUsualNegations, upperCased(value).text()) != std::end(kUsualNegations);
  return isExpected ? u"" : u"taken as FALSE; only TRUE turns it on";
}

constexpr OptionRow kOptions[] = {
    {u"COMPARE", u"FIRST,SECOND", u"the two page-capture files", setFiles},
    {u"POS_TOLERANCE", u"N", u"positions may differ by N units", setPositionTolerance,
     numberTakenAs},
    {u"LINE_TOLERANCE", u"N", u"line widths may differ by N units", setLineTolerance,
     numberTakenAs},
    {u"DIFFTOLERANCE", u"N", u"both tolerances", setBothTolerances, numberTakenAs},
    {u"DIFFERENCEFILE", u"PATH", u"the difference file to write", setDifferenceFile},
    {u"MESSAGEFILE", u"PATH", u"the message file to write", setMessageFile},
    {u"MSGENCODE", u"NAME",
     u"its encoding: ASCII BIG5 EBCDIC ISO88592 LATIN1 LATIN2\n"
     u"SJIS UTF16 UTF16BE UTF16LE UTF8",
     setMessageEncoding, messageEncodingTakenAs},
    {u"SIMPLERETURN", u"", u"exit status 0 or 1 instead of the difference bits", setSimpleReturn},
    {u"DBCS_MODE", u"TRUE", u"old capture files have two bytes a character", setDbcsMode,
     dbcsModeTakenAs},
    {u"CONTROLFILE", u"PATH", u"a file of further options, one a line", setControlFile},
    {u"CONTROLFILEENCODING", u"NAME", u"its encoding: ISO88591 UTF16BE UTF16LE UTF8",
     setControlFileEncoding, controlFileEncodingTakenAs},
};

}  // namespace

std::span<const OptionRow> optionTable() { return kOptions; }

const OptionRow* findOption(const eString& name, bool withValue) {
  const auto* row = std::ranges::find_if(kOptions, [&](const OptionRow& option) {
    return option.name == name.text() && option.takesValue() == withValue;
  });
  return row == std::end(kOptions) ? nullptr : row;
}

i32 controlFileEncodingId(const eString& name) {
  return encodingId(kControlFileEncodings, name, encoding_id::kLatin1);
}

}  // namespace rvf
