#include "inspect/model/SharedObjects.h"

#include <algorithm>

#include "inspect/model/Digest.h"
#include "inspect/model/ListExplanation.h"
#include "inspect/model/PageVerdict.h"
#include "inspect/model/PartDigest.h"
#include "inspect/model/SequencePairing.h"
#include "pagemodel/FieldVisitor.h"

namespace rvf::inspect {

namespace {

void addToDigest(Digest& digest, const std::vector<Field>& fields) {
  for (const Field& field : fields) {
    digest.add(digestOf(field.value));
  }
}

void addToDigest(Digest& digest, const DrawList& list) {
  addToDigest(digest, fieldsOf(list));
  for (const DrawPart& part : list.parts()) {
    digest.add(digestOf(part));
  }
}

std::vector<u64> objectDigests(const CompareContext& tables, i32 objectType) {
  std::vector<u64> digests;
  for (i32 i = 0; i < tables.staticObjectCount(objectType); ++i) {
    const DrawStatic& object = *tables.FindStatic(objectType, i);
    Digest digest;
    addToDigest(digest, fieldsOf(object));
    addToDigest(digest, object.firstList);
    addToDigest(digest, object.secondList);
    digests.push_back(digest.value());
  }
  return digests;
}

void explainLists(const DrawList& first, const DrawList& second, const std::string& name,
                  ChildListResults& childLists, std::vector<Change>& changes) {
  explainFields(changesOfList(first, second), "LIST", name, ignored_by::kField, changes);
  const std::vector<u64> firstDigests = digestsOf(first);
  const std::vector<u64> secondDigests = digestsOf(second);
  explainParts({first, firstDigests}, {second, secondDigests}, name, childLists, changes);
}

ObjectChanges changesOf(const CompareContext& first, const CompareContext& second, i32 objectType,
                        i32 i, i32 j, ChildListResults& childLists) {
  const DrawStatic& a = *first.FindStatic(objectType, i);
  const DrawStatic& b = *second.FindStatic(objectType, j);
  ObjectChanges object{objectType, i, j, std::u16string(a.name.view()), 0, 0, {}};
  explainFields(changesOfFields(a, b), "OBJECT", "", ignored_by::kField, object.changes);
  explainLists(a.firstList, b.firstList, objectListName(objectType, i, ObjectList::kFirst),
               childLists, object.changes);
  explainLists(a.secondList, b.secondList, objectListName(objectType, i, ObjectList::kSecond),
               childLists, object.changes);
  return object;
}

}  // namespace

std::vector<ObjectChanges> explainObjects(const CompareContext& first, const CompareContext& second,
                                          ChildListResults& childLists) {
  std::vector<ObjectChanges> objects;
  for (const i32 type : kObjectTypes) {
    std::vector<IndexPair> equal =
        pairInSequence(objectDigests(first, type), objectDigests(second, type));
    equal.emplace_back(first.staticObjectCount(type), second.staticObjectCount(type));
    i32 i = 0, j = 0;
    for (const auto& [nextI, nextJ] : equal) {
      for (; i < nextI && j < nextJ; ++i, ++j) {
        objects.push_back(changesOf(first, second, type, i, j, childLists));
      }
      for (; i < nextI; ++i) {
        objects.push_back(
            {type, i, kNone, std::u16string(first.FindStatic(type, i)->name.view()), 0, 0, {}});
      }
      for (; j < nextJ; ++j) {
        objects.push_back(
            {type, kNone, j, std::u16string(second.FindStatic(type, j)->name.view()), 0, 0, {}});
      }
      i = nextI + 1;
      j = nextJ + 1;
    }
  }
  return objects;
}

void ObjectUses::addPage(const CompareContext& page) {
  pages_ += 1;
  addList(page, page.pageList);
  for (i32 i = 0; i < page.staticCount; ++i) {
    addList(page, page.staticList(i));
  }
}

void ObjectUses::addList(const CompareContext& page, const DrawList& list) {
  for (const DrawPart& part : list.parts()) {
    const StaticRefFields& fields = part.fields.staticRef;
    if (part.type != PartType::kStaticRef ||
        page.FindStatic(fields.objectType, fields.staticIndex) == nullptr) {
      continue;
    }
    Use& use = uses_[{fields.objectType, fields.staticIndex}];
    if (use.lastPage != pages_) {
      use.lastPage = pages_;
      use.pages += 1;
    }
  }
}

i64 ObjectUses::pagesUsing(i32 objectType, i32 index) const {
  const auto found = uses_.find({objectType, index});
  return found == uses_.end() ? 0 : found->second.pages;
}

}  // namespace rvf::inspect
