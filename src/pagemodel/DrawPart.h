#pragma once

#include <array>
#include <cstddef>
#include <cstring>

#include "base/Integers.h"
#include "pagemodel/PartTypes.h"
#include "pagemodel/PayloadBlock.h"

namespace rvf {

/// Stands in a part's fields where their frozen 32-bit layout has a pointer. What it would name
/// lies in the part's payload; the word only tells whether it is there.
using PointerWord = u32;
constexpr PointerWord kNullPointer = 0;
constexpr PointerWord kSetPointer = 1;
[[nodiscard]] constexpr PointerWord pointerWord(bool isSet) {
  return isSet ? kSetPointer : kNullPointer;
}

/// Fields of a part that hold words of the layout frozen for 32 bits: eight of them, a ninth (the
/// child list of a static reference) is never compared as a word and lies in the payload.
constexpr std::size_t kFieldWords = 8;

struct TextFields {
  PointerWord runs;  // TextRun[runCapacity] at the start of the payload
  PointerWord text;  // the characters, behind the extension area
  u16 runCount;
  u16 runCapacity;
  u16 textLength;
  u16 textCapacity;
  i32 fontId;
  u8 rotation;     // steps of 5 degrees, 0 to 71
  u8 fontVariant;  // not on disk
  u8 textFlags;    // text_flag::*, other bits as stored
  u8 tint;
  u32 colour;
  u32 fontExtra;  // not on disk
};

struct LineFields {
  i32 pointCount;
  i32 pointCapacity;
  PointerWord points;  // Point[pointCount] in the payload
  i32 lineKind;
  i32 lineStyle;
  u8 overprint;
  u8 tint;
  u8 unused[2];
  u32 colour;
  i32 width;
};

struct RectFields {
  i32 left, top, right, bottom;
  u8 noFill;     // 0: the fill colour counts
  u8 noOutline;  // 0: the line colour counts
  u8 shapeCode;
  u8 shapeFlag;
  u16 lineWidth;
  u8 fillTint;
  u8 lineTint;
  u32 fillColour;
  u32 lineColour;
};

struct PolyFields {
  u16 pointCount;
  u16 polyExtra;
  PointerWord points;  // Point[pointCount] behind the style
  i32 lineWidth;
  u8 polyCode;
  u8 unused[3];
  PointerWord style;  // PolyStyle at the start of the payload
};

struct ImageFields {
  i32 pixelWidth;
  i32 pixelHeight;
  PointerWord data;  // dataLength bytes behind the info
  i32 dataLength;
  i32 imageKind;
  PointerWord info;  // ImageInfo at the start of the payload
};

struct StartEndFields {
  i32 left, top, right, bottom;
  u16 markerId;
  u8 markerKind;
  u8 unused;
  PointerWord info;  // MarkerInfo in the payload
};

struct TextPropFields {
  i32 propKind;
  i32 propValue;
  i32 propExtra;  // kinds 3 and 4 only
  i32 lengthA;    // characters; those of all four lengths lie back to back in the payload
  i32 lengthB;
  u16 lengthC;
  u16 lengthD;
  u32 propTag;  // not on disk
};

struct ClickAreaFields {
  i32 left, top, right, bottom;
  i32 areaA, areaB;
  i32 areaScale;
  u16 areaCode;
  u8 areaFlag;
  u8 unused;
};

struct StaticRefFields {
  u16 objectType;
  u8 layerByteA;  // the top bit set: no layer
  u8 layerByteB;
  i32 width;
  i32 height;
  u16 refA;
  u16 refB;
  u16 staticIndex;
  u8 useSecond;
  u8 secondIsHidden;
  i32 x;
  i32 y;
  u16 refC;
  u16 refD;
};

struct ResourceFields {
  PointerWord bytes;  // byteCount bytes in the payload, zero-terminated
  i32 byteCount;
  i32 x;
  i32 y;
  i16 scaleX;
  i16 scaleY;
  PointerWord hyperlink;  // never set by reading
  u16 resourceExtra;
  u8 resourceFlag;
  u8 resourceKind;
};

struct LocSearchKeyFields {
  i32 keyValue;
  PointerWord keyText;  // both texts zero-terminated in the payload
  PointerWord keySecondText;
  u8 keyFlagA;
  u8 keyFlagB;
};

/// UDLIGNORESTARTEND and LAYERIGNORESTARTEND, the latter without its flag.
struct IgnoreMarkerFields {
  i32 markerValue;
  i32 markerKind;
  u8 markerFlag;
};

/// INSERTERBARCODESTARTEND and MASKEDOBJECTSTARTEND, the latter without its flag.
struct StateMarkerFields {
  i32 markerValue;
  u8 markerState;
  u8 markerFlag;
};

struct Just1LineFields {
  i32 x1, x2, y1, y2;
  u8 shapeCode;
  u8 lineStyle;
  u8 shapeFlag;
  u8 tint;
  u32 colour;
  i32 width;
};

struct LineSetFields {
  u16 lineCount;
  u16 lineCapacity;
  i32 start;  // extent common to all lines
  i32 end;
  PointerWord offsets;  // i32[lineCount] in the payload
  u8 horizontal;        // nonzero: start and end are x, the offsets y; zero: the reverse
  u8 lineStyle;
  u8 tint;
  u8 unused;
  u32 colour;
  i32 width;
};

struct BcocaBarcodeFields {
  PointerWord origin;  // BarcodeOrigin at the start of the payload
  PointerWord text;    // the characters behind it
  u8 barcodeKind;
  u8 barcodeFlag;
  u16 barcodeCode;
  u16 textLength;
  u16 textCapacity;
  i32 barcodeValue;
  i16 angle;
  u8 byteA;
  u8 tint;
  u32 colour;
  u16 barcodeExtra;
  u8 byteB;
  u8 unused;
};

struct ImportPageFields {
  i32 pageObject;
  u32 pageNumber;
  i32 x;
  i32 y;
  i32 valueA;
  i32 valueB;
  PointerWord clip;  // i32[4] in the payload
  u8 importFlag;
  u8 byteA;
  u8 byteB;
  u8 unused;
};

struct HyperlinkAreaFields {
  i32 left, top, right, bottom;
  PointerWord url;  // zero-terminated in the payload
  i32 linkValue;
  u8 linkFlagA;
  u8 linkFlagB;
  u16 linkCode;
  u16 linkValueB;
  u16 linkValueC;
};

struct SubscribeFields {
  i32 subscriberId;
  PointerWord entries;  // SubscribeEntries in the payload
};

struct TaggedObjectFields {
  PointerWord tagText;  // TaggedTexts at the start of the payload, the texts behind it
  PointerWord altText;
  PointerWord actualText;
  u16 tagId;
  u8 markerState;
  u8 tagKind;
  PointerWord language;
};

struct BookmarkFields {
  i32 bookmarkId;
  i32 bookmarkLevel;
  PointerWord title;  // zero-terminated in the payload
};

struct SignatureFieldFields {
  PointerWord rect;  // SignatureInfo in the payload holds all that is named here
  u8 fieldFlagA;
  u8 fieldFlagB;
  u8 unused[2];
  PointerWord fieldName;
  PointerWord fieldValue;
  PointerWord attributes;
  i32 fieldId;
};

/// The fields of a part by its type. The layout is frozen, because comparisons read the fields of
/// some parts through the layout of another type (see partWords).
union PartFields {
  std::array<u32, kFieldWords> words{};
  TextFields text;
  LineFields line;
  RectFields rect;
  PolyFields poly;
  ImageFields image;
  StartEndFields startEnd;
  TextPropFields textProp;
  ClickAreaFields clickArea;
  StaticRefFields staticRef;
  ResourceFields resource;
  LocSearchKeyFields locSearchKey;
  IgnoreMarkerFields ignoreMarker;
  StateMarkerFields stateMarker;
  Just1LineFields just1Line;
  LineSetFields lineSet;
  BcocaBarcodeFields barcode;
  ImportPageFields importPage;
  HyperlinkAreaFields hyperlinkArea;
  SubscribeFields subscribe;
  TaggedObjectFields taggedObject;
  BookmarkFields bookmark;
  SignatureFieldFields signatureField;
};
static_assert(sizeof(PartFields) == kFieldWords * sizeof(u32));

/// Marks a part without a reference into a text pool.
constexpr u8 kNoPool = 7;

/// One drawable or marking item of a page. Positions and sizes are signed 32-bit integers in the
/// engine's page units. Arrays of parts are contiguous and a part is one cache line, which is why
/// its variable data lies in one payload block and its fields in the frozen words.
struct DrawPart {
  DrawPart() = default;
  DrawPart(DrawPart&& other) noexcept { swap(other); }
  DrawPart& operator=(DrawPart&& other) noexcept {
    swap(other);
    return *this;
  }
  ~DrawPart();

  void swap(DrawPart& other) noexcept;

  PartFields fields;
  PayloadBlock payload;
  u32 ownerTag = 0;  // set by appendList and copyPart, not by reading
  i32 extraId = 0;   // takes part in no comparison
  PartType type = PartType::kUnknown;
  u8 poolKind = 0;
};

static_assert(sizeof(void*) != 8 || sizeof(DrawPart) == 64);

/// A part's fields as words of the frozen layout, for reading them through another type's layout.
struct PartWords {
  std::array<u32, kFieldWords> words;
  u8 setPointers;  // bit n: word n is a pointer that is set, and so equals no integer

  [[nodiscard]] bool isSetPointer(std::size_t word) const { return (setPointers >> word & 1) != 0; }
};
[[nodiscard]] PartWords partWords(const DrawPart& part);

}  // namespace rvf
