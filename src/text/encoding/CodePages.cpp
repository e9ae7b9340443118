#include "text/encoding/CodePages.h"

#include <algorithm>
#include <array>

namespace rvf {

namespace {

/// An encoding without a display name is shown under its converter's name.
struct EncodingRow {
  i32 id;
  const char16_t* converterName;
  const char16_t* displayName;
};

constexpr const char16_t* kLatin1Name = u"iso-8859-1";

constexpr EncodingRow kEncodings[] = {
    {2, u"ibm-1047", nullptr},
    {3, u"ibm-1370", u"Big5"},
    {4, u"ibm-1383", u"GB2312"},
    {5, u"ISO_2022,locale=zh,version=0", u"ISO-2022-CN"},
    {6, u"ibm-970", u"EUC-KR"},
    {7, u"ISO_2022,locale=ko,version=0", u"ISO-2022-KR"},
    {8, u"ibm-33722", u"EUC-JP"},
    {9, u"ISO_2022,locale=ja,version=0", u"ISO-2022-JP"},
    {10, u"ibm-943_P14A-2000", u"Shift_JIS"},
    {11, u"UTF-8", nullptr},
    {12, u"UTF-16LE", nullptr},
    {13, u"IBM-912", nullptr},
    {14, u"IBM-5348", nullptr},
    {15, u"IBM-5346", nullptr},
    {16, u"IBM-290", nullptr},
    {17, u"IBM-930", nullptr},
    {18, u"ibm-943_P130-2000", u"IBM-943 (KEIS)"},
    {19, u"ibm-939", nullptr},
    {20, u"UTF-16LE", nullptr},
    {21, u"UTF-16BE", nullptr},
    {22, u"IBM-930-83", nullptr},
    {23, u"IBM-930-78", nullptr},
    {24, u"ibm-939-83", nullptr},
    {25, u"ibm-939-78", nullptr},
    {26, u"ibm-943_exSJIS_base", u"BaseSJIS"},
    {27, u"ibm-1386", nullptr},
    {28, u"JEF-930", nullptr},
    {29, u"JEF-939", nullptr},
    {31, u"windows-874", nullptr},
    {32, u"windows-1251", nullptr},
    {33, u"windows-1253", nullptr},
    {34, u"windows-1254", nullptr},
    {35, u"windows-1255", nullptr},
    {36, u"windows-1256", nullptr},
    {37, u"windows-1257", nullptr},
    {38, u"windows-1258", nullptr},
    {39, u"windows-949", nullptr},
};

struct NameRow {
  i32 id;
  const char16_t* name;
};

// Quirk that stays: the rows are searched in order, so those of the ids 0, 12 and 30 are never
// reached, and their names give the ids 1 and 20.
constexpr NameRow kNames[] = {
    {1, u"ISO-8859-1"},
    {2, u"IBM-1047"},
    {0, u"ISO-8859-1"},
    {3, u"IBM-1370"},
    {4, u"IBM-1383"},
    {5, u"ISO_2022,locale=zh,version=0"},
    {6, u"IBM-970"},
    {7, u"ISO_2022,locale=ko,version=0"},
    {8, u"IBM-33722"},
    {9, u"ISO_2022,locale=ja,version=0"},
    {10, u"ibm-943_P14A-2000"},
    {11, u"UTF-8"},
    {20, u"UTF-16LE"},
    {21, u"UTF-16BE"},
    {20, u"UTF-16"},
    {12, u"UTF-16LE"},
    {13, u"IBM-912"},
    {14, u"IBM-5348"},
    {15, u"IBM-5346"},
    {16, u"IBM-290"},
    {17, u"IBM-930"},
    {18, u"ibm-943_P130-2000"},
    {19, u"IBM-939"},
    {22, u"IBM-930-83"},
    {23, u"IBM-930-78"},
    {24, u"IBM-939-83"},
    {25, u"IBM-939-78"},
    {26, u"ibm-943_exSJIS_base"},
    {27, u"IBM-1386"},
    {28, u"JEF-930"},
    {29, u"JEF-939"},
    {30, u"ISO-8859-1"},
};

struct FallbackRow {
  const char16_t* missing;
  const char16_t* instead;
};

// Converters that a stock ICU only has under another name or in an older version.
constexpr FallbackRow kFallbacks[] = {
    {u"ibm-1370", u"ibm-1373_P100-2002"},
    {u"ibm-943_P14A-2000", u"ibm-943_P15A-2003"},
    {u"ibm-943_exSJIS_base", u"ibm-943_P15A-2003"},
    {u"ibm-943_P130-2000", u"ibm-943_P130-1999"},
};

}  // namespace

void GetEncodingName(i32 id, NameUse use, eString& name) {
  const auto* row = std::ranges::find(kEncodings, id, &EncodingRow::id);
  if (row == std::end(kEncodings)) {
    name.Assign(kLatin1Name);
    return;
  }
  const bool hasOwnDisplayName = use == NameUse::kDisplay && row->displayName != nullptr;
  name.Assign(hasOwnDisplayName ? row->displayName : row->converterName);
}

i32 GetEncodingId(const eString& name, i32& id) {
  const auto* row = std::ranges::find_if(
      kNames, [&name](const NameRow& known) { return name.CompareNoCase(known.name) == 0; });
  const bool isKnown = row != std::end(kNames);
  id = isKnown ? row->id : encoding_id::kNone;
  return isKnown ? 0 : -1;
}

const char16_t* fallbackConverter(const eString& name) {
  const auto* row = std::ranges::find_if(kFallbacks, [&name](const FallbackRow& known) {
    return name.CompareNoCase(known.missing) == 0;
  });
  return row == std::end(kFallbacks) ? u"" : row->instead;
}

}  // namespace rvf
