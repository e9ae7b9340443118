#include "inspect/model/Inspection.h"

#include <algorithm>
#include <utility>

#include "inspect/model/CustomerInspection.h"
#include "inspect/model/Digest.h"
#include "inspect/model/InspectionTally.h"
#include "inspect/model/ListExplanation.h"
#include "inspect/model/SequencePairing.h"
#include "messages/MessageReporter.h"

namespace rvf::inspect {

namespace {

class Inspection {
 public:
  Inspection(CaptureFile& first, CaptureFile& second, const InspectionSettings& settings,
             InspectionListener& listener)
      : first_(first),
        second_(second),
        firstBytes_(first),
        secondBytes_(second),
        settings_(settings),
        listener_(listener),
        tally_(settings),
        childLists_(settings.tolerances) {}

  void run() {
    listener_.begin(first_, second_, settings_);
    explainFile();
    const i32 judged = judgedCustomers();
    inspectAllCustomers(judged);
    if (!settings_.selectsCustomer && !settings_.page) {
      explainTables();
      explainTheRest();
    }
    listener_.end(tally_.summary, tally_.groups);
  }

 private:
  // How many customers a run compares: all, or those before the first with a different id.
  i32 judgedCustomers() {
    Summary& summary = tally_.summary;
    if (first_.reader().resolution != second_.reader().resolution) {
      summary.bits = diff::kResolution;
      summary.verdictEnd = "the files have different resolutions";
      return 0;
    }
    if (first_.customerCount() != second_.customerCount()) {
      summary.bits = diff::kCustomers;
      summary.verdictEnd = "the files have different numbers of customers";
      return 0;
    }
    const i32 same = sameCustomersInFront();
    if (same < first_.customerCount()) {
      summary.bits = diff::kCustomers;
      summary.verdictEnd = "customer " + std::to_string(same + 1) + " has another id in each file";
    }
    return same;
  }

  [[nodiscard]] i32 sameCustomersInFront() const {
    const i32 common = std::min(first_.customerCount(), second_.customerCount());
    i32 c = 0;
    while (c < common && first_.customer(c).id == second_.customer(c).id) {
      c += 1;
    }
    return c;
  }

  void inspectAllCustomers(i32 judged) {
    const i32 same = sameCustomersInFront();
    for (i32 c = 0; c < same; ++c) {
      inspectPair({c, c, c < judged});
    }
    std::vector<IndexPair> pairs = pairAnywhere(ids(first_, same), ids(second_, same));
    std::vector<bool> isPaired(static_cast<std::size_t>(second_.customerCount() - same));
    auto next = pairs.begin();
    for (i32 c = same; c < first_.customerCount(); ++c) {
      if (next != pairs.end() && next->first == c - same) {
        isPaired[static_cast<std::size_t>(next->second)] = true;
        inspectPair({c, next->second + same, false});
        ++next;
      } else {
        reportLonely(first_, c, ChangeKind::kRemoved);
      }
    }
    for (i32 c = same; c < second_.customerCount(); ++c) {
      if (!isPaired[static_cast<std::size_t>(c - same)]) {
        reportLonely(second_, c, ChangeKind::kAdded);
      }
    }
  }

  static std::vector<u64> ids(const CaptureFile& file, i32 start) {
    std::vector<u64> keys;
    for (i32 c = start; c < file.customerCount(); ++c) {
      Digest digest;
      digest.addText(file.customer(c).id.text());
      keys.push_back(digest.value());
    }
    return keys;
  }

  [[nodiscard]] bool isSelected(i32 index, const eString& id) const {
    return !settings_.selectsCustomer || settings_.selectsCustomer(index, id);
  }

  void inspectPair(const CustomerPair& pair) {
    const CustomerRecord& a = first_.customer(pair.first);
    const CustomerRecord& b = second_.customer(pair.second);
    if (isSelected(pair.first, a.id)) {
      const auto report = [&](std::vector<Change> changes) {
        reportCustomer(std::move(changes), pair.first, a.id);
      };
      ChangeStream changes(report);
      explainFields(changedFields(fieldsOfCustomer(a), fieldsOfCustomer(b)), "CUSTOMER", "",
                    ignored_by::kField, changes, {pair.first, pair.second});
      report(changes.takeLast());
      InspectedSide first{first_, firstBytes_};
      InspectedSide second{second_, secondBytes_};
      inspectCustomers(first, second, pair, {settings_, listener_, tally_, childLists_});
    }
    // The readers' messages have been reported as damage.
    static_cast<void>(messageReporter.takePending());
    listener_.progress(pair.first + 1, first_.customerCount());
  }

  // A negative number of pages means none; any other number shows in the pages.
  static std::vector<Field> fieldsOfCustomer(const CustomerRecord& customer) {
    return {{"leadValue", i64{customer.leadValue}},
            {"pageCount", i64{std::min(customer.pageCount, 0)}}};
  }

  void reportLonely(CaptureFile& file, i32 c, ChangeKind kind) {
    const eString& id = file.customer(c).id;
    if (!isSelected(c, id)) {
      return;
    }
    const bool isAdded = kind == ChangeKind::kAdded;
    (isAdded ? tally_.summary.customersAdded : tally_.summary.customersRemoved) += 1;
    std::vector<Change> changes(1);
    changes.front().kind = kind;
    changes.front().type = "CUSTOMER";
    changes.front().text = id.view();
    (isAdded ? changes.front().second : changes.front().first) = c;
    reportCustomer(std::move(changes), c, id);
    tellDamage(file, c);
  }

  // Pages that are compared with none may be damaged all the same.
  void tellDamage(CaptureFile& file, i32 c) {
    const CustomerRecord& customer = file.customer(c);
    for (i32 p = 0; p < static_cast<i32>(customer.pages.size()); ++p) {
      if (const std::optional<PageFailure>& failure = file.loadPage(c, p)) {
        tally_.summary.damagedPages += 1;
        listener_.damage({file.path(), c, customer.id, p, inWords(*failure)});
      }
    }
    static_cast<void>(messageReporter.takePending());
  }

  void reportCustomer(std::vector<Change> changes, i32 c, const eString& id) {
    tally_.take(changes, {c, std::u16string(id.view()), kNone, kNone});
    for (const Change& change : changes) {
      listener_.customer(change, c, id);
    }
  }

  static std::vector<Field> fieldsOfFile(const CaptureFile& file) {
    const RvfReader& reader = file.reader();
    return {{"version", i64{reader.version}},
            {"twoByteText", i64{file.context().doubleByteText}},
            {"fileLabel", std::u16string(reader.fileLabel.view())},
            {"firstDate.value", reader.firstDate.value},
            {"firstDate.status", i64{reader.firstDate.status}},
            {"secondDate.value", reader.secondDate.value},
            {"secondDate.status", i64{reader.secondDate.status}}};
  }

  void explainFile() {
    ChangeStream changes = fileChanges();
    explainFields(changedFields(fieldsOfFile(first_), fieldsOfFile(second_)), "FILE", "",
                  ignored_by::kField, changes);
    explainFields(changedFields({{"resolution", i64{first_.reader().resolution}}},
                                {{"resolution", i64{second_.reader().resolution}}}),
                  "FILE", "", {}, changes);
    reportFile(changes.takeLast());
  }

  ChangeStream fileChanges() {
    return ChangeStream([this](std::vector<Change> changes) { reportFile(std::move(changes)); });
  }

  void reportFile(std::vector<Change> changes) {
    tally_.take(changes, ChangePlace());
    for (const Change& change : changes) {
      listener_.file(change);
    }
  }

  void explainTables() {
    const i64 before = tally_.reported;
    const std::vector<ObjectPair> objects = differingObjects(first_.context(), second_.context());
    if (!objects.empty()) {
      const ObjectUses firstUses = usesIn(first_);
      const ObjectUses secondUses = usesIn(second_);
      for (const ObjectPair& pair : objects) {
        inspectObject({pair.objectType,
                       pair.first,
                       pair.second,
                       nameOf(first_.context(), second_.context(), pair),
                       firstUses.pagesUsing(pair.objectType, pair.first),
                       secondUses.pagesUsing(pair.objectType, pair.second),
                       {}});
      }
    }
    const ByteDigest from = firstBytes_.stretch(kTablesOffset, first_.reader().tablesEnd);
    const ByteDigest to = secondBytes_.stretch(kTablesOffset, second_.reader().tablesEnd);
    if (from != to && tally_.reported == before) {
      reportBytes("tables", from, to);
    }
  }

  static ObjectUses usesIn(CaptureFile& file) {
    ObjectUses uses;
    for (i32 c = 0; c < file.customerCount(); ++c) {
      for (std::size_t p = 0; p < file.customer(c).pages.size(); ++p) {
        file.loadPage(c, static_cast<i32>(p));
        uses.addPage(file.context());
      }
      static_cast<void>(messageReporter.takePending());
    }
    return uses;
  }

  void inspectObject(ObjectChanges object) {
    ChangeStream changes([&](std::vector<Change> stretch) {
      object.isLast = false;
      pass(object, std::move(stretch));
      object.isLast = true;
    });
    explainObject(first_.context(), second_.context(),
                  {object.objectType, object.first, object.second}, childLists_, changes);
    pass(object, changes.takeLast());
  }

  void pass(ObjectChanges& object, std::vector<Change> changes) {
    object.changes = std::move(changes);
    const i64 pages = std::max(object.firstPages, object.secondPages);
    const bool isPaired = object.first != kNone && object.second != kNone;
    // An object counts through the references to it.
    for (Change& change : object.changes) {
      if (change.counts() && (pages == 0 || !isPaired)) {
        change.ignoredBy = ignored_by::kChildren;
      }
    }
    tally_.takeForPages(object.changes, pages);
    if (!object.changes.empty() || (object.isLast && !object.isFirst)) {
      listener_.object(object);
      object.isFirst = false;
    }
  }

  // Two files that differ are never reported as the same: differences in the index that show
  // nowhere else, such as a record in another form, are reported by its bytes.
  void explainTheRest() {
    if (tally_.reported > 0) {
      return;
    }
    const auto indexOf = [](FileBytes& bytes, const CaptureFile& file) {
      return bytes.stretch(file.reader().indexPosition, file.reader().indexEnd);
    };
    const ByteDigest from = indexOf(firstBytes_, first_);
    const ByteDigest to = indexOf(secondBytes_, second_);
    if (from != to) {
      reportBytes("index", from, to);
    }
    const ByteDigest firstHeader = firstBytes_.stretch(kMagicOffset, kTablesOffset);
    const ByteDigest secondHeader = secondBytes_.stretch(kMagicOffset, kTablesOffset);
    if (firstHeader != secondHeader) {
      reportBytes("header", firstHeader, secondHeader);
    }
    // One file has bytes that nothing refers to, before its index or behind it.
    const auto sizesOf = [](CaptureFile& file) {
      return std::vector<Field>{{"indexPosition", i64{file.reader().indexPosition}},
                                {"length", i64{file.file().GetLength()}}};
    };
    ChangeStream changes = fileChanges();
    explainFields(changedFields(sizesOf(first_), sizesOf(second_)), "FILE", "",
                  ignored_by::kEncoding, changes);
    reportFile(changes.takeLast());
  }

  void reportBytes(const char* what, const ByteDigest& from, const ByteDigest& to) {
    ChangeStream changes = fileChanges();
    explainFields({{what, from, to}}, "FILE", "", ignored_by::kEncoding, changes);
    reportFile(changes.takeLast());
  }

  static constexpr i64 kMagicOffset = 4;
  static constexpr i64 kTablesOffset = 16;

  CaptureFile& first_;
  CaptureFile& second_;
  FileBytes firstBytes_;
  FileBytes secondBytes_;
  const InspectionSettings& settings_;
  InspectionListener& listener_;
  InspectionTally tally_;
  ChildListResults childLists_;
};

}  // namespace

void inspectFiles(CaptureFile& first, CaptureFile& second, const InspectionSettings& settings,
                  InspectionListener& listener) {
  Inspection(first, second, settings, listener).run();
}

}  // namespace rvf::inspect
