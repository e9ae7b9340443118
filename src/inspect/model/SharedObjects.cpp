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
                  ChildListResults& childLists, ChangeStream& changes) {
  explainFields(changesOfList(first, second), "LIST", name, ignored_by::kField, changes);
  const std::vector<u64> firstDigests = digestsOf(first);
  const std::vector<u64> secondDigests = digestsOf(second);
  explainParts({first, firstDigests}, {second, secondDigests}, name, childLists, changes);
}

}  // namespace

std::vector<ObjectPair> differingObjects(const CompareContext& first,
                                         const CompareContext& second) {
  std::vector<ObjectPair> objects;
  for (const i32 type : kObjectTypes) {
    std::vector<IndexPair> equal =
        pairInSequence(objectDigests(first, type), objectDigests(second, type));
    equal.emplace_back(first.staticObjectCount(type), second.staticObjectCount(type));
    i32 i = 0, j = 0;
    for (const auto& [nextI, nextJ] : equal) {
      while (i < nextI && j < nextJ) {
        objects.push_back({type, i++, j++});
      }
      while (i < nextI) {
        objects.push_back({type, i++, kNone});
      }
      while (j < nextJ) {
        objects.push_back({type, kNone, j++});
      }
      i = nextI + 1;
      j = nextJ + 1;
    }
  }
  return objects;
}

void explainObject(const CompareContext& first, const CompareContext& second,
                   const ObjectPair& pair, ChildListResults& childLists, ChangeStream& changes) {
  const auto& [type, i, j] = pair;
  if (i == kNone || j == kNone) {
    Change change;
    change.kind = i == kNone ? ChangeKind::kAdded : ChangeKind::kRemoved;
    change.type = "OBJECT";
    change.list = "object " + std::to_string(type);
    change.text = nameOf(first, second, pair);
    change.first = i;
    change.second = j;
    changes.add(std::move(change));
    return;
  }
  const DrawStatic& a = *first.FindStatic(type, i);
  const DrawStatic& b = *second.FindStatic(type, j);
  explainFields(changesOfFields(a, b), "OBJECT", "", ignored_by::kField, changes);
  explainLists(a.firstList, b.firstList, objectListName(type, i, ObjectList::kFirst), childLists,
               changes);
  explainLists(a.secondList, b.secondList, objectListName(type, i, ObjectList::kSecond), childLists,
               changes);
}

std::u16string nameOf(const CompareContext& first, const CompareContext& second,
                      const ObjectPair& pair) {
  const DrawStatic& object = pair.first != kNone ? *first.FindStatic(pair.objectType, pair.first)
                                                 : *second.FindStatic(pair.objectType, pair.second);
  return std::u16string(object.name.view());
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
