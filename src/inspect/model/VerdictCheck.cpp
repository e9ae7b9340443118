#include "inspect/model/VerdictCheck.h"

namespace rvf::inspect {

void VerdictCheck::verdict(const PageAddress& address, const PageVerdict& verdict) {
  const auto c = static_cast<std::size_t>(address.customer);
  const auto p = static_cast<std::size_t>(address.first);
  DiffFlags stored = 0;
  if (c < expected_.customers.size() && p < expected_.customers[c].size()) {
    stored = std::exchange(expected_.customers[c][p], 0);
  }
  note(c, p, stored, verdict.bits);
  next_.verdict(address, verdict);
}

void VerdictCheck::end(const Summary& summary, const ChangeGroups& groups) {
  // The remaining pages were not reported, so they have no difference now.
  for (std::size_t c = 0; c < expected_.customers.size(); ++c) {
    for (std::size_t p = 0; p < expected_.customers[c].size(); ++p) {
      note(c, p, expected_.customers[c][p], 0);
    }
  }
  atEnd_(summary, groups);
  next_.end(summary, groups);
}

void VerdictCheck::note(std::size_t customer, std::size_t page, DiffFlags stored, DiffFlags found) {
  if (stored != found && mismatch_.empty()) {
    mismatch_ = "customer " + std::to_string(customer + 1) + ", page " + std::to_string(page + 1) +
                " has " + std::to_string(stored) + " there and " + std::to_string(found) +
                " now: the files have changed, or the tolerances are others";
  }
}

}  // namespace rvf::inspect
