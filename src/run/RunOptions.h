#pragma once

#include <optional>
#include <span>
#include <vector>

#include "base/Integers.h"
#include "compare/Tolerances.h"
#include "text/eString.h"
#include "text/encoding/CodePages.h"

namespace rvf {

constexpr const char16_t* kDefaultControlFileEncoding = u"ISO88591";

/// Whether the control files that the command line names are read.
enum class ControlFiles { kRead, kIgnored };

/// The settings of a run, with their defaults. They come from the command line and then from the
/// control files that it names, all in the same syntax: an option line is a comment, or a dash or
/// slash, a name and possibly "=value" (OptionTable.h). If a name is given several times, the last
/// one wins.
struct RunOptions {
  /// Why a control file could not be used, for the operator.
  struct ControlFileFailure {
    eString path;
    eString reason;
  };

  /// A note about one option for the operator.
  struct Note {
    eString place;  // "FILE:LINE" of a control file; empty for the command line
    eString option;
    eString text;
  };

  std::vector<Note> badOptions;       // not understood, with the reason
  std::vector<Note> warnings;         // accepted, but not as written
  bool badArgument = false;           // an argument was not understood
  std::vector<eString> controlFiles;  // in the order of reading, each path once
  bool badControlLine = false;        // a line of a control file was not understood
  eString badLineText;                // printable copy of the first such line
  std::optional<ControlFileFailure> controlFileFailure;
  i32 msgEncoding = encoding_id::kUtf8;  // of the message file
  eString messageFile{u"PlenarixMessages.dat"};
  eString firstFile{u"RVF1.rvf"};
  eString secondFile{u"RVF2.rvf"};
  eString differenceFile{u"Differenced.dat"};
  Tolerances tolerances;
  bool simpleReturn = false;  // the exit status only says whether the files differ
  bool dbcsMode = false;      // two-byte text in files too old to specify it
  eString controlFileEncoding{kDefaultControlFileEncoding};

  /// Applies the arguments after the first one, which names the program. Words that begin with
  /// neither "-" nor "/" belong to the preceding option. Reports each option that is not understood
  /// (kOptionNotUnderstood) and returns false if there is any; otherwise returns the result of
  /// readControlFiles, or true if control files are ignored.
  [[nodiscard]] bool parseCommandLine(std::span<const eString> arguments, ControlFiles treatment);

  /// Applies one option line. Returns false and changes nothing if it is not understood.
  [[nodiscard]] bool parseOption(const eString& line);

  /// Appends a control file unless its path is already listed.
  void addControlFile(const eString& path);

  /// Reads all control files, including those that a control file adds. They may be anything that
  /// can be read from front to end, such as a pipe. Returns whether the last one was understood; a
  /// bad line in any of them sets badControlLine, and the first is reported (kOptionNotUnderstood).
  /// If a file cannot be opened or read, reading ends with false; nothing is reported, and
  /// controlFileFailure describes the failure.
  [[nodiscard]] bool readControlFiles();

 private:
  [[nodiscard]] bool readControlFile(const eString& path);
  void noteBadControlLine(const eString& line);

  eString place_;  // of the line being parsed, as in Note
};

/// A line of a control file in a form that a message can show: characters from 32 to 127 as they
/// are, others as lower-case hexadecimal digits.
[[nodiscard]] eString printableCopy(const eString& line);

}  // namespace rvf
