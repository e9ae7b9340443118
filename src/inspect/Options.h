#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Integers.h"
#include "compare/Tolerances.h"
#include "inspect/model/CaptureFile.h"
#include "inspect/output/DrawingStyle.h"
#include "inspect/output/Output.h"

namespace rvf::inspect {

enum class Format { kText, kJsonLines, kJUnit, kHtml };
enum class When { kAuto, kAlways, kNever };

/// Where and how a command writes.
struct OutputOptions {
  Format format = Format::kText;
  std::string path;  // empty: standard output
  When color = When::kAuto;
  When progress = When::kAuto;
};

[[nodiscard]] inline bool takesColour(const OutputOptions& options, const Output& output) {
  return options.color == When::kAuto ? output.takesColour() : options.color == When::kAlways;
}

/// Which customers and pages a command processes; by default, all of them.
struct Selection {
  std::string customer;     // an id, or # and the number from 1; empty: all
  std::optional<i32> page;  // the number from 1
};

struct ListOptions {
  std::vector<std::string> files;
  Selection selection;
  bool onlyDiffering = false;
  std::string bitName;  // only pages with this bit; empty: all
  OutputOptions output;
};

struct DumpOptions {
  std::string file;
  OldText oldText = OldText::kOneByte;
  Selection selection;
  bool objects = false;  // only the shared objects
  bool index = false;    // only the index
  OutputOptions output;
};

struct CheckOptions {
  std::vector<std::string> files;
  OldText oldText = OldText::kOneByte;
  OutputOptions output;
};

struct PageOptions {
  std::string file;
  std::string out;  // empty: standard output
  OldText oldText = OldText::kOneByte;
  Selection selection;
  std::string fonts;
  ColourReading colours = ColourReading::kRgb;
};

struct ReportOptions {
  std::string first;
  std::string second;
  std::string from;  // a difference file that names both; not empty: instead of them
  std::string pair;  // the folder of a pair of rvfjobs; not empty: instead of them
  std::string out;
  Tolerances tolerances{0, 0};
  OldText oldText = OldText::kOneByte;
  i32 maxPages = 200;
  When progress = When::kAuto;
};

struct ChangesOptions {
  std::string first;
  std::string second;
  std::string from;  // a difference file that names both; not empty: instead of them
  Tolerances tolerances{0, 0};
  OldText oldText = OldText::kOneByte;
  Selection selection;
  bool groups = false;
  bool showsAllPages = false;
  std::string accepted;
  std::string writeAccepted;
  OutputOptions output;
};

struct SummaryOptions {
  std::string results;          // the folder
  Tolerances tolerances{0, 0};  // for pairs whose options specify none
  OldText oldText = OldText::kOneByte;
  bool groups = false;
  std::string accepted;
  OutputOptions output;
};

}  // namespace rvf::inspect
