#include "compare/CustomerWalk.h"

#include <algorithm>

#include "base/Wrapping.h"
#include "compare/DifferenceFile.h"
#include "compare/DrawListMatch.h"
#include "compare/EqualBodies.h"

namespace rvf {

namespace {

/// One walk over two files.
class CustomerWalk {
 public:
  CustomerWalk(RvfReader& first, RvfReader& second, const Tolerances& tolerances,
               const WalkOutput& output, DiffFlags fileBits)
      : first_(first),
        second_(second),
        childLists_(tolerances),
        output_(output),
        differences_(output.differenceFile),
        fileBits_(fileBits) {}

  DiffFlags run() {
    forgetLoadedPage(first_);
    forgetLoadedPage(second_);
    differences_.writeHeader(output_.firstPath, output_.secondPath, first_.customerCount);
    bool isComplete = true;
    for (i32 c = 0; c < first_.customerCount && isComplete; ++c) {
      isComplete = compareCustomers(c);
    }
    if (metNewerRecord_) {
      differences_.abandon();
      return fileBits_;
    }
    if (isComplete) {
      differences_.writeTrailer(fileBits_, differingPages_, pageCountDelta_);
    } else {
      fileBits_ |= diff::kCustomers;
    }
    differences_.flush();
    first_.compareResult = fileBits_;
    return fileBits_;
  }

 private:
  // The walk starts without a page in memory, whatever loading may have left there.
  static void forgetLoadedPage(RvfReader& reader) {
    constexpr i32 kNoPage = -1;
    reader.context().cachedPagePosition = kNoPage;
    reader.firstPagePosition = kNoPage;
  }

  // Returns false if the walk ends here.
  bool compareCustomers(i32 c) {
    CustomerRecord& a = first_.customers[static_cast<std::size_t>(c)];
    CustomerRecord& b = second_.customers[static_cast<std::size_t>(c)];
    a.diffBits = 0;
    if (a.id != b.id) {
      return false;
    }
    DiffFlags customerBits = 0;
    const i32 common = std::min(a.pageCount, b.pageCount);
    if (a.pageCount != b.pageCount) {
      customerBits = diff::kPageCount;
      const i64 surplus = i64{std::max(a.pageCount, b.pageCount)} - common;
      pageCountDelta_ = wrappingSum(pageCountDelta_, static_cast<i32>(surplus));
    }
    differences_.writeCustomerHead(c, a.id, a.pageCount, b.pageCount);
    for (i32 p = 0; p < common; ++p) {
      customerBits |= comparePages(c, p);
      if (metNewerRecord_) {
        return false;
      }
      tellProgress(c);
    }
    markUnpairedPages(a, b, static_cast<std::size_t>(std::max(common, 0)));
    a.diffBits |= customerBits;
    fileBits_ |= customerBits;
    differences_.writeCustomerEnd(customerBits);
    tellProgress(c + 1);
    return true;
  }

  DiffFlags comparePages(i32 c, i32 p) {
    const auto index = static_cast<std::size_t>(p);
    PageRecord& a = first_.customers[static_cast<std::size_t>(c)].pages[index];
    const PageRecord& b = second_.customers[static_cast<std::size_t>(c)].pages[index];
    // A different page name is recorded, but it is not a difference.
    if (a.name != b.name) {
      a.unpaired = true;
      eString text;
      text.Format(u"Page name mismatch: %s / %s", a.name.text(), b.name.text());
      a.name = first_.pageNames.keep(text.view());
    }
    for (RvfReader* reader : {&first_, &second_}) {
      reader->currentCustomer = c;
      reader->currentPage = p;
    }
    first_.loadCurrentPage();
    if (first_.context().newerRecord() != nullptr) {
      metNewerRecord_ = true;
      return 0;
    }
    DiffFlags pageBits = 0;
    if (output_.usesShortCut &&
        equalByBytes(first_.context(), second_.context(), b.filePosition, childLists_)) {
      second_.context().forgetPage();
    } else {
      second_.loadCurrentPage();
      if (second_.context().newerRecord() != nullptr) {
        metNewerRecord_ = true;
        return 0;
      }
      pageBits = compareLoadedPages();
    }
    a.setDiffBits(pageBits);
    differences_.writePage(pageBits);
    pagesCompared_ += 1;
    differingPages_ += pageBits != 0 ? 1 : 0;
    return pageBits;
  }

  DiffFlags compareLoadedPages() {
    const CompareContext& a = first_.context();
    const CompareContext& b = second_.context();
    DiffFlags pageBits = compareLists(a.pageList, b.pageList);
    if (a.staticCount != b.staticCount) {
      pageBits |= diff::kContent | diff::kDrawOrder;
    }
    // A list that only one side has is covered by the difference in the number of lists.
    const i32 common = std::min(a.staticCount, b.staticCount);
    for (i32 i = 0; i < common; ++i) {
      pageBits |= compareStaticLists(a, b, i);
    }
    return pageBits;
  }

  [[nodiscard]] DiffFlags compareLists(const DrawList& a, const DrawList& b) {
    return listsEqual(a, b, &childLists_) ? 0 : matchLists(a, b, childLists_);
  }

  DiffFlags compareStaticLists(const CompareContext& a, const CompareContext& b, i32 index) {
    const auto i = static_cast<std::size_t>(index);
    const DrawList& listA = a.staticList(index);
    const DrawList& listB = b.staticList(index);
    DiffFlags bits = compareLists(listA, listB);
    // Quirk that stays: the position tolerance does not apply to the list, although it does to the
    // parts in it. Existing results depend on this.
    const i32 yA = wrappingSum(listA.originY, a.staticPlacementY[i]);
    const i32 yB = wrappingSum(listB.originY, b.staticPlacementY[i]);
    const i32 xA = wrappingSum(listA.originX, a.staticPlacementX[i]);
    const i32 xB = wrappingSum(listB.originX, b.staticPlacementX[i]);
    if (yA != yB || xA != xB) {
      bits |= diff::kContent | diff::kPosition;
    }
    return bits;
  }

  // Afterwards, the first customer holds the pages of both, for whoever reads the records.
  void markUnpairedPages(CustomerRecord& a, const CustomerRecord& b, std::size_t common) {
    for (std::size_t p = common; p < a.pages.size(); ++p) {
      a.pages[p].unpaired = true;
    }
    for (std::size_t p = std::max(common, a.pages.size()); p < b.pages.size(); ++p) {
      a.pages.emplace_back(0, first_.pageNames.keep(b.pages[p].name.text().view()), 0, 0);
      a.pages.back().unpaired = true;
    }
  }

  void tellProgress(i32 customersDone) const {
    if (output_.observer != nullptr) {
      output_.observer->pagesCompared(customersDone, first_.customerCount, pagesCompared_,
                                      differingPages_);
    }
  }

  RvfReader& first_;
  RvfReader& second_;
  ChildListResults childLists_;
  const WalkOutput& output_;
  DifferenceFileWriter differences_;
  DiffFlags fileBits_;
  i32 differingPages_ = 0;
  i32 pageCountDelta_ = 0;
  i64 pagesCompared_ = 0;
  bool metNewerRecord_ = false;
};

}  // namespace

DiffFlags walkCustomers(RvfReader& first, RvfReader& second, CountMismatch onMismatch,
                        const Tolerances& tolerances, const WalkOutput& output) {
  if (first.resolution != second.resolution) {
    return diff::kResolution;
  }
  DiffFlags fileBits = 0;
  if (first.customerCount != second.customerCount) {
    fileBits = diff::kCustomers;
    if (onMismatch == CountMismatch::kEndsWalk) {
      return fileBits;
    }
    const i32 common = std::min(first.customerCount, second.customerCount);
    first.customerCount = common;
    second.customerCount = common;
  }
  return CustomerWalk(first, second, tolerances, output, fileBits).run();
}

}  // namespace rvf
