#include "inspect/model/Fields.h"

#include <functional>
#include <unordered_map>
#include <utility>

namespace rvf::inspect {

void FieldCollector::text(std::string_view name, std::u16string_view value) {
  if (isWanted()) {
    add(name, std::u16string(value));
  }
}

void FieldCollector::bytes(std::string_view name, std::span<const std::byte> value) {
  if (!isWanted()) {
    return;
  }
  Digest digest;
  digest.addBytes(value);
  add(name, ByteDigest{static_cast<i64>(value.size()), digest.value()});
}

void FieldCollector::enter(std::string_view name, i32 index) {
  if (foldedDepth_ > 0) {
    foldedDepth_ += 1;
    return;
  }
  prefixSizes_.push_back(prefix_.size());
  prefix_ += name;
  if (index >= kMostElements) {
    foldedDepth_ = 1;
    prefix_ += "[" + std::to_string(kMostElements) + "...]";
    return;
  }
  if (index != kSingle) {
    prefix_ += "[" + std::to_string(index) + "]";
  }
  prefix_ += '.';
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
  std::string full = prefix_ + std::string(name);
  if (name.empty() && !full.empty()) {
    full.pop_back();  // the dot, for an element that is a plain value
  }
  fields_.push_back({std::move(full), std::move(value)});
}

void FieldCollector::fold(std::string_view name, const FieldValue& value) {
  if (fields_.empty() || fields_.back().name != prefix_) {
    fields_.push_back({prefix_, ByteDigest{}});
  }
  auto& folded = std::get<ByteDigest>(fields_.back().value);
  Digest digest;
  digest.add(folded.digest);
  digest.addText(name);
  digest.add(digestOf(value));
  folded.digest = digest.value();
  folded.length += 1;
}

void FieldDigests::text(std::string_view name, std::u16string_view value) {
  Digest digest;
  digest.addText(value);
  add(name, digest.value());
}

void FieldDigests::bytes(std::string_view name, std::span<const std::byte> value) {
  Digest digest;
  digest.addBytes(value);
  add(name, digest.value());
}

void FieldDigests::enter(std::string_view name, i32 index) {
  names_.add(std::hash<const void*>()(name.data()) ^ name.size());
  names_.add(static_cast<u64>(index));
  hasLongArray_ = hasLongArray_ || index >= FieldCollector::kMostElements;
}

void FieldDigests::add(std::string_view name, u64 value) {
  names_.add(std::hash<const void*>()(name.data()) ^ name.size());
  values_.push_back(value);
}

std::optional<std::vector<std::size_t>> FieldDigests::differing(const FieldDigests& other) const {
  if (hasLongArray_ || other.hasLongArray_ || names_.value() != other.names_.value()) {
    return std::nullopt;
  }
  std::vector<std::size_t> numbers;
  for (std::size_t i = 0; i < values_.size(); ++i) {
    if (values_[i] != other.values_[i]) {
      numbers.push_back(i);
    }
  }
  return numbers;
}

u64 digestOf(const FieldValue& value) {
  Digest digest;
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
    digest.add(bytes->digest);
  }
  return digest.value();
}

std::vector<FieldChange> changedFields(const std::vector<Field>& first,
                                       const std::vector<Field>& second) {
  std::vector<FieldChange> changes;
  std::size_t same = 0;
  const auto compare = [&changes](const Field& a, const Field& b) {
    if (digestOf(a.value) != digestOf(b.value)) {
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
