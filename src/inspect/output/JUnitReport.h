#pragma once

#include <string>
#include <string_view>

#include "inspect/output/Output.h"

namespace rvf::inspect {

/// A JUnit report as CI servers read it, written suite by suite and case by case, so that only one
/// case is in memory. Texts are passed as they are to be shown.
class JUnitReport {
 public:
  explicit JUnitReport(Output& output);

  void beginSuite(const std::string& name);
  void passed(const std::string& caseName);
  void failed(const std::string& caseName, const std::string& message, const std::string& details);
  /// The case could not be judged.
  void error(const std::string& caseName, const std::string& message);
  void endSuite();
  void finish();

 private:
  void writeCase(const std::string& caseName, const char* outcome, const std::string& message,
                 const std::string& details);

  Output& output_;
  std::string suite_;
  bool isInSuite_ = false;
};

}  // namespace rvf::inspect
