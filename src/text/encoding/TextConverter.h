#pragma once

#include <unicode/ucnv.h>

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "base/Integers.h"
#include "text/eString.h"
#include "text/encoding/CodePages.h"

namespace rvf {

/// Frees resources of a converter that ucnv_close does not free. Called once, just before it. Stock
/// converters have no such resources, so this does nothing; a build with its own converters
/// supplies its own body.
void plenarixFreePlenarixConverterResources(UConverter* converter);

struct ConverterCloser {
  void operator()(UConverter* converter) const;
};
using ConverterHandle = std::unique_ptr<UConverter, ConverterCloser>;

/// What OpenConverter returns.
namespace converter_result {
constexpr i32 kOpened = 0;
constexpr i32 kNotOpened = 3;
}  // namespace converter_result

/// Opens a converter by name, or its substitute, and returns one of the codes above. A failure is
/// reported as kConverterNotOpened; `handle` then holds what ICU returned, usually null.
[[nodiscard]] i32 OpenConverter(const eString& name, ConverterHandle& handle);

/// A byte that a converter cannot map, and the character to use for it.
struct ReplacementPair {
  u8 byte;
  char16_t character;
};

/// One open converter between wide text and an encoding, with the buffers for its results.
/// A character without an exact mapping goes through its fallback mapping.
class TextConverter {
 public:
  TextConverter() = default;
  // ICU keeps the address of `decoding_`.
  TextConverter(const TextConverter&) = delete;
  TextConverter& operator=(const TextConverter&) = delete;

  /// Closes any open converter and opens the one for the id. A failure is reported and leaves no
  /// converter open; another id may then be set.
  bool SetEncoding(i32 id);
  bool SetEncodingByName(const eString& name);
  /// Closes the open converter, if any. The destructor and both operations above do so themselves.
  void CloseConverter();

  [[nodiscard]] bool isOpen() const { return converter_ != nullptr; }
  /// encoding_id::kNone until an encoding is set, and for a name that has no id.
  [[nodiscard]] i32 encodingId() const { return encodingId_; }
  /// The name of the open converter; empty if none is open.
  [[nodiscard]] const eString& converterName() const { return converterName_; }
  /// Whether the encoding switches between single and double bytes by SO and SI.
  [[nodiscard]] bool shiftsWidths() const;

  /// The text in the encoding; empty on failure. Valid until the next call. A call converts at most
  /// kLongestText characters or bytes.
  [[nodiscard]] std::string_view ConvertFromWide(std::u16string_view text);
  /// The bytes as wide text; empty on failure. Valid until the next call.
  [[nodiscard]] std::u16string_view ConvertToWide(std::string_view bytes);
  /// Keeps the sizes of all buffers within ICU's 32-bit counts.
  static constexpr std::size_t kLongestText = std::size_t{1} << 26;

  /// Characters for bytes that the encoding does not map, tried before ICU's own substitution. The
  /// pairs are borrowed and must outlive their use. Part of the interface; a run sets none.
  void setReplacements(std::span<const ReplacementPair> pairs);
  /// Whether the bytes of the last ConvertToWide ended inside a character.
  [[nodiscard]] bool wasTruncated() const { return decoding_.isTruncated; }

 private:
  /// What the substitution callback reads and records.
  struct Decoding {
    std::span<const ReplacementPair> replacements;
    bool isTruncated = false;
  };

  static void substitute(const void* context, UConverterToUnicodeArgs* arguments, const char* bytes,
                         int32_t length, UConverterCallbackReason reason, UErrorCode* code);
  void installCallback();

  ConverterHandle converter_;
  std::string convertBuffer_;
  std::u16string convertedText_;
  eString converterName_;
  i32 encodingId_ = encoding_id::kNone;
  Decoding decoding_;
};

}  // namespace rvf
