#include "inspect/model/ChangeStream.h"

#include <algorithm>
#include <utility>

namespace rvf::inspect {

namespace {

std::size_t charactersOf(const FieldValue& value) {
  const auto* text = std::get_if<std::u16string>(&value);
  return text == nullptr ? 0 : text->size();
}

}  // namespace

void ChangeStream::add(Change change) {
  if (changes_.size() >= kMostChanges || characters_ >= kMostCharacters) {
    receiver_(std::exchange(changes_, {}));
    characters_ = 0;
  }
  for (const FieldChange& field : change.fields) {
    characters_ += charactersOf(field.from) + charactersOf(field.to);
  }
  changes_.push_back(std::move(change));
  isEmpty_ = false;
}

void ChangeStream::expect(std::size_t count) {
  if (changes_.empty()) {
    changes_.reserve(std::min(count, kMostChanges));
  }
}

}  // namespace rvf::inspect
