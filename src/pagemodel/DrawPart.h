#pragma once

#include <array>
#include <cstddef>
#include <cstring>

#include "base/Integers.h"
#include "pagemodel/AreaFields.h"
#include "pagemodel/ImageFields.h"
#include "pagemodel/MarkerFields.h"
#include "pagemodel/PartTypes.h"
#include "pagemodel/PayloadBlock.h"
#include "pagemodel/PointerWord.h"
#include "pagemodel/ReferenceFields.h"
#include "pagemodel/TextFields.h"
#include "pagemodel/VectorFields.h"

namespace rvf {

/// The number of words in the frozen 32-bit layout of a part's fields. A ninth word, the child list
/// of a static reference, is never compared as a word and is kept in the payload.
constexpr std::size_t kFieldWords = 8;

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
/// engine's page units. Parts are stored contiguously and each fills one cache line, which is why
/// its variable data is in one payload block and its fields are in the frozen words.
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
  i32 extraId = 0;   // never compared
  PartType type = PartType::kUnknown;
  u8 poolKind = 0;
};

static_assert(sizeof(void*) != 8 || sizeof(DrawPart) == 64);

/// A part's fields as words of the frozen layout, for reading them through another type's layout.
struct PartWords {
  std::array<u32, kFieldWords> words;
  u8 setPointers;  // bit n: word n is a set pointer, which equals no integer

  [[nodiscard]] bool isSetPointer(std::size_t word) const { return (setPointers >> word & 1) != 0; }
};
[[nodiscard]] PartWords partWords(const DrawPart& part);

}  // namespace rvf
