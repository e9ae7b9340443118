// Every page of a page-capture file as a drawing: harmless XML, no larger than the file justifies,
// in which each element has a list and every reference a target.

#include <set>

#include "inspect/model/CaptureFile.h"
#include "inspect/output/PageDrawing.h"
#include "support/MemoryFile.h"
#include "support/WrittenText.h"

namespace rvf::fuzz {
namespace {

/// Adds the ids below a node to `ids` and the targets of its references to `targets`.
void visit(const pugi::xml_node& node, std::set<std::string>& ids, std::set<std::string>& targets) {
  const std::string id = node.attribute("id").value();
  require(id.empty() || ids.insert(id).second, "an id is there once");
  const std::string href = node.attribute("href").value(), fill = node.attribute("fill").value();
  if (href.starts_with("#")) targets.insert(href.substr(1));
  if (fill.starts_with("url(#")) targets.insert(fill.substr(5, fill.size() - 6));
  const bool hasList = !node.attribute("data-part") || node.parent().attribute("data-list");
  require(hasList, "a part stands in its list");
  for (const pugi::xml_node child : node.children()) visit(child, ids, targets);
}

void requireDrawing(const std::string& svg, std::size_t fileSize) {
  constexpr std::size_t kSizeOfEmptyPage = 4096, kMostForAByte = 256;
  require(svg.size() < kSizeOfEmptyPage + kMostForAByte * fileSize, "a drawing is in proportion");
  std::set<std::string> ids, targets;
  const pugi::xml_document document = parsedXml(svg);
  visit(document.document_element(), ids, targets);
  for (const std::string& target : targets) require(ids.contains(target), "a reference leads on");
}

}  // namespace

void checkInput(FuzzInput input) {
  const u8 flags = input.take();
  const MemoryFile capture(input.rest());
  inspect::redactsTexts = (flags & 4) != 0;
  inspect::CaptureFile file(capture.path(), inspect::OldText(flags & 1),
                            inspect::Acceptance::kOptional);
  if (!file.reader().valid()) return;
  int left = 16;  // pages, which may all be the same
  for (i32 c = 0; c < file.customerCount(); ++c) {
    for (i32 p = 0; p < static_cast<i32>(file.customer(c).pages.size()) && left > 0; ++p, --left) {
      static_cast<void>(file.loadPage(c, p));
      requireDrawing(inspect::drawPage(file.context(), {}), input.rest().size());
    }
  }
}

}  // namespace rvf::fuzz
