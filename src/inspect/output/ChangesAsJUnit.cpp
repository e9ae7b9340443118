#include <algorithm>
#include <utility>

#include "inspect/model/BitNames.h"
#include "inspect/output/ChangeLines.h"
#include "inspect/output/ChangesWriter.h"
#include "inspect/output/JUnitReport.h"
#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

constexpr bool kNotColoured = false;

/// One suite per customer, one case per page; a page fails if it has a change that counts.
class JUnitChangesWriter final : public InspectionListener {
 public:
  explicit JUnitChangesWriter(Output& output) : report_(output) {}

  void begin(const CaptureFile&, const CaptureFile&, const InspectionSettings&) override {}

  void file(const Change& change) override {
    if (change.counts()) {
      report_.beginSuite("file");
      report_.failed("file", messageOf(change), "");
    }
  }

  void customer(const Change& change, i32, const eString& id) override {
    beginCustomer(id);
    if (change.counts()) {
      report_.failed("customer", messageOf(change), "");
    }
  }

  void verdict(const PageAddress&, const PageVerdict&) override {}

  void page(const PageResult& page) override {
    beginCustomer(*page.address.id);
    take(page.changes);
    if (!page.isLast) {
      return;
    }
    const FirstLines told = std::exchange(told_, {});
    if (told.counts) {
      const std::string& first = told.lines.front();
      report_.failed(titleOf(page), bitsInWords(page.verdictBits) + ": " + first, told.text());
    } else {
      report_.passed(titleOf(page));
    }
  }

  void object(const ObjectChanges& object) override {
    take(object.changes);
    if (!object.isLast) {
      return;
    }
    const FirstLines told = std::exchange(told_, {});
    report_.beginSuite("shared objects");
    const std::string name = std::to_string(object.objectType) + "/" +
                             std::to_string(object.first != kNone ? object.first : object.second) +
                             " " + shownText(object.name);
    if (told.counts) {
      report_.failed(name, "changed, used on " + counted(object.firstPages, "page"), told.text());
    } else {
      report_.passed(name);
    }
  }

  void damage(const Damage& damage) override {
    beginCustomer(damage.id);
    report_.error("page " + std::to_string(i64{damage.page} + 1) + " of " +
                      shownText(std::string_view(damage.path)),
                  damage.what);
  }

  void end(const Summary&, const ChangeGroups&) override { report_.finish(); }

 private:
  /// The first lines of a page's or an object's explanation.
  struct FirstLines {
    static constexpr std::size_t kMost = 20;

    [[nodiscard]] std::string text() const {
      std::string text;
      for (const std::string& line : lines) {
        text += line + "\n";
      }
      return text;
    }

    std::vector<std::string> lines;
    bool counts = false;
  };

  void take(const std::vector<Change>& changes) {
    for (const Change& change : changes) {
      told_.counts = told_.counts || change.counts();
      if (told_.lines.size() < FirstLines::kMost) {
        for (std::string& line : linesOf(change, kNotColoured)) {
          told_.lines.push_back(std::move(line));
        }
        told_.lines.resize(std::min(told_.lines.size(), FirstLines::kMost));
      }
    }
  }

  static std::string messageOf(const Change& change) {
    std::string message;
    for (const std::string& line : linesOf(change, kNotColoured)) {
      message += (message.empty() ? "" : "; ") + line;
    }
    return message;
  }

  void beginCustomer(const eString& id) {
    if (lastCustomer_ != &id) {
      report_.beginSuite(shownText(id.view()));
      lastCustomer_ = &id;
    }
  }

  JUnitReport report_;
  FirstLines told_;
  const eString* lastCustomer_ = nullptr;
};

}  // namespace

std::unique_ptr<InspectionListener> makeJUnitChangesWriter(Output& output) {
  return std::make_unique<JUnitChangesWriter>(output);
}

}  // namespace rvf::inspect
