#pragma once

#include "base/Integers.h"
#include "pagemodel/PointerWord.h"

namespace rvf {

// The fields of LINE, RECT, POLY, JUST1LINE and LINESET, in the frozen layout of PartFields.

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
  u8 noFill;     // 0: the fill colour is used
  u8 noOutline;  // 0: the line colour is used
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
  PointerWord points;  // Point[pointCount] after the style
  i32 lineWidth;
  u8 polyCode;
  u8 unused[3];
  PointerWord style;  // PolyStyle at the start of the payload
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

}  // namespace rvf
