#include "run/OptionLine.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

#include "run/OptionTable.h"

namespace rvf {

namespace {

bool isComment(const eString& text) { return text.c_str()[0] == u'%' || text.c_str()[0] == u'*'; }

/// The edit distance in characters inserted, removed, replaced, or swapped with their neighbour.
std::size_t editDistance(std::u16string_view a, std::u16string_view b) {
  std::vector<std::size_t> twoBefore, before(b.size() + 1), row(b.size() + 1);
  std::iota(before.begin(), before.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = before[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({before[j] + 1, row[j - 1] + 1, replaced});
      const bool isExchange = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (isExchange) {
        row[j] = std::min(row[j], twoBefore[j - 2] + 1);
      }
    }
    twoBefore = std::exchange(before, row);
  }
  return before.back();
}

/// The option with the most similar name; null if none is similar.
const OptionRow* nearestOption(std::u16string_view name) {
  constexpr std::size_t kLongestName = 64;  // anything longer is no misspelling
  if (name.size() > kLongestName) {
    return nullptr;
  }
  const auto distance = [&](const OptionRow& row) { return editDistance(name, row.name); };
  const auto nearest = std::ranges::min_element(optionTable(), {}, distance);
  const bool isLike = 2 * distance(*nearest) <= std::max(name.size(), nearest->name.size());
  return isLike ? &*nearest : nullptr;
}

eString writtenForm(const OptionRow& option) {
  eString form;
  form.Format(option.takesValue() ? u"-%ls=%ls" : u"-%ls", eString(option.name),
              eString(option.valueForm));
  return form;
}

eString explainUnknownName(const eString& name) {
  constexpr std::u16string_view kAlone[] = {u"-HELP", u"HELP", u"-VERSION", u"VERSION"};
  eString text;
  if (std::ranges::find(kAlone, name.text()) != std::end(kAlone)) {
    text = u"--help and --version are understood as the only argument";
  } else if (const OptionRow* nearest = nearestOption(name.text()); nearest != nullptr) {
    text.Format(u"no such option; did you mean %ls?", writtenForm(*nearest));
  } else {
    text = u"no such option";
  }
  return text;
}

}  // namespace

bool startsAsOption(const eString& text) {
  return text.c_str()[0] == u'-' || text.c_str()[0] == u'/';
}

OptionLine splitOptionLine(const eString& line) {
  eString text = line;
  text.TrimLeft();
  text.TrimRight();
  OptionLine pieces;
  pieces.isIgnored = text.isEmpty() || isComment(text);
  pieces.startsAsOption = startsAsOption(text);
  if (pieces.isIgnored || !pieces.startsAsOption) {
    return pieces;
  }
  // A "=" immediately after the dash is part of the name.
  const i32 equals = text.Find(u'=', 2);
  pieces.name = equals < 0 ? text.Mid(1) : text.Mid(1, equals - 1);
  pieces.name.MakeUpper();
  if (equals >= 0) {
    pieces.value = text.Mid(equals + 1);
  }
  return pieces;
}

eString explainBadOption(const eString& line) {
  const OptionLine pieces = splitOptionLine(line);
  if (!pieces.startsAsOption) {
    return u"an option begins with - or /, as in -COMPARE=FIRST,SECOND";
  }
  eString name = pieces.name;
  name.TrimLeft();
  name.TrimRight();
  const auto row = std::ranges::find(optionTable(), name.text(), &OptionRow::name);
  if (row == optionTable().end()) {
    return explainUnknownName(pieces.name);
  }
  eString text;
  if (name != pieces.name) {
    text.Format(u"no blank may stand beside the name; write %ls", writtenForm(*row));
  } else if (!row->takesValue()) {
    text.Format(u"the option takes no value; write %ls", writtenForm(*row));
  } else {
    text.Format(u"the option is to be written as %ls", writtenForm(*row));
  }
  return text;
}

}  // namespace rvf
