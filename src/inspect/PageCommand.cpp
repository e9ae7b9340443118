#include "inspect/Commands.h"
#include "inspect/model/SelectedCustomer.h"
#include "inspect/model/Trouble.h"
#include "inspect/output/Output.h"
#include "inspect/output/PageDrawing.h"

namespace rvf::inspect {

int runPage(const PageOptions& options) {
  CaptureFile file(options.file, options.oldText);
  DrawingStyle style;
  style.colours = options.colours;
  if (!options.fonts.empty()) {
    style.fonts = readFonts(options.fonts);
  }
  const SelectedCustomer wanted(options.selection.customer);
  const i32 page = options.selection.page.value_or(1) - 1;
  for (i32 c = 0; c < file.customerCount(); ++c) {
    const CustomerRecord& customer = file.customer(c);
    if (!wanted.includes(c, customer.id.view()) ||
        static_cast<std::size_t>(page) >= customer.pages.size()) {
      continue;
    }
    const std::optional<PageFailure> failure = file.loadPage(c, page);
    Output output(options.out);
    output.write(drawPage(file.context(), style));
    output.finish();
    if (failure) {
      throw Trouble(file.path(),
                    "the page is drawn as far as it could be read: " + inWords(*failure));
    }
    return status::kSame;
  }
  throw Trouble(file.path(), "there is no such customer or page");
}

}  // namespace rvf::inspect
