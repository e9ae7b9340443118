// Every field of every type, against a handwritten table: what is read at each version, from which
// bytes of the record, whether it is copied, how it is moved, and which bits a change gives.

#include "compare/PartComparison.h"
#include "pagemodel/PartRows.h"
#include "support/FieldTable.h"
#include "support/Reporting.h"
#include "text/NativeText.h"

namespace rvf::test {

/// Without this, the test framework would show the bytes of a part, including unused ones.
static void PrintTo(const Part& part, std::ostream* out) { *out << "type " << part.type; }

namespace {

constexpr std::size_t kFirstField = 5;  // after version and type

std::string typeName(const Part& part) {
  return toNative(kPartTypeNames[static_cast<std::size_t>(part.type)]);
}

class Fields : public ::testing::TestWithParam<Part> {
 protected:
  Fields() {
    auto tables = fieldTables();
    rows = tables.contains(typeName(GetParam())) ? tables.at(typeName(GetParam()))
                                                 : tables.at("OTHER");
  }

  /// The table's rows for a version, with values from `valueOf`.
  [[nodiscard]] Rows expected(int version, auto valueOf) const {
    Rows found;
    for (const FieldRow& row : rows) {
      const std::string value = valueOf(row, row.valueAt(version));
      if (value != "none") found.push_back(row.name + " " + value);
    }
    return found;
  }
  static void expectSame(const Rows& found, const Rows& wanted, const std::string& what) {
    EXPECT_EQ(changedRows(found, wanted), "") << what << " and should not be";
    EXPECT_EQ(changedRows(wanted, found), "") << what << " should be but is not";
  }

  std::vector<FieldRow> rows;
};

TEST_P(Fields, AreReadAtEveryVersion) {
  const auto asStored = [](const FieldRow&, const std::string& value) { return value; };
  for (const int version : versionGates()) {
    if (version < 0) continue;
    DrawPart part;
    readWhole(part, readDrawPart, recordOf(GetParam(), version), true);
    expectSame(fieldsOf(part), expected(version, asStored), "read at " + std::to_string(version));
  }
}

TEST_P(Fields, AreCopiedAndMoved) {
  DrawPart part = readFresh(GetParam()), copy;
  copyPart(copy, part);
  const auto copied = [&copy](const FieldRow& row, const std::string& value) {
    const bool hasType = copy.type != PartType::kUnknown;
    return row.is('c') ? value : std::string(hasType && value != "none" ? "0" : "none");
  };
  expectSame(fieldsOf(copy), expected(kNewestPart, copied), "copied");

  const auto moved = [](const FieldRow& row, const std::string& value) {
    if (!row.is('x') && !row.is('y')) return value;
    std::ostringstream sum;
    sum << std::stod(value) + (row.is('x') ? 5 : -7);
    return sum.str();
  };
  shiftPart(part, 5, -7);
  expectSame(fieldsOf(part), expected(kNewestPart, moved), "moved");
  shiftPart(part, 0, 7);
  shiftPart(part, -5, 0);
  EXPECT_EQ(fieldsOf(part), fieldsOf(readFresh(GetParam())));
}

std::string bitNames(DiffFlags bits) {
  std::string names;
  for (const auto& [bit, name] : {std::pair{diff::kRotation, "Rotation"},
                                  {diff::kText, "Text"},
                                  {diff::kImages, "Images"},
                                  {diff::kFonts, "Fonts"},
                                  {diff::kLines, "Lines"},
                                  {diff::kBorderLines, "BorderLines"},
                                  {diff::kShapes, "Shapes"},
                                  {diff::kLineWidth, "LineWidth"},
                                  {diff::kColor, "Color"},
                                  {diff::kPosition, "Position"},
                                  {diff::kContent, "Content"}}) {
    if ((bits & bit) != 0) names += (names.empty() ? "" : "+") + std::string(name);
    bits &= ~bit;
  }
  return bits == 0 && !names.empty() ? names : std::to_string(bits);
}

TEST_P(Fields, ComeFromTheirBytesAndEarnTheirBits) {
  const std::string record = recordOf(GetParam());
  const DrawPart part = readFresh(GetParam());
  const Rows before = fieldsOf(part);
  std::size_t offset = kFirstField;
  for (const FieldRow& row : rows) {
    for (std::size_t i = 0; i < row.disk; ++i, ++offset) {
      if (!row.isAltered) continue;
      std::string bytes = record;
      bytes[offset] ^= 1;
      DrawPart altered;
      readWhole(altered, readDrawPart, bytes, true);
      const std::string where = row.name + ", byte " + std::to_string(i);
      EXPECT_EQ(changedNames(before, fieldsOf(altered)), Rows(i < row.kept ? 1 : 0, row.name))
          << where;
      const bool isEqual = partsEqual(altered, part);
      const DiffFlags bits = classifyParts(altered, part, {});
      if (row.earns == "?" || i >= row.kept) continue;
      EXPECT_EQ(isEqual && bits == 0 ? "=" : bitNames(bits), row.earns) << where;
    }
  }
  EXPECT_EQ(offset, record.size()) << "the table has every byte of the record";
}

bool wasRead(DrawPart& part, const std::string& record) {
  LoadedBytes file(record, true);
  readDrawPart(part, file.archive);
  return !file.archive.failed();
}

/// What a comparison can see of a part besides its fields.
Rows unseen(const DrawPart& part) {
  const PartWords words = partWords(part);
  return {Shown::row("words", words.words), Shown::row("pointers", words.setPointers),
          Shown::row("payload", part.payload.size())};
}

TEST_P(Fields, ShowWhateverABitOfTheRecordChanges) {
  const HeldMessages messages;
  for (const int version : {100, 105, 110, 117, 127, 134, 142, 150, 154}) {
    const std::string record = recordOf(GetParam(), version);
    DrawPart part, altered;
    ASSERT_TRUE(wasRead(part, record));
    for (std::size_t i = kFirstField; i < record.size(); ++i) {
      std::string bytes = record;
      bytes[i] ^= 1;
      if (!wasRead(altered, bytes) || altered.type != part.type) continue;
      if (fieldsOf(altered) != fieldsOf(part)) continue;
      EXPECT_EQ(unseen(altered), unseen(part)) << version << ", byte " << i;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(OfType, Fields, ::testing::ValuesIn(allParts()),
                         [](const auto& info) { return "Type" + typeName(info.param); });

}  // namespace

}  // namespace rvf::test
