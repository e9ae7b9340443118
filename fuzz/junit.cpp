// The JUnit reports for two page-capture files: XML in which every case has its names and at most
// one outcome.

#include "support/CommandsOnPair.h"
#include "support/WrittenText.h"

namespace rvf::fuzz {
namespace {

void requireCase(const pugi::xml_node& testCase, const std::string& suite) {
  require(testCase.name() == std::string("testcase"), "a suite consists of cases");
  require(testCase.attribute("classname").value() == suite, "a case has the class of its suite");
  require(*testCase.attribute("name").value() != '\0', "a case has a name");
  const pugi::xml_node outcome = testCase.first_child();
  require(!outcome || *outcome.attribute("message").value() != '\0', "a failure says what failed");
  require(!outcome.next_sibling(), "a case has one outcome");
}

void requireReport(const std::string& text) {
  if (text.empty()) return;
  const pugi::xml_document document = parsedXml(text);
  require(document.document_element().name() == std::string("testsuites"), "it is a report");
  for (const pugi::xml_node suite : document.document_element().children()) {
    require(suite.name() == std::string("testsuite"), "a report consists of suites");
    for (const pugi::xml_node testCase : suite.children()) {
      requireCase(testCase, suite.attribute("name").value());
    }
  }
}

}  // namespace

void checkInput(FuzzInput input) {
  const CommandsOnPair commands(input);
  requireReport(commands.changes(inspect::Format::kJUnit));
  requireReport(commands.list(inspect::Format::kJUnit));
}

}  // namespace rvf::fuzz
