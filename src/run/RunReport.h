#pragma once

#include "base/Integers.h"
#include "compare/Tolerances.h"

namespace rvf {

class TextSink;

constexpr const char16_t* kProgramVersion = u"16.2.0";

// What a run writes to its message file besides the numbered messages. Scripts read these lines, so
// they are frozen, including leading blanks and tabs.

/// The program's version and the start time. `label` says what kind of file this is. Does nothing
/// for a null sink.
void writeBanner(TextSink* sink, const char16_t* label);

/// The tolerances of the run.
void writeOptionsSummary(TextSink& sink, const Tolerances& tolerances);

/// The status (the full DiffFlags, or -1) and its meaning in words.
void writeClosingReport(TextSink& sink, i32 status);

}  // namespace rvf
