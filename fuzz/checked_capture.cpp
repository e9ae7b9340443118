// The check of a page-capture file: it finds damage if and only if a run over the file rejects it
// or reports something.

#include "inspect/output/CheckWriter.h"
#include "support/MemoryFile.h"
#include "support/PairWalk.h"

namespace rvf::fuzz {
namespace {

struct Findings final : inspect::FindingListener {
  void finding(const inspect::Finding& finding) override {
    require(!finding.what.empty() && !finding.expected.empty() && !finding.found.empty(),
            "a finding says what was expected and what is there");
    require(finding.page < 0 || finding.customer >= 0, "a page has its customer");
    require(finding.offset >= -1, "an offset is one of the file");
    damage += finding.severity == inspect::Severity::kDamage ? 1 : 0;
  }
  int damage = 0;
};

int damageIn(std::string_view bytes, inspect::OldText oldText) {
  const MemoryFile capture(bytes);
  inspect::CaptureFile file(capture.path(), oldText, inspect::Acceptance::kOptional);
  Findings findings;
  checkCapture(file, findings);
  return findings.damage;
}

}  // namespace

void checkInput(FuzzInput input) {
  CapturePair pair{FuzzInput("")};
  pair.flags = (input.take() & 1) != 0 ? 3 : 0;
  pair.first = pair.second = input.rest();
  const auto oldText = pair.flag(0) ? inspect::OldText::kTwoBytes : inspect::OldText::kOneByte;
  const bool isDamaged = damageIn(pair.first, oldText) > 0;
  const PairWalk run(pair, true);
  if (!run.isWalked) {
    return require(isDamaged || run.first.reader.valid(), "what a run refuses is damaged");
  }
  const bool isReported = run.messageCount > 0 || run.isGivenUp();
  require(isDamaged || !isReported, "what a run reports is damaged");
  require(!isDamaged || isReported, "a run reports what is damaged");
}

}  // namespace rvf::fuzz
