#include "inspect/output/JUnitReport.h"

#include <pugixml.hpp>

#include "inspect/output/XmlText.h"

namespace rvf::inspect {

namespace {

struct OutputWriter final : pugi::xml_writer {
  explicit OutputWriter(Output& target) : output(target) {}
  void write(const void* data, std::size_t size) override {
    output.write({static_cast<const char*>(data), size});
  }
  Output& output;
};

}  // namespace

JUnitReport::JUnitReport(Output& output) : output_(output) {
  output_.line(R"(<?xml version="1.0" encoding="UTF-8"?>)");
  output_.line(R"(<testsuites name="rvfinspect">)");
}

void JUnitReport::beginSuite(const std::string& name) {
  endSuite();
  suite_ = name;
  isInSuite_ = true;
  // The start tag of an element that is never in memory as a whole: an empty element without its
  // slash.
  pugi::xml_document document;
  document.append_child("testsuite").append_attribute("name") = name.c_str();
  XmlText tag;
  document.document_element().print(tag, "", pugi::format_raw);
  output_.line("  " + tag.text.substr(0, tag.text.rfind("/>")) + ">");
}

void JUnitReport::passed(const std::string& caseName) { writeCase(caseName, nullptr, "", ""); }

void JUnitReport::failed(const std::string& caseName, const std::string& message,
                         const std::string& details) {
  writeCase(caseName, "failure", message, details);
}

void JUnitReport::error(const std::string& caseName, const std::string& message) {
  writeCase(caseName, "error", message, "");
}

void JUnitReport::writeCase(const std::string& caseName, const char* outcome,
                            const std::string& message, const std::string& details) {
  pugi::xml_document document;
  pugi::xml_node testCase = document.append_child("testcase");
  testCase.append_attribute("classname") = suite_.c_str();
  testCase.append_attribute("name") = caseName.c_str();
  if (outcome != nullptr) {
    pugi::xml_node node = testCase.append_child(outcome);
    node.append_attribute("message") = message.c_str();
    node.append_child(pugi::node_pcdata).set_value(details.c_str());
  }
  OutputWriter writer(output_);
  constexpr unsigned kSuiteDepth = 2;
  document.document_element().print(writer, "  ", pugi::format_indent, pugi::encoding_utf8,
                                    kSuiteDepth);
}

void JUnitReport::endSuite() {
  if (isInSuite_) {
    output_.line("  </testsuite>");
    isInSuite_ = false;
  }
}

void JUnitReport::finish() {
  endSuite();
  output_.line("</testsuites>");
}

}  // namespace rvf::inspect
