#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "run/RunFolder.h"
#include "support/Capture.h"

namespace rvf::test {

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

  /// Runs with the outputs of the run before removed.
  ProgramResult runAnew(const std::string& arguments) const {
    shell("rm -f Differenced.dat PlenarixMessages.dat");
    return run(arguments);
  }
  void expectTrueResult(const ProgramResult& result) const {
    EXPECT_EQ(result.status, kTrueStatus) << result.err;
    EXPECT_EQ(report(), "2176") << "Text and Content";
    EXPECT_TRUE(differenceIsComplete());
  }

  static constexpr int kTrueStatus = 128;
  static constexpr const char* kMessageFileLine =
      " ****** There was an error opening the Message File named ";
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
      "#define DAMAGED 9042 // S|0|0|Damage: |1|\n";
};

}  // namespace rvf::test
