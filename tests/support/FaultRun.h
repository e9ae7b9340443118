#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/Paths.h"
#include "support/RunProgram.h"

namespace rvf::test {

/// Settings for faults/FaultShim.cpp: the variable's name without RVF_FAULT_, and its value.
using Faults = std::vector<std::pair<std::string, std::string>>;

/// runProgram on a failing system. A run of more than ten seconds is killed.
inline ProgramResult runWithFaults(const Faults& faults, const std::vector<std::string>& arguments,
                                   const std::filesystem::path& workingFolder) {
  constexpr int kLongestRun = 10;
  std::vector<std::string> command = {"/usr/bin/env",
                                      "LD_PRELOAD=" + builtPath("tests/libfault_shim.so")};
  for (const auto& [name, value] : faults) command.push_back("RVF_FAULT_" + name + "=" + value);
  command.insert(command.end(), arguments.begin(), arguments.end());
  return runProgram(std::move(command), workingFolder, kLongestRun);
}

}  // namespace rvf::test
