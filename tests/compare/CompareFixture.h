#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "compare/CustomerWalk.h"
#include "compare/Tolerances.h"
#include "pagemodel/PartRows.h"
#include "storage/MemFile.h"
#include "support/Capture.h"
#include "support/Paths.h"
#include "support/Reporting.h"

namespace rvf::test {

/// Reads a record that may be damaged; false if it is.
inline bool readRecord(DrawPart& part, const std::string& record) {
  LoadedBytes loaded(record, true);
  readDrawPart(part, loaded.archive);
  return !loaded.archive.failed();
}

/// The capture files of each reference pair, by the name of its folder.
inline std::vector<std::pair<std::string, std::vector<std::string>>> referenceFiles() {
  std::vector<std::pair<std::string, std::vector<std::string>>> pairs;
  for (const auto& folder : std::filesystem::directory_iterator(sourcePath("tests/reference"))) {
    if (!folder.is_directory()) continue;
    auto& [name, files] = pairs.emplace_back(folder.path(), 0);
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
      if (file.path().extension() != ".rvf") continue;
      std::ifstream in(file.path(), std::ios::binary);
      files.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
  }
  return pairs;
}

/// The type of each part, and the position of those types that usually move.
inline std::string contentOf(const DrawList& list) {
  std::string text;
  for (const DrawPart& part : list.parts()) {
    text += " " + std::to_string(static_cast<int>(part.type));
    const bool hasPoint = part.type == PartType::kText || part.type == PartType::kLine;
    if (hasPoint) text += Shown::row(" at", *part.payload.at<i32>(0), *part.payload.at<i32>(4));
  }
  return text;
}

/// A capture file in memory with its index loaded.
struct LoadedCapture {
  explicit LoadedCapture(std::string content, bool dbcsMode = false)
      : bytes(std::move(content)),
        file(reinterpret_cast<std::byte*>(bytes.data()), static_cast<i32>(bytes.size()), 0),
        reader(context, dbcsMode) {
    reader.load(file);
  }
  explicit LoadedCapture(const CaptureFields& fields) : LoadedCapture(writeCapture(fields).bytes) {}

  std::string bytes;
  eMemFile file;
  CompareContext context;
  RvfReader reader;
};

/// A walk over two files with its difference file and messages.
struct Walk {
  Walk(RvfReader& a, RvfReader& b, bool stop, bool usesShortCut, WalkObserver* observer = nullptr,
       const Tolerances& tolerances = {}) {
    HeldMessages held;
    eMemFile file(64);
    status =
        walkCustomers(a, b, stop ? CountMismatch::kEndsWalk : CountMismatch::kLimitsWalk,
                      tolerances, {file, u"before.rvf", u"behind.rvf", observer, usesShortCut});
    bytes.assign(reinterpret_cast<const char*>(file.data()), static_cast<std::size_t>(file.Tell()));
    messages = held.take();
  }
  bool operator==(const Walk&) const = default;

  DiffFlags status = 0;
  std::string bytes;
  std::vector<std::string> messages;
};

}  // namespace rvf::test
