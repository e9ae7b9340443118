#include "inspect/output/ListPlaces.h"

#include "inspect/model/PageVerdict.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf::inspect {

ListPlaces::ListPlaces(const CompareContext& page) {
  places_["page"].emplace_back();
  addObjects(page.pageList, Place());
  for (i32 i = 0; i < page.staticCount; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const DrawList& list = page.staticList(i);
    const Place place{i64{list.originX} + page.staticPlacementX[at],
                      i64{list.originY} + page.staticPlacementY[at]};
    places_["placed " + std::to_string(i)].push_back({place.x, place.y, place.x, place.y});
    addObjects(list, place);
  }
}

void ListPlaces::addObjects(const DrawList& list, Place offset) {
  for (const DrawPart& part : list.parts()) {
    const DrawList* object = part.type == PartType::kStaticRef ? childList(part) : nullptr;
    if (object == nullptr) {
      continue;
    }
    const StaticRefFields& fields = part.fields.staticRef;
    std::vector<Box>& places =
        places_[objectListName(fields.objectType, fields.staticIndex, listNamedBy(fields))];
    if (places.size() < kMostPlaces) {
      const i64 x = offset.x + fields.x + object->originX;
      const i64 y = offset.y + fields.y + object->originY;
      places.push_back({x, y, x + fields.width, y + fields.height});
    }
  }
}

std::vector<Box> ListPlaces::onPage(const std::string& list, const Box& box) const {
  std::vector<Box> boxes;
  const auto found = places_.find(list);
  if (found != places_.end()) {
    for (const Box& place : found->second) {
      boxes.push_back({box.left + place.left, box.top + place.top, box.right + place.left,
                       box.bottom + place.top});
    }
  }
  return boxes;
}

std::vector<Box> ListPlaces::onPage(const std::string& list) const {
  const auto found = places_.find(list);
  return found != places_.end() ? found->second : std::vector<Box>();
}

}  // namespace rvf::inspect
