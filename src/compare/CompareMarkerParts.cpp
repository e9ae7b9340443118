#include "compare/CompareMarkerParts.h"

#include "compare/PartBytes.h"

namespace rvf {

bool equalLayerIgnores(const DrawPart& left, const DrawPart& right) {
  constexpr u8 kWords = 0b0000'0011;  // markerValue and markerKind
  return sameWords(left, right, kWords);
}

}  // namespace rvf
