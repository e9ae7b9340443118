#pragma once

#include "base/Integers.h"
#include "pagemodel/PointerWord.h"

namespace rvf {

// The fields of CLICKAREA, HYPERLINKAREA and SIGNATUREFIELD, in the frozen layout of PartFields.

struct ClickAreaFields {
  i32 left, top, right, bottom;
  i32 areaA, areaB;
  i32 areaScale;
  u16 areaCode;
  u8 areaFlag;
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

struct SignatureFieldFields {
  PointerWord rect;  // the named data is the SignatureInfo in the payload
  u8 fieldFlagA;
  u8 fieldFlagB;
  u8 unused[2];
  PointerWord fieldName;
  PointerWord fieldValue;
  PointerWord attributes;
  i32 fieldId;
};

}  // namespace rvf
