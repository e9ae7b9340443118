#pragma once

#include "base/Integers.h"
#include "compare/Tolerances.h"

namespace rvf {

class TextSink;

constexpr const char16_t* kProgramVersion = u"16.2.0";

// What a run writes to its message file by itself, apart from the numbered messages. Scripts read
// these lines, so their literals are frozen, leading blanks and tabs included.

/// The program's version and the time of the start. `label` says what file this is. A null sink
/// gets nothing.
void writeBanner(TextSink* sink, const char16_t* label);

/// The tolerances that the run compares with.
void writeOptionsSummary(TextSink& sink, const Tolerances& tolerances);

/// The status, the full DiffFlags or -1, and what it means in words.
void writeClosingReport(TextSink& sink, i32 status);

}  // namespace rvf
