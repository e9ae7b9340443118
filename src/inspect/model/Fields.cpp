#include "inspect/model/Fields.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>
#include <utility>

#include "compare/PartBytes.h"

namespace rvf::inspect {

namespace {

/// Adds a member or an element to what comes before a field's name.
void appendLevel(std::string& prefix, std::string_view name, i32 index) {
  prefix += name;
  if (index != FieldVisitor::kSingle) {
    prefix += "[" + std::to_string(index) + "]";
  }
  prefix += '.';
}

std::string fullName(const std::string& prefix, std::string_view name) {
  std::string full = prefix + std::string(name);
  if (name.empty() && !full.empty()) {
    full.pop_back();  // the dot, for an element that is a plain value
  }
  return full;
}

void addTo(Digest& digest, const FieldValue& value) {
  digest.add(value.index());
  if (const auto* number = std::get_if<i64>(&value)) {
    digest.add(static_cast<u64>(*number));
  } else if (const auto* floating = std::get_if<f64>(&value)) {
    digest.add(std::bit_cast<u64>(*floating));
  } else if (const auto* colour = std::get_if<Colour>(&value)) {
    digest.add(colour->packed);
  } else if (const auto* text = std::get_if<std::u16string>(&value)) {
    digest.addText(*text);
  } else if (const auto* bytes = std::get_if<ByteDigest>(&value)) {
    digest.add(static_cast<u64>(bytes->length));
    digest.add(bytes->shown);
  }
}

/// Unlike ==, this also holds for numbers that are not numbers.
bool isSame(const FieldValue& a, const FieldValue& b) {
  const auto* from = std::get_if<f64>(&a);
  const auto* to = std::get_if<f64>(&b);
  return from != nullptr && to != nullptr ? std::bit_cast<u64>(*from) == std::bit_cast<u64>(*to)
                                          : a == b;
}

}  // namespace

void FieldCollector::text(std::string_view name, std::u16string_view value) {
  add(name, std::u16string(value));
}

void FieldCollector::bytes(std::string_view name, std::span<const std::byte> value) {
  add(name, digestOf(value));
}

void FieldCollector::enter(std::string_view name, i32 index) {
  if (foldedDepth_ > 0) {
    foldedDepth_ += 1;
    return;
  }
  prefixSizes_.push_back(prefix_.size());
  if (index >= kMostElements) {
    foldedDepth_ = 1;
    prefix_ += std::string(name) + "[" + std::to_string(kMostElements) + "...]";
    return;
  }
  appendLevel(prefix_, name, index);
}

void FieldCollector::leave() {
  if (foldedDepth_ > 1) {
    foldedDepth_ -= 1;
    return;
  }
  foldedDepth_ = 0;
  prefix_.resize(prefixSizes_.back());
  prefixSizes_.pop_back();
}

void FieldCollector::add(std::string_view name, FieldValue value) {
  if (foldedDepth_ > 0) {
    fold(name, value);
    return;
  }
  fields_.push_back({fullName(prefix_, name), std::move(value)});
}

void FieldCollector::fold(std::string_view name, const FieldValue& value) {
  if (fields_.empty() || fields_.back().name != prefix_) {
    fields_.push_back({prefix_, ByteDigest{}});
  }
  auto& folded = std::get<ByteDigest>(fields_.back().value);
  const auto fold = [&](Digest digest, u64 before, u64 extra) {
    digest.add(before);
    digest.addText(name);
    addTo(digest, value);
    digest.add(extra);
    return digest.value();
  };
  folded.shown = fold(Digest::lasting(), folded.shown, 0);
  folded.exact = fold(Digest(), folded.exact, digestOf(value));
  folded.length += 1;
}

std::pair<FieldRecording&, FieldRecording&> FieldRecording::takeTwo() {
  static FieldRecording one, two;
  for (FieldRecording* recording : {&one, &two}) {
    recording->entries_.clear();
    recording->hasLongArray_ = false;
  }
  return {one, two};
}

void FieldRecording::enter(std::string_view name, i32 index) {
  hasLongArray_ = hasLongArray_ || index >= FieldCollector::kMostElements;
  add({Kind::kEnter, name, index});
}

bool FieldRecording::isSameField(const Entry& a, const Entry& b) {
  const bool isSameName = a.name.data() == b.name.data() || a.name == b.name;
  return a.kind == b.kind && isSameName && (a.kind != Kind::kEnter || a.value == b.value);
}

bool FieldRecording::isSameValue(const Entry& a, const Entry& b) {
  return a.value == b.value && sameBytes(a.data, b.data);
}

FieldValue FieldRecording::valueOf(const Entry& entry) {
  switch (entry.kind) {
    case Kind::kFloating:
      return std::bit_cast<f64>(entry.value);
    case Kind::kColour:
      return Colour{static_cast<u32>(entry.value)};
    case Kind::kText: {
      std::u16string text(entry.data.size() / sizeof(char16_t), u'\0');
      if (!text.empty()) {
        std::memcpy(text.data(), entry.data.data(), entry.data.size());
      }
      return text;
    }
    case Kind::kBytes:
      return digestOf(entry.data);
    default:
      return entry.value;
  }
}

std::optional<std::vector<FieldChange>> FieldRecording::changesTo(
    const FieldRecording& other) const {
  if (hasLongArray_ || other.hasLongArray_ ||
      !std::ranges::equal(entries_, other.entries_, isSameField)) {
    return std::nullopt;
  }
  std::vector<FieldChange> changes;
  std::vector<const Entry*> open;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    if (entry.kind == Kind::kEnter) {
      open.push_back(&entry);
    } else if (entry.kind == Kind::kLeave) {
      open.pop_back();
    } else if (!isSameValue(entry, other.entries_[i])) {
      std::string prefix;
      for (const Entry* outer : open) {
        appendLevel(prefix, outer->name, static_cast<i32>(outer->value));
      }
      changes.push_back({fullName(prefix, entry.name), valueOf(entry), valueOf(other.entries_[i])});
    }
  }
  return changes;
}

u64 digestOf(const FieldValue& value) {
  Digest digest;
  addTo(digest, value);
  if (const auto* bytes = std::get_if<ByteDigest>(&value)) {
    digest.add(bytes->exact);
  }
  return digest.value();
}

ByteDigest digestOf(std::span<const std::byte> bytes) {
  Digest shown = Digest::lasting(), exact;
  shown.addBytes(bytes);
  exact.addBytes(bytes);
  return {static_cast<i64>(bytes.size()), shown.value(), exact.value()};
}

std::vector<FieldChange> changedFields(const std::vector<Field>& first,
                                       const std::vector<Field>& second) {
  std::vector<FieldChange> changes;
  std::size_t same = 0;
  const auto compare = [&changes](const Field& a, const Field& b) {
    if (!isSame(a.value, b.value)) {
      changes.push_back({a.name, a.value, b.value});
    }
  };
  while (same < first.size() && same < second.size() && first[same].name == second[same].name) {
    compare(first[same], second[same]);
    same += 1;
  }
  // From here on, one side has elements that the other lacks.
  std::unordered_map<std::string_view, const Field*> rest;
  for (std::size_t i = same; i < second.size(); ++i) {
    rest.emplace(second[i].name, &second[i]);
  }
  for (std::size_t i = same; i < first.size(); ++i) {
    const auto found = rest.find(first[i].name);
    if (found == rest.end()) {
      changes.push_back({first[i].name, first[i].value, {}});
    } else {
      compare(first[i], *found->second);
      rest.erase(found);
    }
  }
  for (std::size_t i = same; i < second.size(); ++i) {
    if (rest.contains(second[i].name)) {
      changes.push_back({second[i].name, {}, second[i].value});
    }
  }
  return changes;
}

std::string withoutIndexes(std::string_view name) {
  std::string result;
  bool isInside = false;
  for (const char c : name) {
    isInside = isInside && c != ']';
    if (!isInside) {
      result += c;
    }
    isInside = isInside || c == '[';
  }
  return result;
}

}  // namespace rvf::inspect
