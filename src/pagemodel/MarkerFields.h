#pragma once

#include "base/Integers.h"
#include "pagemodel/PointerWord.h"

namespace rvf {

// The fields of the parts that mark a place or a stretch of a page, in the frozen layout of
// PartFields.

struct StartEndFields {
  i32 left, top, right, bottom;
  u16 markerId;
  u8 markerKind;
  u8 unused;
  PointerWord info;  // MarkerInfo in the payload
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

struct TaggedObjectFields {
  PointerWord tagText;  // TaggedTexts at the start of the payload, then the texts
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

struct LocSearchKeyFields {
  i32 keyValue;
  PointerWord keyText;  // both texts zero-terminated in the payload
  PointerWord keySecondText;
  u8 keyFlagA;
  u8 keyFlagB;
};

struct SubscribeFields {
  i32 subscriberId;
  PointerWord entries;  // SubscribeEntries in the payload
};

}  // namespace rvf
