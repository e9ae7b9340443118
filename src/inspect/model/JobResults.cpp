#include "inspect/model/JobResults.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "inspect/model/BitNames.h"
#include "inspect/model/Trouble.h"
#include "messages/catalogue/MessageRecord.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

using nlohmann::json;

constexpr std::string_view kStates[] = {"identical",  "different",   "failed",     "out-of-memory",
                                        "timeout",    "killed",      "no-program", "no-report",
                                        "only-first", "only-second", "not-run"};
constexpr i64 kMostBytes = i64{1} << 60;

std::u16string textOf(const json& value) {
  return std::u16string(fromNative(value.get<std::string>()).view());
}

std::optional<std::u16string> optionalText(const json& value) {
  return value.is_null() ? std::nullopt : std::optional(textOf(value));
}

struct NoResult {};

std::optional<i64> optionalCount(const json& value, i64 most) {
  if (value.is_null()) {
    return std::nullopt;
  }
  if (!value.is_number_unsigned() || value.get<u64>() > static_cast<u64>(most)) {
    throw NoResult();
  }
  return value.get<i64>();
}

// The folders are opened, so a manipulated line must not name one outside the results.
bool isFolderOfPair(const std::string& folder) {
  constexpr std::string_view kPairs = "pairs/";
  if (!folder.starts_with(kPairs)) {
    return false;
  }
  const std::string name = folder.substr(kPairs.size());
  return !name.empty() && name.front() != '.' &&
         name.find_first_of(std::string("/\0", 2)) == name.npos;
}

PairResult pairOf(const json& line) {
  PairResult pair;
  pair.name = textOf(line.at("name"));
  pair.folder = line.at("folder").get<std::string>();
  pair.first = optionalText(line.at("first"));
  pair.second = optionalText(line.at("second"));
  for (const json& option : line.at("options")) {
    pair.options.push_back(textOf(option));
  }
  pair.state = line.at("state").get<std::string>();
  if (std::ranges::count(kStates, pair.state) == 0) {
    throw NoResult();
  }
  pair.reason = textOf(line.at("reason"));
  pair.status = optionalCount(line.at("status"), 255);
  if (const std::optional<i64> bits = optionalCount(line.at("bits"), UINT32_MAX)) {
    pair.bits = static_cast<DiffFlags>(*bits);
  }
  if (!line.at("seconds").is_null()) {
    pair.seconds = line.at("seconds").get<f64>();
  }
  pair.firstBytes = optionalCount(line.at("firstBytes"), kMostBytes);
  pair.secondBytes = optionalCount(line.at("secondBytes"), kMostBytes);
  return pair;
}

std::u16string upperCased(std::u16string text) {
  for (char16_t& c : text) {
    c = c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c;
  }
  return text;
}

}  // namespace

Outcome PairResult::outcome() const {
  if (state == "identical") {
    return Outcome::kIdentical;
  }
  if (state == "different") {
    return Outcome::kDifferent;
  }
  return state == "only-first" || state == "only-second" ? Outcome::kOneSided : Outcome::kFailed;
}

PairOptions withOptionsOf(const PairResult& pair, PairOptions options) {
  for (std::u16string_view word : pair.options) {
    word.remove_prefix(std::min(word.find_first_not_of(u' '), word.size()));
    const std::size_t sign = word.find(u'=');
    if (word.empty() || (word.front() != u'-' && word.front() != u'/') || sign == word.npos) {
      continue;
    }
    const std::u16string name = upperCased(std::u16string(word.substr(1, sign - 1)));
    const std::u16string_view value = word.substr(sign + 1);
    if (name == u"POS_TOLERANCE" || name == u"DIFFTOLERANCE") {
      options.tolerances.positionTolerance = leadingDecimal(value);
    }
    if (name == u"LINE_TOLERANCE" || name == u"DIFFTOLERANCE") {
      options.tolerances.lineTolerance = leadingDecimal(value);
    }
    if (name == u"DBCS_MODE") {
      const bool isOn = upperCased(std::u16string(value)) == u"TRUE";
      options.oldText = isOn ? OldText::kTwoBytes : OldText::kOneByte;
    }
  }
  return options;
}

std::string otherBits(const PairResult& pair, DiffFlags found) {
  return "the files now give " + bitsInWords(found) + ", not " +
         bitsInWords(pair.bits.value_or(0)) +
         ": they have changed, or other options were in force, as from a control file";
}

PairResult readPairResult(const std::string& folder) {
  const std::string path = folder + "/result.json";
  std::ifstream file(path, std::ios::binary);
  std::string line;
  if (!file || !std::getline(file, line)) {
    throw Trouble(path, "cannot be read; rvfjobs writes it after comparing a pair");
  }
  try {
    return pairOf(json::parse(line));
  } catch (const json::exception&) {
  } catch (const NoResult&) {
  }
  throw Trouble(path, "is not the result of a pair");
}

JobResults::JobResults(const std::string& folder)
    : path_(folder + "/results.jsonl"), file_(path_, std::ios::binary) {
  if (!file_) {
    throw Trouble(path_, "cannot be read; rvfjobs writes it when a run ends");
  }
}

std::optional<PairResult> JobResults::next() {
  std::string line;
  if (!std::getline(file_, line)) {
    if (!file_.eof()) {
      throw Trouble(path_, "cannot be read");
    }
    return std::nullopt;
  }
  line_ += 1;
  std::string lack = "is not the result of a pair";
  try {
    PairResult pair = pairOf(json::parse(line));
    if (isFolderOfPair(pair.folder)) {
      return pair;
    }
    lack = "names a folder that is not that of a pair";
  } catch (const json::exception&) {
  } catch (const NoResult&) {
  }
  throw Trouble(path_, "line " + std::to_string(line_) + " " + lack);
}

}  // namespace rvf::inspect
