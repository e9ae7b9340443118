#include "compare/CompareReferenceParts.h"

#include <cstring>

#include "compare/DrawListMatch.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf {

// All fields of a reference are compared.
bool equalStaticRefs(const DrawPart& left, const DrawPart& right) {
  constexpr std::size_t kAllFields = sizeof(StaticRefFields);
  return std::memcmp(&left.fields.staticRef, &right.fields.staticRef, kAllFields) == 0;
}

bool equalChildren(const DrawPart& left, const DrawPart& right, ChildListResults* childLists) {
  const DrawList* a = childList(left);
  const DrawList* b = childList(right);
  if (a == nullptr || b == nullptr) {
    return true;
  }
  return childLists == nullptr ? listsEqual(*a, *b) : childLists->areEqual(*a, *b);
}

namespace {

constexpr u8 kNotSet = 0x80;  // the top bit of a layer byte

bool layersAreSet(const StaticRefFields& fields) {
  return ((fields.layerByteA | fields.layerByteB) & kNotSet) == 0;
}

bool sameObject(const StaticRefFields& a, const StaticRefFields& b) {
  return a.objectType == b.objectType && a.width == b.width && a.height == b.height &&
         a.refA == b.refA && a.useSecond == b.useSecond && a.staticIndex == b.staticIndex &&
         a.secondIsHidden == b.secondIsHidden && a.refB == b.refB;
}

bool sameLayer(const StaticRefFields& a, const StaticRefFields& b) {
  return a.layerByteA == b.layerByteA && a.layerByteB == b.layerByteB && a.refC == b.refC &&
         a.refD == b.refD;
}

}  // namespace

// A group is classified by its own record, whatever its children are.
DiffFlags classifyStaticRefs(const DrawPart& left, const DrawPart& right,
                             const Tolerances& tolerances) {
  const StaticRefFields& a = left.fields.staticRef;
  const StaticRefFields& b = right.fields.staticRef;
  DiffFlags bits = 0;
  const bool layersDiffer = layersAreSet(a) && layersAreSet(b) && !sameLayer(a, b);
  if (!sameObject(a, b) || layersDiffer) {
    bits |= diff::kContent;
  }
  if (exceeds(a.x, b.x, tolerances.positionTolerance) ||
      exceeds(a.y, b.y, tolerances.positionTolerance)) {
    bits |= diff::kPosition;
  }
  return bits;
}

// A reference without a layer matches references of any layer. So each is filed twice: with all
// references to its object, and with those of the same layer (or of none). A search looks either at
// all references to the object, or at those of the layer and those of none.
void addStaticRefToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances) {
  const StaticRefFields& fields = part.fields.staticRef;
  key.addAll(fields.objectType, fields.width, fields.height, fields.refA, fields.refB,
             fields.useSecond, fields.secondIsHidden, fields.staticIndex);
  key.addPlace(fields.x, fields.y, tolerances);
  enum class Shelf : i32 { kAllLayers, kNoLayer, kThisLayer };
  const bool isFirst = key.number() == 0;
  Shelf shelf = layersAreSet(fields) ? Shelf::kThisLayer : Shelf::kNoLayer;
  if (key.use() == KeyUse::kFiled) {
    shelf = isFirst ? Shelf::kAllLayers : shelf;
  } else if (!layersAreSet(fields)) {
    shelf = Shelf::kAllLayers;
    if (!isFirst) {
      key.exclude();
    }
  } else if (!isFirst) {
    shelf = Shelf::kNoLayer;
  }
  key.add(shelf);
  if (shelf == Shelf::kThisLayer) {
    key.addAll(fields.layerByteA, fields.layerByteB, fields.refC, fields.refD);
  }
}

}  // namespace rvf
