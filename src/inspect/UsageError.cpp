#include "inspect/UsageError.h"

#include <algorithm>
#include <numeric>
#include <string_view>

#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

int editDistance(std::string_view a, std::string_view b) {
  std::vector<int> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (const char character : a) {
    int diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const int replaced = diagonal + (character == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

/// ", did you mean NAME?" for the name most similar to a word; empty if none is.
std::string suggestion(std::string_view word, const std::vector<std::string>& names) {
  int least = std::max(2, static_cast<int>(word.size()) / 3) + 1;
  std::string nearest;
  for (const std::string& name : names) {
    const int distance = editDistance(word, name);
    if (distance < least) {
      least = distance;
      nearest = name;
    }
  }
  return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

const CLI::App* commandOf(const CLI::App& app, const std::vector<std::string>& words) {
  for (const CLI::App* command : app.get_subcommands({})) {
    if (!words.empty() && command->get_name() == words.front()) {
      return command;
    }
  }
  return &app;
}

std::vector<std::string> commandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) {
    names.push_back(command->get_name());
  }
  return names;
}

std::vector<std::string> optionNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    if (!option->get_lnames().empty()) {
      names.push_back("--" + option->get_lnames().front());
    }
  }
  return names;
}

// The first word that looks like an option but is not one.
std::string unknownWord(const CLI::App& command, const std::vector<std::string>& words) {
  const std::vector<std::string> names = optionNames(command);
  for (const std::string& word : words) {
    std::string name = word.substr(0, word.find('='));
    if (name.size() > 1 && name.front() == '-' && std::ranges::count(names, name) == 0) {
      return name;
    }
  }
  return "";
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : ", ") + name;
  }
  return text;
}

}  // namespace

std::string explainUsage(const CLI::App& app, const CLI::ParseError& error,
                         const std::vector<std::string>& words) {
  const CLI::App* command = commandOf(app, words);
  std::string line = std::string("rvfinspect") +
                     (command == &app ? "" : " " + command->get_name()) + ": " + error.what();
  const std::string unknown = unknownWord(*command, words);
  if (words.empty()) {
    line = "rvfinspect: a command is missing: " + joined(commandNames(app));
  } else if (command == &app) {
    line = "rvfinspect: unknown command " + words.front() +
           suggestion(words.front(), commandNames(app));
  } else if (!unknown.empty()) {
    line = "rvfinspect " + command->get_name() + ": unknown option " + unknown +
           suggestion(unknown, optionNames(*command));
  }
  std::replace(line.begin(), line.end(), '\n', ' ');
  const std::string help = command == &app ? "" : command->get_name() + " ";
  return shownText(std::string_view(line)) + " (see rvfinspect " + help + "--help)";
}

}  // namespace rvf::inspect
