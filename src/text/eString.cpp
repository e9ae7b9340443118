#include "text/eString.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <string>

namespace rvf {

namespace {

// Negative, so that the shared empty buffer is never counted.
constexpr i32 kSharedEmptyCount = static_cast<i32>(0xFF000001U);
constexpr i32 kSmallestEditedCapacity = 128;
constexpr i32 kLargestCapacity = std::numeric_limits<i32>::max();

std::size_t allocationSize(i32 headerSize, i32 capacity) {
  return static_cast<std::size_t>(headerSize) +
         (static_cast<std::size_t>(capacity) + 1) * sizeof(char16_t);
}

i32 lengthOf(const char16_t* wide) {
  return wide == nullptr ? 0 : static_cast<i32>(std::char_traits<char16_t>::length(wide));
}

void copyChars(char16_t* target, const char16_t* source, i32 count) {
  std::memmove(target, source, static_cast<std::size_t>(count) * sizeof(char16_t));
}

char16_t upperCased(char16_t c) {
  return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c;
}

char16_t lowerCased(char16_t c) {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

}  // namespace

eString::EmptyBuffer eString::sharedEmpty = {{kSharedEmptyCount, 0, 0}, 0};

char16_t* eString::allocate(i32 capacity) {
  const i32 headerSize = static_cast<i32>(sizeof(Header));
  auto* block = static_cast<std::byte*>(std::malloc(allocationSize(headerSize, capacity)));
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  auto* chars = reinterpret_cast<char16_t*>(block + sizeof(Header));
  headerOf(chars) = {1, 0, capacity};
  return chars;
}

bool eString::isSharedEmpty(char16_t* chars) noexcept { return chars == &sharedEmpty.terminator; }

void eString::release(char16_t* chars) noexcept {
  if (isSharedEmpty(chars)) {
    return;
  }
  Header& header = headerOf(chars);
  header.refCount -= 1;
  if (header.refCount < 1) {
    std::free(&header);
  }
}

eString::eString() noexcept : chars_(&sharedEmpty.terminator) {}

eString::eString(const eString& other) : eString() { Assign(other); }

eString::eString(eString&& other) noexcept : chars_(other.chars_) {
  other.chars_ = &sharedEmpty.terminator;
}

eString::eString(const char* narrow) : eString() {
  if (narrow == nullptr || *narrow == 0) {
    return;
  }
  const i32 count = static_cast<i32>(std::strlen(narrow));
  chars_ = allocate(count);
  for (i32 i = 0; i < count; ++i) {
    chars_[i] = static_cast<char16_t>(static_cast<signed char>(narrow[i]));
  }
  chars_[count] = 0;
  header().length = count;
}

eString::eString(const char16_t* wide) : eString() { AssignCounted(lengthOf(wide), wide); }

eString::eString(std::u16string_view wide) : eString() {
  AssignCounted(static_cast<i32>(wide.size()), wide.data());
}

eString::eString(char16_t character, i32 count) : eString() {
  if (count < 1) {
    return;
  }
  chars_ = allocate(count);
  std::fill_n(chars_, count, character);
  chars_[count] = 0;
  header().length = count;
}

eString::~eString() { release(chars_); }

eString& eString::operator=(const eString& other) {
  if (this != &other) {
    Assign(other);
  }
  return *this;
}

eString& eString::operator=(eString&& other) noexcept {
  std::swap(chars_, other.chars_);
  return *this;
}

std::u16string_view eString::view() const {
  return {chars_, static_cast<std::size_t>(header().length)};
}

std::u16string_view eString::text() const { return {chars_}; }

void eString::Assign(const eString& other) {
  if (chars_ == other.chars_) {
    return;
  }
  if (other.header().refCount < 0) {
    AssignCounted(other.length(), other.chars_);
    return;
  }
  release(chars_);
  chars_ = other.chars_;
  header().refCount += 1;
}

void eString::Assign(const char16_t* wide) { AssignCounted(lengthOf(wide), wide); }

void eString::AssignCounted(i32 length, const char16_t* wide) {
  // `wide` may point into the old buffer, which is therefore kept until the copy is made.
  char16_t* left = nullptr;
  if (header().refCount > 1 || length > header().capacity) {
    left = chars_;
    chars_ = length == 0 ? &sharedEmpty.terminator : allocate(length);
  }
  if (!isSharedEmpty(chars_)) {
    if (length > 0) {
      copyChars(chars_, wide, length);
    }
    header().length = length;
    chars_[length] = 0;
  }
  if (left != nullptr) {
    release(left);
  }
}

void eString::EnsureWritable(i64 capacity) {
  const i64 wanted = std::max<i64>(capacity, header().length);
  if (wanted > kLargestCapacity) {
    throw std::bad_alloc();
  }
  if (header().refCount > 1 || wanted > header().capacity) {
    grow(wanted);
  }
}

// Edited buffers double, so that building a text character by character stays linear.
void eString::grow(i64 capacity) {
  const i64 doubled = std::max<i64>(2 * capacity, kSmallestEditedCapacity);
  const i32 newCapacity = static_cast<i32>(std::min<i64>(doubled, kLargestCapacity));
  if (header().refCount == 1) {
    const i32 headerSize = static_cast<i32>(sizeof(Header));
    auto* block =
        static_cast<std::byte*>(std::realloc(&header(), allocationSize(headerSize, newCapacity)));
    if (block == nullptr) {
      throw std::bad_alloc();
    }
    chars_ = reinterpret_cast<char16_t*>(block + sizeof(Header));
    header().capacity = newCapacity;
    return;
  }
  char16_t* fresh = allocate(newCapacity);
  const i32 length = header().length;
  copyChars(fresh, chars_, length + 1);
  headerOf(fresh).length = length;
  release(chars_);
  chars_ = fresh;
}

void eString::append(i32 count, const char16_t* wide) {
  if (count == 0) {
    return;
  }
  const i32 length = header().length;
  // A text in this string's own buffer moves with it.
  const std::less_equal<> notBehind;
  const bool isOwnText = notBehind(chars_, wide) && notBehind(wide, chars_ + length);
  const std::ptrdiff_t ownOffset = isOwnText ? wide - chars_ : 0;
  EnsureWritable(static_cast<i64>(length) + count);
  copyChars(chars_ + length, isOwnText ? chars_ + ownOffset : wide, count);
  header().length = length + count;
  chars_[length + count] = 0;
}

void eString::Append(const eString& other) { append(other.length(), other.chars_); }

void eString::Append(const char16_t* wide) { append(lengthOf(wide), wide); }

void eString::AppendChar(char16_t character) {
  const i32 length = header().length;
  EnsureWritable(static_cast<i64>(length) + 1);
  chars_[length] = character;
  chars_[length + 1] = 0;
  header().length = length + 1;
}

void eString::formatList(const char16_t* format, std::span<const FormatArgument> arguments) {
  constexpr i32 kRetryStep = 1024;
  const i32 firstEstimate = estimateFormattedLength(format, arguments);
  for (i64 estimate = firstEstimate;; estimate += kRetryStep) {
    EnsureWritable(estimate + 2);
    const auto room = static_cast<std::size_t>(estimate) + 1;
    const i32 result = printBounded({chars_, room}, format, arguments);
    const bool retriesUsedUp = estimate > 2 * static_cast<i64>(firstEstimate) + 4;
    if (result >= 0 || retriesUsedUp || chars_[0] == 0) {
      break;
    }
  }
  ReleaseBuffer(-1);
}

void eString::Empty() {
  if (header().length == 0) {
    return;
  }
  release(chars_);
  chars_ = &sharedEmpty.terminator;
}

char16_t* eString::GetBuffer(i32 minimumCapacity) {
  EnsureWritable(minimumCapacity);
  return chars_;
}

void eString::ReleaseBuffer(i32 newLength) {
  EnsureWritable(0);
  if (isSharedEmpty(chars_)) {
    return;
  }
  header().length = newLength == -1 ? lengthOf(chars_) : newLength;
  chars_[header().length] = 0;
}

char16_t* eString::getBufferSetLength(i32 length) {
  if (header().refCount > 1 || length > header().capacity) {
    char16_t* fresh = length == 0 ? &sharedEmpty.terminator : allocate(length);
    release(chars_);
    chars_ = fresh;
  }
  if (!isSharedEmpty(chars_)) {
    header().length = length;
    chars_[length] = 0;
  }
  return chars_;
}

void eString::SetAt(i32 index, char16_t character) {
  EnsureWritable(0);
  chars_[index] = character;
}

i32 eString::Find(char16_t character, i32 start) const {
  if (start >= length()) {
    return -1;
  }
  const std::size_t found = view().find(character, static_cast<std::size_t>(std::max(start, 0)));
  return found == std::u16string_view::npos ? -1 : static_cast<i32>(found);
}

eString eString::Left(i32 count) const { return Mid(0, count); }

eString eString::Mid(i32 start, i32 count) const {
  start = std::max(start, 0);
  count = std::max(count, 0);
  if (static_cast<i64>(start) + count > length()) {
    count = length() - start;
  }
  if (start > length()) {
    count = 0;
  }
  if (start == 0 && count == length()) {
    return *this;
  }
  eString result;
  result.AssignCounted(count, chars_ + (count == 0 ? 0 : start));
  return result;
}

eString eString::Mid(i32 start) const {
  return Mid(start, start > length() ? 0 : length() - std::max(start, 0));
}

i32 eString::Delete(i32 index, i32 count) {
  const i32 oldLength = length();
  index = std::max(index, 0);
  if (count > 0 && index < oldLength) {
    assert(count <= oldLength - index);
    EnsureWritable(0);
    copyChars(chars_ + index, chars_ + index + count, oldLength - index - count + 1);
    header().length = oldLength - count;
  }
  return oldLength;
}

void eString::Insert(i32 index, const char16_t* wide) {
  const eString inserted(wide);
  const eString old = *this;
  if (index < 0 || index > old.length()) {
    return;
  }
  Empty();
  Append(old.Left(index));
  Append(inserted);
  Append(old.Mid(index));
}

void eString::Insert(i32 index, char16_t character) {
  const char16_t text[] = {character, 0};
  Insert(index, text);
}

void eString::MakeUpper() {
  if (isSharedEmpty(chars_)) {
    return;
  }
  EnsureWritable(0);
  std::transform(chars_, chars_ + length(), chars_, upperCased);
}

void eString::MakeLower() {
  if (isSharedEmpty(chars_)) {
    return;
  }
  EnsureWritable(0);
  std::transform(chars_, chars_ + length(), chars_, lowerCased);
}

void eString::TrimLeft() {
  const std::size_t kept = view().find_first_not_of(u' ');
  const i32 blanks = kept == std::u16string_view::npos ? length() : static_cast<i32>(kept);
  Delete(0, blanks);
}

void eString::TrimRight() {
  const std::size_t last = view().find_last_not_of(u" \t");
  const i32 kept = last == std::u16string_view::npos ? 0 : static_cast<i32>(last) + 1;
  Delete(kept, length() - kept);
}

int eString::CompareNoCase(const char16_t* wide) const {
  const char16_t* left = chars_;
  const char16_t* right = wide;
  while (lowerCased(*left) == lowerCased(*right)) {
    if (*left == 0) {
      return 0;
    }
    ++left;
    ++right;
  }
  return lowerCased(*left) < lowerCased(*right) ? -1 : 1;
}

}  // namespace rvf
