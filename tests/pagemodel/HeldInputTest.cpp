#include "storage/HeldInput.h"

#include <array>
#include <string>
#include <vector>

#include "pagemodel/PartRows.h"
#include "support/Reporting.h"

namespace rvf::test {
namespace {

/// The outcome of reading: the whole part, or the messages if it could not be read.
Rows outcome(DrawPart& slot, const std::string& bytes, bool wide, i32 bufferSize) {
  HeldMessages messages;
  LoadedBytes file("head" + bytes, wide, bufferSize);
  file.archive.skip(4);  // fills the buffer
  readDrawPart(slot, file.archive);
  if (file.archive.failed()) return messages.take();
  Rows rows = rowsOf(slot);
  rows.push_back(Shown::row("position", file.archive.GetPosition()));
  return rows;
}

// A small buffer never holds enough for decoders that do not test for its end; a large one does
// until close to the end of the file.
TEST(HeldInput, PartsReadAsFromTheArchive) {
  std::vector<Part> parts = allParts();
  parts.insert(parts.end(),
               {text({.runs = {{}, {}, {}}}), text({.text = u"", .runs = {}}), line({.points = {}}),
                lineSet({.offsets = {}}), empty(200), rect().at(131), text({.textFlags = 12})});
  DrawPart checked, held;
  for (const Part& part : parts) {
    for (const int v : {100, 132, 133, 134, 135, 148, 149, 151, 157}) {
      const bool wide = v % 2 == 0;
      const std::string record = recordOf(part, v, wide);
      const auto compare = [&](const std::string& bytes) {
        EXPECT_EQ(outcome(held, bytes, wide, 4096), outcome(checked, bytes, wide, 64))
            << part.type << ' ' << v << ' ' << bytes.size();
      };
      for (std::size_t i = 0; i < std::min<std::size_t>(record.size(), 120); ++i) {
        const std::string filler(300 + i, static_cast<char>(i));
        compare(record.substr(0, i) + filler);
        std::string changed = record + filler;
        changed[i] = static_cast<char>(changed[i] ^ 0x81);
        compare(changed);
      }
      for (const std::size_t behind : {0U, 255U, 256U, 257U, 260U, 4096U}) {
        compare(record + std::string(behind, '\1'));
      }
    }
  }
}

}  // namespace
}  // namespace rvf::test
