#pragma once

#include <string>

#include "inspect/model/Change.h"
#include "inspect/model/Fields.h"
#include "inspect/output/JsonLine.h"

namespace rvf::inspect {

/// A value as people read it: texts in quotes, colours as #RRGGBB with the fourth byte behind them
/// if it is not 0, byte data by its length and digest.
[[nodiscard]] std::string valueText(const FieldValue& value);

/// "6 -> 9 (+3)", or the text with the changed words marked.
[[nodiscard]] std::string changeText(const FieldChange& change, bool isColoured);

/// The value as JSON; null for a field that is not there.
void addValue(JsonLine& json, const FieldValue& value);

/// Eight hexadecimal digits, the bytes of a colour in the order of the file.
[[nodiscard]] std::string colourDigits(u32 packed);

/// One text for both: [-old-] {+new+}, in colours too if those are asked for. Texts are shown as
/// shownText does.
[[nodiscard]] std::string markedWords(std::u16string_view from, std::u16string_view to,
                                      bool isColoured);

}  // namespace rvf::inspect
