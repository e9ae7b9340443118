#include <filesystem>
#include <system_error>

#include "inspect/output/ReportAssets.h"
#include "inspect/output/ScriptData.h"
#include "inspect/output/ShownText.h"
#include "inspect/output/SummaryRecords.h"
#include "inspect/output/SummaryWriter.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

namespace fs = std::filesystem;

/// A path as an address: every byte with a special meaning is written by its number.
std::string addressOf(std::string_view path) {
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string address;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (kPlain.find(c) != kPlain.npos) {
      address += c;
    } else {
      address += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return address;
}

/// Writes the pairs into the page one by one, so that they are not all in memory.
class PageSummaryWriter final : public SummaryWriter {
 public:
  PageSummaryWriter(Output& output, fs::path home) : output_(output), home_(std::move(home)) {}

  void begin(const std::string& folder) override {
    folder_ = folder;
    std::error_code error;
    fs::path way = fs::relative(folder_, home_.empty() ? folder_ : home_, error);
    if (error || way.empty()) {
      way = fs::absolute(folder_);
    }
    way_ = way == "." ? "" : addressOf(way.native()) + "/";
    JsonLine json;
    json.value(fromNative(folder).view());
    output_.write(kSummaryHead);
    output_.write(std::string(R"({"redacted":)") + (redactsTexts ? "true" : "false"));
    write(R"(,"path":)" + json.text() + R"(,"pairs":[)");
  }

  void pair(const PairResult& pair, const PairInspection* inspection) override {
    JsonLine json;
    addPair(json.open(), pair, inspection);
    const std::string report = pair.folder + "/report/index.html";
    std::error_code error;
    // The address of a report contains the pair's name.
    if (!redactsTexts && fs::exists(folder_ / report, error)) {
      json.field("report", std::string_view(way_ + addressOf(report)));
    }
    separate();
    write(json.close().text());
  }

  void end(const ResultsSummary& summary) override {
    write(R"(],"groups":[)");
    isFirst_ = true;
    for (const GroupOfPairs* entry : summary.groups()) {
      JsonLine json;
      addGroupOfPairs(json.open(), *entry);
      separate();
      write(json.close().text());
    }
    JsonLine json;
    addResultsSummary(json.open(), summary);
    write(R"(],"summary":)" + json.close().text() + "}");
    output_.write(kSummaryTail);
  }

 private:
  void separate() {
    output_.write(isFirst_ ? "\n" : ",\n");
    isFirst_ = false;
  }
  void write(const std::string& json) { output_.write(inScriptElement(json)); }

  Output& output_;
  fs::path home_;  // the folder of the page
  fs::path folder_;
  std::string way_;  // from one to the other, as an address
  bool isFirst_ = true;
};

}  // namespace

std::unique_ptr<SummaryWriter> makePageSummaryWriter(Output& output, const std::string& path) {
  fs::path home;
  if (!path.empty()) {
    home = fs::absolute(path).parent_path();
  }
  return std::make_unique<PageSummaryWriter>(output, std::move(home));
}

}  // namespace rvf::inspect
