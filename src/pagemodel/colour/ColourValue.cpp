#include "pagemodel/colour/ColourValue.h"

#include "pagemodel/colour/UsedColourList.h"
#include "storage/RecordFrame.h"

namespace rvf {

namespace {
constexpr i32 kBaseTag = 100;
}

ColourValue readColourValue(eArchive& archive, KindWord kindWord) {
  eRecordFrame frame(kBaseTag);
  frame.BeginRecord();
  frame.fileTag = kBaseTag;
  ColourValue colour;
  if (kindWord == KindWord::kStored) {
    frame.fileTag = archive.ReadI32();
    colour.kind = archive.ReadI32();
  }
  colour.value = archive.ReadU32();
  frame.EndRecord(archive);
  if (colour.kind == colour_kind::kNamed && !archive.failed()) {
    registerUsedColour(colour);
  }
  return colour;
}

u8 colourList(const ColourValue& colour) {
  return colour.kind == colour_kind::kNamed ? static_cast<u8>(colour.value >> 24) : u8{0};
}

}  // namespace rvf
