#include "inspect/model/BitNames.h"
#include "inspect/output/ChangeLines.h"
#include "inspect/output/ChangesWriter.h"
#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

class TextChangesWriter final : public InspectionListener {
 public:
  TextChangesWriter(Output& output, const TextStyle& style) : output_(output), style_(style) {}

  void begin(const CaptureFile& first, const CaptureFile& second,
             const InspectionSettings& settings) override {
    output_.line(shownText(std::string_view(first.path())) + " -> " +
                 shownText(std::string_view(second.path())) + ", position tolerance " +
                 std::to_string(settings.tolerances.positionTolerance) + ", line tolerance " +
                 std::to_string(settings.tolerances.lineTolerance));
  }

  void file(const Change& change) override {
    if (isByPage()) {
      output_.line("\nFile");
      write(change, "  ");
    }
  }

  void customer(const Change& change, i32 index, const eString& id) override {
    if (isByPage()) {
      showCustomer(index, id);
      write(change, "  ");
    }
  }

  void verdict(const PageAddress& address, const PageVerdict& verdict) override {
    pending_ = verdict;
    pendingPage_ = address.first;
  }

  // A verdict concerns the pages with the same number and is shown with the first file's page.
  void page(const PageResult& page) override {
    const bool isJudged = page.address.first == pendingPage_ && pending_.bits != 0;
    const bool isShown = style_.showsAllPages || isJudged || !page.changes.empty();
    if (isByPage() && isShown) {
      if (page.isFirst) {
        showCustomer(page.address.customer, *page.address.id);
        output_.line("  " + titleOf(page) +
                     (page.address.first == kNone ? "" : ": " + bitsInWords(page.verdictBits)));
      }
      for (const Change& change : page.changes) {
        if (change.type != "PAGE" || change.kind == ChangeKind::kChanged) {
          write(change, "    ");
        }
      }
      if (page.isFirst && page.changes.empty() && !isJudged) {
        output_.line("    no change");
      }
      if (page.isLast && isJudged) {
        for (const VerdictReason& reason : pending_.why) {
          output_.line("    why " + lineOf(reason));
        }
      }
    }
    if (page.isLast) {
      pending_ = {};
    }
  }

  void object(const ObjectChanges& object) override {
    if (!isByPage()) {
      return;
    }
    if (object.isFirst) {
      const i32 index = object.first != kNone ? object.first : object.second;
      output_.line("\nShared object " + std::to_string(object.objectType) + "/" +
                   std::to_string(index) + " \"" + shownText(object.name) + "\", used on " +
                   counted(object.firstPages, "page") + " / " + std::to_string(object.secondPages));
    }
    for (const Change& change : object.changes) {
      write(change, "  ");
    }
  }

  void damage(const Damage& damage) override {
    output_.line("\nDamage in " + shownText(std::string_view(damage.path)) + ": customer " +
                 std::to_string(i64{damage.customer} + 1) + " \"" + shownText(damage.id.view()) +
                 "\", page " + std::to_string(i64{damage.page} + 1) + ": " + damage.what);
  }

  void end(const Summary& summary, const ChangeGroups& groups) override {
    if (!isByPage()) {
      for (const ChangeGroup* group : groups.sorted()) {
        output_.line("");
        for (const std::string& line : linesOf(*group, style_.isColoured)) {
          output_.line(line);
        }
      }
    }
    output_.line("");
    for (const std::string& line : linesOf(summary)) {
      output_.line(line);
    }
    if (groups.changesLeftOut() > 0) {
      output_.line("Not grouped: " + counted(groups.changesLeftOut(), "change"));
    }
  }

 private:
  [[nodiscard]] bool isByPage() const { return style_.grouping == Grouping::kByPage; }

  void showCustomer(i32 index, const eString& id) {
    if (lastCustomer_ != &id) {
      output_.line("\nCustomer " + std::to_string(i64{index} + 1) + " \"" + shownText(id.view()) +
                   "\"");
      lastCustomer_ = &id;
    }
  }

  void write(const Change& change, std::string_view indentation) {
    for (const std::string& line : linesOf(change, style_.isColoured)) {
      output_.write(indentation);
      output_.line(line);
    }
  }

  Output& output_;
  TextStyle style_;
  PageVerdict pending_;
  i32 pendingPage_ = kNone;
  const eString* lastCustomer_ = nullptr;
};

}  // namespace

std::unique_ptr<InspectionListener> makeTextChangesWriter(Output& output, const TextStyle& style) {
  return std::make_unique<TextChangesWriter>(output, style);
}

}  // namespace rvf::inspect
