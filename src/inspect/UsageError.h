#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace rvf::inspect {

/// One line, without its end, about a command line that was not understood: what is wrong, which
/// name was perhaps meant, and which help to ask for. `words` is the command line without the
/// program's name. It can be shown on a terminal whatever the words contain.
[[nodiscard]] std::string explainUsage(const CLI::App& app, const CLI::ParseError& error,
                                       const std::vector<std::string>& words);

}  // namespace rvf::inspect
