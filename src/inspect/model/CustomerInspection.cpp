#include "inspect/model/CustomerInspection.h"

#include <algorithm>
#include <utility>

#include "compare/EqualBodies.h"
#include "inspect/model/ListExplanation.h"
#include "inspect/model/PageExplanation.h"
#include "inspect/model/PagePairing.h"

namespace rvf::inspect {

namespace {

class CustomerInspection {
 public:
  CustomerInspection(InspectedSide& first, InspectedSide& second, const CustomerPair& pair,
                     const InspectionSink& sink)
      : first_(first),
        second_(second),
        pair_(pair),
        sink_(sink),
        a_(first.file.customer(pair.first)),
        b_(second.file.customer(pair.second)),
        common_(std::min(count(a_), count(b_))) {}

  void run() {
    if (pair_.isJudged && a_.pageCount != b_.pageCount) {
      sink_.tally.summary.bits |= diff::kPageCount;
    }
    // Nearly always, most pages are the same or nearly the same at the same index.
    i32 p = 0;
    while (p < common_ && (passSamePage(p) || passNearlySamePage(p))) {
      p += 1;
    }
    if (p == count(a_) && p == count(b_)) {
      return;
    }
    CustomerPages firstPages = pagesOf(first_, a_, pair_.first);
    CustomerPages secondPages = pagesOf(second_, b_, pair_.second);
    for (const PagePair& pages : pairPages(firstPages, secondPages, p)) {
      if (isSelected(pages.first, pages.second)) {
        inspect(pages, firstPages, secondPages);
      }
    }
  }

 private:
  static i32 count(const CustomerRecord& customer) {
    return static_cast<i32>(customer.pages.size());
  }
  static const PageRecord& page(const CustomerRecord& customer, i32 p) {
    return customer.pages[static_cast<std::size_t>(p)];
  }

  [[nodiscard]] bool isSelected(i32 first, i32 second) const {
    const std::optional<i32>& wanted = sink_.settings.page;
    return !wanted || first == *wanted || second == *wanted;
  }

  bool passSamePage(i32 p) {
    if (!isSameAtSamePlace(p)) {
      return false;
    }
    if (isSelected(p, p)) {
      judge(p);
      reportPair(p, p, [](ChangeStream&) {});
    }
    return true;
  }

  // A page that changed a little is explained while it is loaded, unless it may have been the next
  // one, which only a look at all pages can tell.
  bool passNearlySamePage(i32 p) {
    const i32 positionA = page(a_, p).filePosition;
    const i32 positionB = page(b_, p).filePosition;
    const bool isInStep = count(a_) == count(b_) && positionA >= 0 && positionB >= 0 &&
                          !hasSameBody(p, p + 1) && !hasSameBody(p + 1, p);
    if (!isInStep) {
      return false;
    }
    const CompareContext& a = load(first_, pair_.first, p);
    const CompareContext& b = load(second_, pair_.second, p);
    const PageDigests firstDigests = digestsOf(a);
    const PageDigests secondDigests = digestsOf(b, a, firstDigests);
    if (!areNearlyEqual(firstDigests, secondDigests)) {
      return false;
    }
    if (isSelected(p, p)) {
      judge(p);
      explain({p, p, false}, firstDigests, secondDigests);
    }
    return true;
  }

  bool hasSameBody(i32 first, i32 second) {
    if (first >= count(a_) || second >= count(b_)) {
      return false;
    }
    const i32 positionA = page(a_, first).filePosition;
    const i32 positionB = page(b_, second).filePosition;
    if (positionA < 0 || positionB < 0) {
      return positionA < 0 && positionB < 0;
    }
    const i64 length = first_.bytes.bodyLengthAt(positionA);
    return length == second_.bytes.bodyLengthAt(positionB) &&
           first_.bytes.same(positionA, second_.bytes, positionB, length);
  }

  [[nodiscard]] bool isSameAtSamePlace(i32 p) {
    const i32 positionA = page(a_, p).filePosition;
    const i32 positionB = page(b_, p).filePosition;
    if (positionA < 0 || positionB < 0) {
      return positionA < 0 && positionB < 0;
    }
    load(first_, pair_.first, p);
    CompareContext& a = first_.file.context();
    CompareContext& b = second_.file.context();
    if (a.doubleByteText != b.doubleByteText || a.pageFailure()) {
      return false;
    }
    const std::span<const std::byte> body = a.bodyBytes();
    if (body.empty()) {  // too long for the window
      return first_.bytes.bodyAt(positionA) == second_.bytes.bodyAt(positionB);
    }
    return b.hasBytesAt(positionB, body);
  }

  const CompareContext& load(InspectedSide& side, i32 customer, i32 p) {
    const std::optional<PageFailure>& failure = side.file.loadPage(customer, p);
    if (failure) {
      tellDamage(side, customer, p, *failure);
    }
    return side.file.context();
  }

  // A page may be loaded more than once but is reported once.
  void tellDamage(const InspectedSide& side, i32 customer, i32 p, const PageFailure& failure) {
    std::set<i32>& told = &side == &first_ ? toldFirst_ : toldSecond_;
    if (told.insert(p).second) {
      sink_.tally.summary.damagedPages += 1;
      sink_.listener.damage(
          {side.file.path(), customer, side.file.customer(customer).id, p, inWords(failure)});
    }
  }

  CustomerPages pagesOf(InspectedSide& side, const CustomerRecord& customer, i32 index) {
    return {side.bytes, customer.pages,
            [this, &side, index](i32 p) -> const CompareContext& { return load(side, index, p); }};
  }

  void inspect(const PagePair& pages, CustomerPages& firstPages, CustomerPages& secondPages) {
    if (pages.first != kNone && pages.first < common_) {
      judge(pages.first);
    }
    if (pages.first == kNone || pages.second == kNone) {
      reportLonely(pages.first, pages.second);
    } else if (pages.hasSameBytes) {
      reportPair(pages.first, pages.second, [](ChangeStream&) {});
    } else {
      const CompareContext& a = load(first_, pair_.first, pages.first);
      const PageDigests firstDigests = digestsFor(firstPages, pages.first, a);
      const CompareContext& b = load(second_, pair_.second, pages.second);
      const PageDigests secondDigests = digestsFor(secondPages, pages.second, b);
      explain(pages, firstDigests, secondDigests);
    }
  }

  // Judges the pages with the same number, as a run does.
  void judge(i32 p) {
    verdictBits_ = 0;
    if (!pair_.isJudged) {
      return;
    }
    Summary& summary = sink_.tally.summary;
    summary.pagesCompared += 1;
    load(first_, pair_.first, p);
    CompareContext& a = first_.file.context();
    CompareContext& b = second_.file.context();
    if (equalByBytes(a, b, page(b_, p).filePosition, sink_.childLists)) {
      return;
    }
    load(second_, pair_.second, p);
    const PageVerdict verdict = judgePages(a, b, sink_.childLists);
    verdictBits_ = verdict.bits;
    summary.bits |= verdict.bits;
    if (verdict.bits != 0) {
      summary.pagesDiffering += 1;
      sink_.listener.verdict({pair_.first, &a_.id, p, p}, verdict);
    }
  }

  // Those that the pairing had to find out, if it did; each page is explained once.
  static PageDigests digestsFor(CustomerPages& side, i32 p, const CompareContext& page) {
    auto known = side.digests.extract(p);
    return known.empty() ? digestsOf(page) : std::move(known.mapped());
  }

  // Explains the pages that are loaded.
  void explain(const PagePair& pages, const PageDigests& firstDigests,
               const PageDigests& secondDigests) {
    reportPair(pages.first, pages.second, [&](ChangeStream& changes) {
      explainPages(first_.file.context(), firstDigests, second_.file.context(), secondDigests,
                   sink_.childLists, changes);
      const i32 positionA = page(a_, pages.first).filePosition;
      const i32 positionB = page(b_, pages.second).filePosition;
      const bool bothHaveBodies = positionA >= 0 && positionB >= 0;
      if (changes.isEmpty() && bothHaveBodies) {
        explainBytes(positionA, positionB, changes);
      }
      if ((positionA < 0) != (positionB < 0) && changes.isEmpty()) {
        explainFields({{"body", i64{positionA >= 0}, i64{positionB >= 0}}}, "PAGE", "",
                      ignored_by::kField, changes);
      }
    });
  }

  // Bytes that differ although no field does: a record of another version, or a dropped value.
  void explainBytes(i32 positionA, i32 positionB, ChangeStream& changes) {
    const ByteDigest from = first_.bytes.bodyAt(positionA);
    const ByteDigest to = second_.bytes.bodyAt(positionB);
    if (from != to) {
      explainFields({{"body", from, to}}, "PAGE", "", ignored_by::kEncoding, changes);
    }
  }

  void reportLonely(i32 first, i32 second) {
    const bool isAdded = first == kNone;
    Summary& summary = sink_.tally.summary;
    (isAdded ? summary.pagesAdded : summary.pagesRemoved) += 1;
    std::vector<Change> changes(1);
    Change& change = changes.front();
    change.kind = isAdded ? ChangeKind::kAdded : ChangeKind::kRemoved;
    change.type = "PAGE";
    change.first = first;
    change.second = second;
    PageResult result = resultFor(first, second);
    pass(result, std::move(changes));
  }

  // `explainBodies` adds the changes of everything but the index.
  template <class Explain>
  void reportPair(i32 first, i32 second, Explain explainBodies) {
    PageResult result = resultFor(first, second);
    ChangeStream changes([this, &result](std::vector<Change> stretch) {
      result.isLast = false;
      pass(result, std::move(stretch));
      result.isLast = true;
    });
    explainBodies(changes);
    explainIndex(page(a_, first), page(b_, second), changes);
    pass(result, changes.takeLast());
  }

  [[nodiscard]] PageResult resultFor(i32 first, i32 second) const {
    return {{pair_.first, &a_.id, first, second},
            first == kNone ? nullptr : &page(a_, first),
            second == kNone ? nullptr : &page(b_, second),
            first == kNone ? 0 : verdictBits_,
            {}};
  }

  void pass(PageResult& result, std::vector<Change> changes) {
    const PageAddress& address = result.address;
    if (!changes.empty()) {
      sink_.tally.take(
          changes, {address.customer, std::u16string(a_.id.view()), address.first, address.second});
    }
    result.changes = std::move(changes);
    if (result.isLast || !result.changes.empty()) {
      sink_.listener.page(result);
      result.isFirst = false;
    }
  }

  InspectedSide& first_;
  InspectedSide& second_;
  const CustomerPair& pair_;
  const InspectionSink& sink_;
  const CustomerRecord& a_;
  const CustomerRecord& b_;
  const i32 common_;
  DiffFlags verdictBits_ = 0;
  std::set<i32> toldFirst_;
  std::set<i32> toldSecond_;
};

}  // namespace

void inspectCustomers(InspectedSide& first, InspectedSide& second, const CustomerPair& pair,
                      const InspectionSink& sink) {
  CustomerInspection(first, second, pair, sink).run();
}

}  // namespace rvf::inspect
