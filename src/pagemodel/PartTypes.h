#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "base/Integers.h"

namespace rvf {

/// The kind of a page item. The codes are frozen on disk.
enum class PartType : u8 {
  kUnknown = 0,
  kText = 1,
  kLine = 2,
  kRect = 3,
  kPoly = 4,
  kImage = 5,
  kStartEnd = 6,
  kTextProp = 7,
  kClickArea = 8,
  kStaticRef = 9,
  kResource = 10,
  kTextBox = 11,
  kTable = 12,
  kTextWrap = 13,
  k1Line = 14,
  kLocSearchKey = 15,
  kFixedText = 16,
  kRecompose = 17,
  kInputRadioButton = 18,
  kInputCheckBox = 19,
  kInputEditBox = 20,
  kInputList = 21,
  kInputFunctionButton = 22,
  kUdlIgnoreStartEnd = 23,
  kInputHyperlinkButton = 24,
  kInputCustomButton = 25,
  kInputOrderList = 26,
  kInputProcessList = 27,
  kInputMenuButton = 28,
  kInputProcessButton = 29,
  kJust1Line = 30,
  kLineSet = 31,
  kBcocaBarcode = 32,
  kImportPage = 33,
  kLayerIgnoreStartEnd = 34,
  kInputCustomControl = 35,
  kInserterBarcodeStartEnd = 36,
  kMaskedObjectStartEnd = 37,
  kInputFileUpload = 38,
  kWebPlaceholder = 39,
  kHyperlinkArea = 40,
  kSubscribe = 41,
  kTaggedObjectStartEnd = 42,
  kBookmark = 43,
  kSignatureField = 44,
};

constexpr std::size_t kPartTypeCount = 45;

/// The index of a type in tables of kPartTypeCount rows. A code from disk may lie beyond them.
[[nodiscard]] constexpr std::size_t partIndex(PartType type) {
  return static_cast<std::size_t>(type);
}
[[nodiscard]] constexpr bool isKnownPartType(PartType type) {
  return partIndex(type) < kPartTypeCount;
}

/// Whether a table with one row per type has each row at the code of its `type`.
template <class Row>
[[nodiscard]] constexpr bool rowsStandUnderTheirCodes(
    const std::array<Row, kPartTypeCount>& table) {
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (partIndex(table[i].type) != i) {
      return false;
    }
  }
  return true;
}

/// Display names, by code.
constexpr std::array<std::u16string_view, kPartTypeCount> kPartTypeNames = {
    u"UNKNOWN",
    u"TEXT",
    u"LINE",
    u"RECT",
    u"POLY",
    u"IMAGE",
    u"STARTEND",
    u"TEXTPROP",
    u"CLICKAREA",
    u"STATICREF",
    u"RESOURCE",
    u"TEXTBOX",
    u"TABLE",
    u"TEXTWRAP",
    u"1LINE",
    u"LOCSEARCHKEY",
    u"FIXEDTEXT",
    u"RECOMPOSE",
    u"INPUTRADIOBUTTON",
    u"INPUTCHECKBOX",
    u"INPUTEDITBOX",
    u"INPUTLIST",
    u"INPUTFUNCTIONBUTTON",
    u"UDLIGNORESTARTEND",
    u"INPUTHYPERLINKBUTTON",
    u"INPUTCUSTOMBUTTON",
    u"INPUTORDERLIST",
    u"INPUTPROCESSLIST",
    u"INPUTMENUBUTTON",
    u"INPUTPROCESSBUTTON",
    u"JUST1LINE",
    u"LINESET",
    u"BCOCABARCODE",
    u"IMPORTPAGE",
    u"LAYERIGNORESTARTEND",
    u"INPUTCUSTOMCONTROL",
    u"INSERTERBARCODESTARTEND",
    u"MASKEDOBJECTSTARTEND",
    u"INPUTFILEUPLOAD",
    u"WEBPLACEHOLDER",
    u"HYPERLINKAREA",
    u"SUBSCRIBE",
    u"TAGGEDOBJECTSTARTEND",
    u"BOOKMARK",
    u"SIGNATUREFIELD",
};

}  // namespace rvf
