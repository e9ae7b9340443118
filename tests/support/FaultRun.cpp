#include "FaultRun.h"

#include <cstdlib>

namespace rvf::test {
namespace {

constexpr int kLongestRun = 10;

/// Variables that exist for as long as this object does.
class Environment {
 public:
  void set(const std::string& name, const std::string& value) {
    ::setenv(name.c_str(), value.c_str(), 1);
    names_.push_back(name);
  }
  ~Environment() {
    for (const std::string& name : names_) ::unsetenv(name.c_str());
  }

 private:
  std::vector<std::string> names_;
};

}  // namespace

bool canInjectFaults() { return *RVF_FAULT_SHIM != '\0'; }

ProgramResult runWithFaults(const Faults& faults, std::vector<std::string> arguments,
                            const std::filesystem::path& workingFolder) {
  Environment environment;
  environment.set("LD_PRELOAD", RVF_FAULT_SHIM);
  for (const auto& [name, value] : faults) environment.set("RVF_FAULT_" + name, value);
  return runProgram(std::move(arguments), workingFolder, kLongestRun);
}

}  // namespace rvf::test
