#pragma once

#include "base/Integers.h"
#include "pagemodel/PointerWord.h"

namespace rvf {

// The fields of STATICREF, in the frozen layout of PartFields.

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

}  // namespace rvf
