#pragma once

#include <cstddef>
#include <memory_resource>
#include <span>
#include <string_view>

#include "base/Integers.h"
#include "storage/Archive.h"
#include "text/eString.h"

namespace rvf {

/// The memory of an index, which may have millions of pages: taken from ever larger blocks and
/// freed all at once.
using IndexMemory = std::pmr::monotonic_buffer_resource;

/// The name of a page, one pointer wide. Its text is in the IndexMemory of its file and lives as
/// long as that.
class PageName {
 public:
  /// The empty name.
  PageName() = default;

  [[nodiscard]] eString text() const;

  friend bool operator==(const PageName& a, const PageName& b);

 private:
  friend class PageNames;
  explicit PageName(const std::byte* stored) : stored_(stored) {}

  const std::byte* stored_ = nullptr;  // null: empty
};

/// Whether the characters of a text are stored in this machine's byte order.
enum class CharacterOrder : u8 { kNative, kSwapped };

/// Makes the page names of one file. They are packed one after another, with one byte per character
/// where possible.
class PageNames {
 public:
  /// `memory` must outlive this and the names.
  explicit PageNames(IndexMemory& memory) : memory_(memory) {}
  PageNames(const PageNames&) = delete;
  PageNames& operator=(const PageNames&) = delete;

  /// Stores a copy of `text` up to its first zero character.
  PageName keep(std::u16string_view text);
  /// Reads a name from a loading archive.
  PageName read(eArchive& archive, CharacterOrder order);

 private:
  [[nodiscard]] PageName keepNarrow(std::span<const std::byte> characters);
  [[nodiscard]] PageName keepWide(std::span<const std::byte> characters);

  IndexMemory& memory_;
  eString scratch_;  // for names that cannot be copied from the buffer
};

/// Exchanges the two bytes of every character.
void swapCharacterBytes(eString& text);

}  // namespace rvf
