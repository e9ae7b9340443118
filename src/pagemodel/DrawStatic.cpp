#include "pagemodel/DrawStatic.h"

#include "pagemodel/DrawListReader.h"
#include "pagemodel/FieldVisitor.h"
#include "pagemodel/PartVersions.h"
#include "storage/RecordFrame.h"

namespace rvf {

namespace {

void readLists(DrawStatic& object, eArchive& archive) {
  readDrawList(object.firstList, archive);
  if (object.hasSecond != 0 && !archive.failed()) {
    readDrawList(object.secondList, archive);
  }
}

}  // namespace

void forEachField(const DrawStatic& object, FieldVisitor& visitor) {
  visitor.number("hasSecond", object.hasSecond);
  visitor.number("valueC", object.valueC);
  visitor.number("valueD", object.valueD);
  visitor.number("valueF", object.valueF);
  visitor.text("name", object.name.view());
  visitor.number("valueA", object.valueA);
  visitor.number("valueB", object.valueB);
  visitor.number("valueE", object.valueE);
  visitor.number("indexA", object.indexA);
  visitor.number("indexB", object.indexB);
}

void storeDrawStatic(eArchive& archive) { storeDrawList(archive); }

void readDrawStatic(DrawStatic& object, eArchive& archive) {
  using namespace static_version;
  eRecordFrame frame(kBaseTag);
  frame.BeginRecord();
  const i32 v = archive.ReadI32();
  if (archive.failed()) {
    return;
  }
  if (tagMagnitude(v) > kHighest) {
    archive.markTooNew({u"DRAWSTATIC", v, kHighest});
    return;
  }
  frame.fileTag = v;
  object.hasSecond = archive.ReadI32();
  object.valueC = archive.ReadI32();
  object.valueD = archive.ReadI32();
  object.valueF = v >= kValueF ? archive.ReadI32() : 0;
  if (v >= kName) {
    archive.ReadString(object.name);
  }
  object.valueA = archive.ReadI32();
  object.valueB = archive.ReadI32();
  object.valueE = v >= kValueE ? archive.ReadI32() : 0;
  if (object.loadLists == 0) {
    return;
  }
  readLists(object, archive);
  if (archive.failed()) {
    return;
  }
  constexpr i32 kWord = sizeof(i32);
  object.indexA = v >= kIndexA ? archive.ReadI32() : -1;
  archive.skip(v >= kSkippedWords ? kWord : 0);
  archive.skip(v >= kSkippedWords && object.hasSecond != 0 ? kWord : 0);
  archive.skip(v >= kOneMoreWord && v <= kLastMoreWord ? kWord : 0);
  object.indexB = v >= kIndexB ? archive.ReadI32() : -1;
  frame.EndRecord(archive);
  object.loadLists = 1;
}

}  // namespace rvf
