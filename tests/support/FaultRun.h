#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/RunProgram.h"

namespace rvf::test {

/// What the failing system of faults/FaultShim.cpp is asked for: the part of a variable's name
/// behind RVF_FAULT_, and its value.
using Faults = std::vector<std::pair<std::string, std::string>>;

/// False in a build with sanitizers, whose own allocator has to come first.
bool canInjectFaults();

/// runProgram under a system that fails. A run of more than ten seconds is killed.
ProgramResult runWithFaults(const Faults& faults, std::vector<std::string> arguments,
                            const std::filesystem::path& workingFolder);

}  // namespace rvf::test
