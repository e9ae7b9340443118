#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "compare/DiffFlags.h"
#include "compare/Tolerances.h"
#include "inspect/model/CaptureFile.h"

namespace rvf::inspect {

/// The outcome of a pair in a job.
enum class Outcome { kIdentical, kDifferent, kOneSided, kFailed };

/// A line of results.jsonl, which rvfjobs writes. Its texts come from file names and messages and
/// may hold anything.
struct PairResult {
  std::u16string name;
  std::string folder;  // within the folder of results
  std::optional<std::u16string> first;
  std::optional<std::u16string> second;  // empty: there is no such file
  std::vector<std::u16string> options;
  std::string state;  // one of the states of rvfjobs
  std::u16string reason;
  std::optional<i64> status;
  std::optional<DiffFlags> bits;
  std::optional<f64> seconds;
  std::optional<i64> firstBytes;
  std::optional<i64> secondBytes;

  [[nodiscard]] Outcome outcome() const;
  [[nodiscard]] i64 bytes() const { return firstBytes.value_or(0) + secondBytes.value_or(0); }
};

/// The comparison settings in the options of a pair, except for those in control files.
struct PairOptions {
  Tolerances tolerances{};
  OldText oldText = OldText::kOneByte;
};
[[nodiscard]] PairOptions withOptionsOf(const PairResult& pair, PairOptions options);

/// Explains why a comparison whose bits differ from those in the results does not explain the pair.
[[nodiscard]] std::string otherBits(const PairResult& pair, DiffFlags found);

/// The result in a pair's folder. Throws Trouble.
[[nodiscard]] PairResult readPairResult(const std::string& folder);

/// Reads the pairs in a folder of results one after another.
class JobResults {
 public:
  /// Throws Trouble if the folder has no results of a finished job.
  explicit JobResults(const std::string& folder);

  [[nodiscard]] const std::string& path() const { return path_; }
  /// The next pair, or empty after the last one. Throws Trouble for a line that is not a result.
  [[nodiscard]] std::optional<PairResult> next();

 private:
  std::string path_;
  std::ifstream file_;
  i64 line_ = 0;
};

}  // namespace rvf::inspect
