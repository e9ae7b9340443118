#pragma once

#include "base/Integers.h"
#include "pagemodel/PointerWord.h"

namespace rvf {

// The fields of IMAGE, RESOURCE, IMPORTPAGE and BCOCABARCODE, in the frozen layout of PartFields.

struct ImageFields {
  i32 pixelWidth;
  i32 pixelHeight;
  PointerWord data;  // dataLength bytes after the info
  i32 dataLength;
  i32 imageKind;
  PointerWord info;  // ImageInfo at the start of the payload
};

struct ResourceFields {
  PointerWord bytes;  // byteCount bytes in the payload, zero-terminated
  i32 byteCount;
  i32 x;
  i32 y;
  i16 scaleX;
  i16 scaleY;
  PointerWord hyperlink;  // after the bytes; never set by reading
  u16 resourceExtra;
  u8 resourceFlag;
  u8 resourceKind;
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

struct BcocaBarcodeFields {
  PointerWord origin;  // BarcodeOrigin at the start of the payload
  PointerWord text;    // the characters after it
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

}  // namespace rvf
