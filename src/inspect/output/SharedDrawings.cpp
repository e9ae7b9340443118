#include "inspect/output/SharedDrawings.h"

#include <algorithm>
#include <cstring>
#include <pugixml.hpp>

#include "inspect/model/Digest.h"
#include "inspect/output/XmlText.h"

namespace rvf::inspect {

namespace {

using pugi::xml_node;

std::string textOf(xml_node node) {
  XmlText writer;
  node.print(writer, "", pugi::format_raw, pugi::encoding_utf8);
  return std::move(writer.text);
}

void refer(xml_node node, i32 number, std::vector<i32>& stored) {
  node.append_attribute("data-stored") = number;
  stored.push_back(number);
}

/// A text of one run needs no separate element for the run, and large pages consist of such texts.
void joinRun(xml_node text) {
  const xml_node run = text.first_child();
  if (std::strcmp(run.name(), "tspan") != 0 || run.next_sibling() ||
      run.first_child().first_child()) {
    return;
  }
  for (const pugi::xml_attribute attribute : run.attributes()) {
    text.append_copy(attribute);
  }
  const std::string words = run.child_value();
  text.remove_child(run);
  const bool hasPlainSpaces =
      !words.starts_with(' ') && !words.ends_with(' ') && words.find("  ") == std::string::npos;
  if (hasPlainSpaces) {
    text.remove_attribute("xml:space");
  }
  text.append_child(pugi::node_pcdata).set_value(words.c_str());
}

/// The next node of a tree in document order, without recursion.
xml_node next(xml_node node, xml_node root) {
  if (node.first_child()) {
    return node.first_child();
  }
  while (node != root && !node.next_sibling()) {
    node = node.parent();
  }
  return node == root ? xml_node() : node.next_sibling();
}

}  // namespace

SplitDrawing SharedDrawings::split(const std::string& svg) {
  SplitDrawing result;
  pugi::xml_document document;
  document.load_buffer(svg.data(), svg.size(), pugi::parse_default | pugi::parse_ws_pcdata_single,
                       pugi::encoding_utf8);
  xml_node root = document.document_element();
  result.viewBox = root.attribute("viewBox").value();
  for (xml_node node = root; node; node = next(node, root)) {
    if (std::strcmp(node.name(), "text") == 0) {
      joinRun(node);
    }
    pugi::xml_attribute href = node.attribute("href");
    if (std::strcmp(node.name(), "image") == 0 && href) {
      const i32 number = numberOf(href.value());
      node.remove_attribute(href);
      refer(node, number, result.stored);
    }
  }
  for (xml_node object : root.child("defs").children("g")) {
    std::string content;
    for (const xml_node child : object.children()) {
      content += textOf(child);
    }
    object.remove_children();
    refer(object, numberOf(content), result.stored);
  }
  std::ranges::sort(result.stored);
  result.stored.erase(std::unique(result.stored.begin(), result.stored.end()), result.stored.end());
  result.svg = textOf(root);
  return result;
}

i32 SharedDrawings::numberOf(const std::string& content) {
  Digest digest;
  digest.addText(std::string_view(content));
  const auto [found, isNew] = numbers_.emplace(digest.value(), static_cast<i32>(numbers_.size()));
  if (isNew) {
    store_(found->second, content);
  }
  return found->second;
}

}  // namespace rvf::inspect
