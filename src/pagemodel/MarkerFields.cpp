#include "pagemodel/MarkerFields.h"

#include "pagemodel/FieldVisitor.h"
#include "pagemodel/MarkerParts.h"
#include "pagemodel/SharedFields.h"

namespace rvf {

namespace {

void visitMarkerInfo(const MarkerInfo& info, FieldVisitor& visitor) {
  visitor.enter("info", FieldVisitor::kSingle);
  visitHyperlink(info.hyperlink.get(), visitor);
  visitor.number("nameValueCount", info.nameValueCount);
  visitNameValues("nameValues", info.nameValues.get(), NumberField::kAbsent, visitor);
  visitor.number("hasHyperlinkFlag", info.hasHyperlinkFlag);
  visitor.number("pairCount", static_cast<i64>(info.pairs.size()));
  i32 index = 0;
  for (const auto& [first, second] : info.pairs) {
    visitor.enter("pairs", index++);
    visitor.number("first", first);
    visitor.number("second", second);
    visitor.leave();
  }
  visitor.leave();
}

}  // namespace

void visitStartEnd(const DrawPart& part, FieldVisitor& visitor) {
  const StartEndFields& fields = part.fields.startEnd;
  visitor.number("markerKind", fields.markerKind);
  visitor.number("markerId", fields.markerId);
  visitBox(fields, visitor);
  if (fields.info == kSetPointer) {
    visitMarkerInfo(markerInfo(part), visitor);
  }
}

void visitUdlIgnore(const DrawPart& part, FieldVisitor& visitor) {
  visitLayerIgnore(part, visitor);
  visitor.number("markerFlag", part.fields.ignoreMarker.markerFlag);
}

void visitLayerIgnore(const DrawPart& part, FieldVisitor& visitor) {
  const IgnoreMarkerFields& fields = part.fields.ignoreMarker;
  visitor.number("markerValue", fields.markerValue);
  visitor.number("markerKind", fields.markerKind);
}

void visitInserterBarcode(const DrawPart& part, FieldVisitor& visitor) {
  visitMaskedObject(part, visitor);
  visitor.number("markerFlag", part.fields.stateMarker.markerFlag);
}

void visitMaskedObject(const DrawPart& part, FieldVisitor& visitor) {
  const StateMarkerFields& fields = part.fields.stateMarker;
  visitor.number("markerValue", fields.markerValue);
  visitor.number("markerState", fields.markerState);
}

void visitTaggedObject(const DrawPart& part, FieldVisitor& visitor) {
  const TaggedObjectFields& fields = part.fields.taggedObject;
  visitor.number("markerState", fields.markerState);
  visitor.number("tagKind", fields.tagKind);
  visitor.number("tagId", fields.tagId);
  visitor.text("tagText", tagText(part));
  visitor.text("altText", altText(part));
  visitor.text("language", language(part));
  visitor.text("actualText", actualText(part));
}

void visitBookmark(const DrawPart& part, FieldVisitor& visitor) {
  const BookmarkFields& fields = part.fields.bookmark;
  visitor.number("bookmarkId", fields.bookmarkId);
  visitor.number("bookmarkLevel", fields.bookmarkLevel);
  visitor.text("title", bookmarkTitle(part));
}

void visitLocSearchKey(const DrawPart& part, FieldVisitor& visitor) {
  const LocSearchKeyFields& fields = part.fields.locSearchKey;
  visitor.number("keyValue", fields.keyValue);
  visitor.text("keyText", keyText(part));
  visitor.number("keyFlagA", fields.keyFlagA);
  visitor.text("keySecondText", keySecondText(part));
  visitor.number("keyFlagB", fields.keyFlagB);
}

void visitSubscribe(const DrawPart& part, FieldVisitor& visitor) {
  visitor.number("subscriberId", part.fields.subscribe.subscriberId);
  i32 index = 0;
  for (const SubscribeEntry& entry : subscribeEntries(part)) {
    visitor.enter("entries", index++);
    visitor.number("entryId", entry.entryId);
    visitor.number("entryValue", entry.entryValue);
    visitor.text("entryName", entry.entryName.view());
    visitor.leave();
  }
}

}  // namespace rvf
