#pragma once

#include <string>

#include "inspect/model/Change.h"
#include "inspect/model/Fields.h"
#include "inspect/output/JsonLine.h"

namespace rvf::inspect {

/// A value in readable form: texts in quotes, colours as #RRGGBB, followed by the fourth byte if it
/// is not 0, byte data by its length and digest.
[[nodiscard]] std::string valueText(const FieldValue& value);

/// "6 -> 9 (+3)", or the text with the changed words marked.
[[nodiscard]] std::string changeText(const FieldChange& change, bool isColoured);

/// The value as JSON; null for an absent field.
void addValue(JsonLine& json, const FieldValue& value);

/// Eight hexadecimal digits: the bytes of a colour in file order.
[[nodiscard]] std::string colourDigits(u32 packed);

/// One text for both: [-old-] {+new+}, also in colours if requested. Texts are shown as by
/// shownText.
[[nodiscard]] std::string markedWords(std::u16string_view from, std::u16string_view to,
                                      bool isColoured);

}  // namespace rvf::inspect
