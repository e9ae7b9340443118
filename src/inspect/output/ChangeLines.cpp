#include "inspect/output/ChangeLines.h"

#include <algorithm>

#include "inspect/model/BitNames.h"
#include "inspect/output/ShownText.h"
#include "inspect/output/ValueText.h"

namespace rvf::inspect {

namespace {

constexpr std::size_t kMostFieldLines = 8;
constexpr std::size_t kMostCharacters = 80;

std::string placeText(const Place& place) {
  return "(" + std::to_string(place.x) + ", " + std::to_string(place.y) + ")";
}

std::string quoted(std::u16string_view text) {
  const bool isCut = text.size() > kMostCharacters;
  return "\"" + shownText(text.substr(0, kMostCharacters)) + (isCut ? "...\"" : "\"");
}

std::string partText(const char* number, i32 index, const std::string& type,
                     const std::u16string& text) {
  std::string line = std::string(number) + std::to_string(index) + " " + type;
  return text.empty() ? line : line + " " + quoted(text);
}

std::string colourOf(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::kAdded:
      return "\x1b[32m";
    case ChangeKind::kRemoved:
      return "\x1b[31m";
    case ChangeKind::kChanged:
      return "\x1b[33m";
    default:
      return "\x1b[36m";
  }
}

std::string headOf(const Change& change, bool isColoured) {
  const std::string kind(nameOf(change.kind));
  std::string line = isColoured ? colourOf(change.kind) + kind + "\x1b[m" : kind;
  line += " " + change.type;
  // A changed text is shown with its old and new words.
  const bool showsText = change.kind != ChangeKind::kChanged ||
                         std::ranges::none_of(change.fields, [](const FieldChange& field) {
                           return std::holds_alternative<std::u16string>(field.from);
                         });
  if (showsText && !change.text.empty()) {
    line += " " + quoted(change.text);
  }
  if (const std::optional<Box>& box = change.firstBox ? change.firstBox : change.secondBox) {
    line += " at " + placeText({box->left, box->top});
  }
  if (change.kind == ChangeKind::kMoved) {
    line += " by " + placeText(change.distance);
  } else if (change.kind == ChangeKind::kOrder) {
    line += " from number " + std::to_string(change.first) + " to " + std::to_string(change.second);
  }
  if (!change.list.empty() && change.list != "page") {
    line += " in " + change.list;
  }
  if (!change.counts()) {
    line += " [ignored: " + std::string(change.ignoredBy) + "]";
  }
  return line;
}

std::string numberText(i32 index) { return std::to_string(i64{index} + 1); }

}  // namespace

std::vector<std::string> linesOf(const Change& change, bool isColoured) {
  std::vector<std::string> lines = {headOf(change, isColoured)};
  if (change.kind != ChangeKind::kChanged) {
    return lines;
  }
  const std::size_t shown = std::min(change.fields.size(), kMostFieldLines);
  for (std::size_t f = 0; f < shown; ++f) {
    lines.push_back("  " + change.fields[f].name + ": " + changeText(change.fields[f], isColoured));
  }
  const i64 left = static_cast<i64>(change.fields.size() - shown) + change.fieldsLeftOut;
  if (left > 0) {
    lines.push_back("  and " + counted(left, "more field"));
  }
  return lines;
}

std::string lineOf(const VerdictReason& reason) {
  std::string names;
  for (const std::string& name : bitNames(reason.bits)) {
    names += (names.empty() ? "" : ", ") + name;
  }
  std::string line = names + ": ";
  if (reason.by == "lists") {
    return line + "the numbers of placed lists differ";
  }
  if (reason.by == "placement") {
    return line + reason.list + " stands elsewhere";
  }
  if (reason.by == "elsewhere") {
    line += "found elsewhere or within tolerance";
  } else if (reason.by == "left over") {
    line += "left over";
  } else {
    line += reason.by == "group" ? "group without a partner" : "compared by place";
  }
  if (reason.first != kNone) {
    line += ", part " + partText("", reason.first, reason.firstType, reason.firstText);
  }
  if (reason.second != kNone) {
    line += reason.first != kNone ? " against part " : ", second part ";
    line += partText("", reason.second, reason.secondType, reason.secondText);
  }
  return reason.list == "page" ? line : line + " in " + reason.list;
}

std::vector<std::string> linesOf(const ChangeGroup& group, bool isColoured) {
  std::string head = group.key.kind + " " + group.key.type;
  for (const std::string& field : group.key.fields) {
    head += (field == group.key.fields.front() ? ": " : ", ") + field;
  }
  if (group.key.page != kNone) {
    head += ", page " + numberText(group.key.page);
  }
  if (group.key.place) {
    head += " at " + placeText(*group.key.place);
  }
  if (group.key.distance) {
    head += " by " + placeText(*group.key.distance);
  }
  if (!group.key.list.empty() && group.key.list != "page") {
    head += " in " + group.key.list;
  }
  if (!group.ignoredBy.empty()) {
    head += " [ignored: " + std::string(group.ignoredBy) + "]";
  }
  std::vector<std::string> lines = {counted(group.pages, "page") + ", " +
                                    counted(group.customers, "customer") + ": " + head};
  lines.front() += "; " + std::string(group.hasAllPairs ? "" : "at least ") +
                   counted(group.pairs, "distinct pair") + "  (" + idText(group.id) + ")";
  for (const GroupExample& example : group.examples) {
    std::string line = "  ";
    if (!example.place.customerId.empty()) {
      line += "\"" + shownText(example.place.customerId) + "\": ";
    }
    line += example.field ? example.field->name + " " + changeText(*example.field, isColoured)
                          : quoted(example.text);
    if (example.field || !example.text.empty()) {
      lines.push_back(line);
    }
  }
  return lines;
}

std::vector<std::string> linesOf(const Summary& summary) {
  std::vector<std::string> lines = {"Verdict: " + bitsInWords(summary.bits)};
  if (!summary.verdictEnd.empty()) {
    lines.push_back("A run stops comparing: " + summary.verdictEnd);
  }
  lines.push_back("Pages: " + std::to_string(summary.pagesCompared) + " compared, " +
                  std::to_string(summary.pagesDiffering) + " differing, " +
                  std::to_string(summary.pagesAdded) + " added, " +
                  std::to_string(summary.pagesRemoved) + " removed");
  if (summary.customersAdded + summary.customersRemoved > 0) {
    lines.push_back("Customers: " + std::to_string(summary.customersAdded) + " added, " +
                    std::to_string(summary.customersRemoved) + " removed");
  }
  std::string changes = "Changes: " + std::to_string(summary.changes) + " that count";
  for (const auto& [rule, count] : summary.ignored) {
    changes += ", " + std::to_string(count) + " ignored by " + std::string(rule);
  }
  if (summary.changesAccepted > 0) {
    changes += ", " + std::to_string(summary.changesAccepted) + " accepted";
  }
  lines.push_back(changes);
  lines.push_back("Smallest tolerances without a difference: position " +
                  (summary.smallestPositionTolerance
                       ? std::to_string(*summary.smallestPositionTolerance)
                       : std::string("none is enough")) +
                  ", line " + std::to_string(summary.smallestLineTolerance));
  if (summary.damagedPages > 0) {
    lines.push_back("Incomplete: " + counted(summary.damagedPages, "damaged page"));
  }
  return lines;
}

std::string titleOf(const PageResult& page) {
  const auto name = [](const PageRecord* record) {
    return record == nullptr ? std::string() : " \"" + shownText(record->name.text().view()) + "\"";
  };
  const i32 first = page.address.first;
  const i32 second = page.address.second;
  if (first == kNone) {
    return "Page " + numberText(second) + name(page.secondRecord) + " of the second file: added";
  }
  std::string title = "Page " + numberText(first) + name(page.firstRecord);
  if (second == kNone) {
    return title + ": removed";
  }
  const bool isRenamed = page.firstRecord->name != page.secondRecord->name;
  if (first != second || isRenamed) {
    title += ", in the second file page " + numberText(second) +
             (isRenamed ? name(page.secondRecord) : "");
  }
  return title;
}

}  // namespace rvf::inspect
