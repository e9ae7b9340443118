#include "inspect/Commands.h"
#include "inspect/model/PageVerdict.h"
#include "inspect/model/SelectedCustomer.h"
#include "inspect/model/SharedObjects.h"
#include "inspect/model/Trouble.h"
#include "inspect/output/DumpWriter.h"
#include "messages/MessageReporter.h"

namespace rvf::inspect {

namespace {

class Dump {
 public:
  Dump(const DumpOptions& options, CaptureFile& file, DumpWriter& writer)
      : options_(options),
        file_(file),
        writer_(writer),
        customer_(options.selection.customer),
        isWhole_(customer_.isAny() && !options.selection.page) {}

  int run() {
    // Requesting only some parts leaves the rest out.
    const bool all = !options_.objects && !options_.index;
    if (isWhole_) {
      writer_.file(file_);
      if (all || options_.objects) {
        dumpObjects();
      }
    }
    if (all || options_.index) {
      dumpCustomers(all);
    }
    if (!isWhole_ && !found_) {
      throw Trouble(file_.path(), "there is no such customer or page");
    }
    return isDamaged_ ? status::kTrouble : status::kSame;
  }

 private:
  void dumpObjects() {
    for (const i32 type : kObjectTypes) {
      for (i32 i = 0; i < file_.context().staticObjectCount(type); ++i) {
        const DrawStatic& object = *file_.context().FindStatic(type, i);
        writer_.object(type, i, object);
        writer_.list(objectListName(type, i, ObjectList::kFirst), object.firstList);
        if (object.hasSecond != 0) {
          writer_.list(objectListName(type, i, ObjectList::kSecond), object.secondList);
        }
      }
    }
  }

  void dumpCustomers(bool withBodies) {
    for (i32 c = 0; c < file_.customerCount(); ++c) {
      const CustomerRecord& customer = file_.customer(c);
      if (!customer_.includes(c, customer.id.view())) {
        continue;
      }
      writer_.customer(c, customer);
      for (i32 p = 0; p < static_cast<i32>(customer.pages.size()); ++p) {
        const std::optional<i32>& wanted = options_.selection.page;
        if (!wanted || p == *wanted - 1) {
          found_ = true;
          writer_.page(c, p, file_.page(c, p));
          if (withBodies && file_.page(c, p).filePosition >= 0) {
            dumpBody(c, p);
          }
        }
      }
      found_ = found_ || !options_.selection.page;
      static_cast<void>(messageReporter.takePending());
    }
  }

  void dumpBody(i32 c, i32 p) {
    const std::optional<PageFailure>& failure = file_.loadPage(c, p);
    const CompareContext& page = file_.context();
    writer_.body(page, failure ? -1 : page.cachedPagePosition + page.bodyLength());
    if (failure) {
      isDamaged_ = true;
      writer_.damage(inWords(*failure));
    }
  }

  const DumpOptions& options_;
  CaptureFile& file_;
  DumpWriter& writer_;
  SelectedCustomer customer_;
  bool isWhole_;
  bool found_ = false;
  bool isDamaged_ = false;
};

}  // namespace

int runDump(const DumpOptions& options) {
  CaptureFile file(options.file, options.oldText);
  Output output(options.output.path);
  const std::unique_ptr<DumpWriter> writer = options.output.format == Format::kJsonLines
                                                 ? makeJsonDumpWriter(output)
                                                 : makeTextDumpWriter(output);
  const int status = Dump(options, file, *writer).run();
  output.finish();
  return status;
}

}  // namespace rvf::inspect
