#pragma once

#include "base/Integers.h"
#include "pagemodel/PointerWord.h"

namespace rvf {

// The fields of TEXT and TEXTPROP, in the frozen layout of PartFields.

struct TextFields {
  PointerWord runs;  // TextRun[runCapacity] at the start of the payload
  PointerWord text;  // the characters, after the extension area
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

struct TextPropFields {
  i32 propKind;
  i32 propValue;
  i32 propExtra;  // kinds 3 and 4 only
  i32 lengthA;    // in characters; all four texts are back to back in the payload
  i32 lengthB;
  u16 lengthC;
  u16 lengthD;
  u32 propTag;  // not on disk
};

}  // namespace rvf
