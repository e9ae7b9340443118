#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <utility>
#include <vector>

#include "inspect/Options.h"

namespace rvf::inspect {

// Options that several commands have, each declared in one place. What they set is the caller's and
// must outlive the command.

/// The values of an option that takes one of a few words.
template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

/// Declares an option that takes one of the words of `choices`.
template <class Value>
CLI::Option* addChoice(CLI::App& command, const std::string& name, Value& target,
                       const Choices<Value>& choices, const std::string& purpose) {
  std::string names;
  for (const auto& choice : choices) {
    names += (names.empty() ? "" : ", ") + choice.first;
  }
  const auto choose = [&target, choices, name, names](const std::string& word) {
    for (const auto& [choiceName, value] : choices) {
      if (choiceName == word) {
        target = value;
        return;
      }
    }
    throw CLI::ValidationError(name, word + " is not one of " + names);
  };
  return command.add_option_function<std::string>(name, choose, purpose + ": " + names);
}

/// --format with one of `formats`, --output, --color and --redact.
void addOutput(CLI::App& command, OutputOptions& output, const Choices<Format>& formats);
void addProgress(CLI::App& command, When& progress);
void addRedaction(CLI::App& command);
/// --customer and --page.
void addSelection(CLI::App& command, Selection& selection);
/// Both tolerances, and --two-byte-text.
void addTolerances(CLI::App& command, Tolerances& tolerances, OldText& oldText);
void addOldText(CLI::App& command, OldText& oldText);

}  // namespace rvf::inspect
