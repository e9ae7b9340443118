#include "text/encoding/TextConverter.h"

#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <utility>

#include "messages/MessageReporter.h"

namespace rvf {

void plenarixFreePlenarixConverterResources(UConverter*) {}

void ConverterCloser::operator()(UConverter* converter) const {
  plenarixFreePlenarixConverterResources(converter);
  ucnv_close(converter);
}

namespace {

// ICU must never use the byte order of the platform.
eString withByteOrder(const eString& name) {
  return name == eString(u"UTF-16") ? eString(u"UTF-16LE") : name;
}

bool tryOpen(const char16_t* name, ConverterHandle& handle) {
  UErrorCode code = U_ZERO_ERROR;
  handle.reset(ucnv_openU(name, &code));
  return handle != nullptr && (code == U_ZERO_ERROR || code == U_AMBIGUOUS_ALIAS_WARNING);
}

}  // namespace

// ICU calls this for bytes that it cannot map.
void TextConverter::substitute(const void* context, UConverterToUnicodeArgs* arguments,
                               const char* bytes, int32_t, UConverterCallbackReason reason,
                               UErrorCode* code) {
  if (reason > UCNV_IRREGULAR) {
    return;  // reset, close or clone: there is nothing to convert
  }
  Decoding& decoding = *static_cast<Decoding*>(const_cast<void*>(context));
  const std::span<const ReplacementPair> pairs = decoding.replacements;
  const auto found = std::ranges::find(pairs, static_cast<u8>(*bytes), &ReplacementPair::byte);
  decoding.isTruncated = *code == U_TRUNCATED_CHAR_FOUND;
  *code = U_ZERO_ERROR;
  if (found != pairs.end()) {
    ucnv_cbToUWriteUChars(arguments, &found->character, 1, 0, code);
  } else {
    ucnv_cbToUWriteSub(arguments, 0, code);
  }
}

i32 OpenConverter(const eString& name, ConverterHandle& handle) {
  const eString wanted = withByteOrder(name);
  const char16_t* fallback = fallbackConverter(wanted);
  if (!tryOpen(wanted.c_str(), handle) && (*fallback == 0 || !tryOpen(fallback, handle))) {
    eString text;
    text.Format(u"Could not open Unicode Converter with \"%ls\" encoding.", wanted);
    Report(MessageNumber::kConverterNotOpened, text);
    return converter_result::kNotOpened;
  }
  ucnv_setFallback(handle.get(), 1);
  return converter_result::kOpened;
}

void TextConverter::CloseConverter() {
  converter_.reset();
  converterName_.Empty();
}

bool TextConverter::SetEncoding(i32 id) {
  eString name;
  GetEncodingName(id, NameUse::kConverter, name);
  const bool isSet = SetEncodingByName(name);
  encodingId_ = id;
  return isSet;
}

bool TextConverter::SetEncodingByName(const eString& name) {
  eString wanted = name;  // may be the name of the converter that is about to be closed
  CloseConverter();
  GetEncodingId(wanted, encodingId_);
  if (OpenConverter(wanted, converter_) != converter_result::kOpened) {
    CloseConverter();
    return false;
  }
  converterName_ = std::move(wanted);
  installCallback();
  return true;
}

bool TextConverter::shiftsWidths() const {
  return isOpen() && ucnv_getType(converter_.get()) == UCNV_EBCDIC_STATEFUL;
}

void TextConverter::setReplacements(std::span<const ReplacementPair> pairs) {
  decoding_.replacements = pairs;
}

void TextConverter::installCallback() {
  UErrorCode code = U_ZERO_ERROR;
  UConverterToUCallback oldCallback = nullptr;
  const void* oldContext = nullptr;
  ucnv_setToUCallBack(converter_.get(), substitute, &decoding_, &oldCallback, &oldContext, &code);
}

std::string_view TextConverter::ConvertFromWide(std::u16string_view text) {
  if (!isOpen() || text.empty() || text.size() > kLongestText) {
    return {};
  }
  const auto length = static_cast<int32_t>(text.size());
  const int32_t room = UCNV_GET_MAX_BYTES_FOR_STRING(length, ucnv_getMaxCharSize(converter_.get()));
  convertBuffer_.resize(std::max(convertBuffer_.size(), static_cast<std::size_t>(room)));
  UErrorCode code = U_ZERO_ERROR;
  const int32_t written =
      ucnv_fromUChars(converter_.get(), convertBuffer_.data(),
                      static_cast<int32_t>(convertBuffer_.size()), text.data(), length, &code);
  if (U_FAILURE(code)) {
    return {};
  }
  return std::string_view(convertBuffer_).substr(0, static_cast<std::size_t>(written));
}

std::u16string_view TextConverter::ConvertToWide(std::string_view bytes) {
  constexpr std::size_t kMostCharactersPerByte = 2;
  decoding_.isTruncated = false;
  if (!isOpen() || bytes.empty() || bytes.size() > kLongestText) {
    return {};
  }
  const std::size_t room = (bytes.size() + 1) * kMostCharactersPerByte;
  convertedText_.resize(std::max(convertedText_.size(), room));
  UErrorCode code = U_ZERO_ERROR;
  const int32_t written = ucnv_toUChars(converter_.get(), convertedText_.data(),
                                        static_cast<int32_t>(convertedText_.size()), bytes.data(),
                                        static_cast<int32_t>(bytes.size()), &code);
  if (U_FAILURE(code)) {
    return {};
  }
  return std::u16string_view(convertedText_).substr(0, static_cast<std::size_t>(written));
}

}  // namespace rvf
