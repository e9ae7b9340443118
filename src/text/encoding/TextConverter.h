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

/// Frees what a converter holds outside its normal close. Stock converters hold nothing there, so
/// this does nothing; a build with converters of its own supplies another body.
void plenarixFreePlenarixConverterResources(UConverter* converter);

struct ConverterCloser {
  void operator()(UConverter* converter) const;
};
using ConverterHandle = std::unique_ptr<UConverter, ConverterCloser>;

/// Opens a converter by name, or its stand-in. Failure gives null and kConverterNotOpened.
[[nodiscard]] ConverterHandle OpenConverter(const eString& name);

/// A byte that a converter cannot map, and the character to take for it.
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

  /// Closes any open converter and opens that of the id. A failure is reported and leaves none
  /// open; another id may then be set.
  bool SetEncoding(i32 id);
  bool SetEncodingByName(const eString& name);

  [[nodiscard]] bool isOpen() const { return converter_ != nullptr; }
  [[nodiscard]] i32 encodingId() const { return encodingId_; }
  [[nodiscard]] const eString& converterName() const { return converterName_; }

  /// The text in the encoding; empty on failure. Valid until the next call.
  [[nodiscard]] std::string_view ConvertFromWide(std::u16string_view text);
  /// The bytes as wide text; empty on failure. Valid until the next call.
  [[nodiscard]] std::u16string_view ConvertToWide(std::string_view bytes);

  /// Characters for bytes that the encoding does not map, looked at before ICU's own substitution.
  /// The pairs are borrowed and must outlive their use.
  void setReplacements(std::span<const ReplacementPair> pairs);
  /// Whether the bytes of the last ConvertToWide ended inside a character.
  [[nodiscard]] bool wasTruncated() const { return decoding_.isTruncated; }

 private:
  /// What the substitution of undecodable bytes reads and tells.
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
