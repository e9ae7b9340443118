#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/Capture.h"
#include "support/DifferenceBytes.h"
#include "support/Paths.h"
#include "support/RunProgram.h"
#include "support/TempFolder.h"

namespace rvf::test {

/// The working directory of a run, with its command line and outputs.
class RunFolder : public TempFolder {
 public:
  /// Empty, or a copy of a reference folder.
  explicit RunFolder(const std::string& reference = "") {
    if (reference.empty()) return;
    std::filesystem::copy(sourcePath("tests/reference/" + reference), path());
    std::istringstream arguments(read("arguments"));
    for (std::string line; std::getline(arguments, line);) command.push_back(line);
    std::istringstream outputs(read("outputs"));
    for (std::string kind; std::getline(outputs, kind, '\t');) {
      std::getline(outputs, kind == "messages" ? messagesName : differenceName);
    }
  }

  /// Runs shell text in which $P is the program. It is killed after ten seconds.
  ProgramResult shell(const std::string& text) const {
    return runProgram({"/bin/sh", "-c", "P='" + builtPath("rvfcompare") + "'; " + text}, path(),
                      10);
  }
  ProgramResult run(const std::string& arguments = "") const {
    return shell("exec \"$P\" " + arguments);
  }

  std::string readIfThere(const std::string& name) const { return has(name) ? read(name) : ""; }
  bool differenceIsComplete() const {
    return DifferenceBytes(readIfThere(differenceName)).isComplete();
  }
  /// The essence of the message file, in any encoding: its numbered messages, then the return code
  /// of the closing report.
  std::string report() const {
    if (!has(messagesName)) return kNoReport;
    std::string text = read(messagesName);
    std::erase(text, '\0');
    std::istringstream lines(text);
    std::string messages, end = kNoEnd;
    for (std::string line; std::getline(lines, line, '\r'); lines.ignore()) {
      const std::string label = "Return Code";
      const std::size_t at = line.find(label);
      if (line.starts_with("QZ")) messages += line + "\n";
      if (at != line.npos) end = std::to_string(std::atoi(line.c_str() + at + label.size()));
    }
    return messages + end;
  }
  bool hasClosingReport() const { return has(messagesName) && !report().ends_with(kNoEnd); }

  /// The bytes of all files, by name, including links to files.
  std::map<std::string, std::string> files() const {
    std::map<std::string, std::string> bytes;
    for (const auto& entry : std::filesystem::directory_iterator(path())) {
      const std::string name = entry.path().filename();
      if (entry.is_regular_file()) bytes[name] = read(name);
    }
    return bytes;
  }

  static constexpr const char* kNoReport = "no message file";
  static constexpr const char* kNoEnd = "no closing report";
  std::vector<std::string> command = {builtPath("rvfcompare")};
  std::string differenceName = "Differenced.dat", messagesName = "PlenarixMessages.dat";
};

/// A folder with a catalogue of these tests, a control file, and a pair that differs in one text.
class Surroundings : public testing::Test, protected RunFolder {
 protected:
  Surroundings() {
    write("MsgResource_en-us.dat", kCatalogue);
    write("c.ctl", "-POS_TOLERANCE=5\n");
    std::vector<PageFields> pages(40, page({text({.text = u"a"}), line()}));
    write("RVF1.rvf", writeCapture(captureOf(pages)).bytes);
    pages[30] = page({text({.text = u"b"}), line()});
    write("RVF2.rvf", writeCapture(captureOf(pages)).bytes);
    std::filesystem::create_directory(path() / "folder");
  }

  /// A new run as its operator sees it: what is printed except for the greeting and the usage text,
  /// the exit status, the report, and the state of the difference file.
  std::string account(const std::string& arguments, const std::string& before = ":") const {
    shell("rm -f Differenced.dat PlenarixMessages.dat");
    const ProgramResult result = shell(before + "; exec \"$P\" " + arguments);
    std::string text = "$ rvfcompare " + arguments + "\n";
    std::istringstream lines(result.out + result.err + report());
    bool isUsage = false;
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("usage:")) text += "  (usage)\n";
      isUsage = isUsage || line.starts_with("usage:");
      if (!isUsage && !line.starts_with("-*-*-")) text += "  " + line + "\n";
      isUsage = isUsage && !line.starts_with("Example:");
    }
    const std::string difference = readIfThere(differenceName);
    const char* state = difference.empty() ? "empty" : differenceIsComplete() ? "complete" : "cut";
    return text + "  status " + std::to_string(result.status) + ", difference file " +
           (has(differenceName) ? state : "not written") + "\n";
  }
  void expectTrueResult(const ProgramResult& result) const {
    EXPECT_EQ(result.status, kTrueStatus) << result.err;
    EXPECT_EQ(report(), "2176") << "Text and Content";
    EXPECT_TRUE(differenceIsComplete());
  }

  static constexpr int kTrueStatus = 128;
  static constexpr const char* kCatalogue =
      "// messages of these tests\n"
      "#define MESS_SYMB_VER 1602008\n"
      "#define OPTION 1019 // E|0|0|Option |1|\n"
      "#define SINK 1806 // S|0|0|Report |1|: |2|\n"
      "#define ARCHIVE 1811 // S|0|0|Output |1|: |2|\n"
      "#define READ 1822 // S|0|0|Reading |2|: |3|\n"
      "#define CLOSE 1848 // S|0|0|Closing |1|: |2|\n"
      "#define UNUSABLE 1903 // S|0|0|File |1|: |2|\n"
      "#define TOO_NEW 2564 // S|0|0|Record |1| |2|, known |3|\n"
      "#define DAMAGED 9042 // S|0|0|Damage: |1|\n"
      "#define VALUES 9048 // S|0|0|Values\n";
};

}  // namespace rvf::test
