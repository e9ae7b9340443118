#include "text/encoding/TextConverter.h"

#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <limits>

#include "messages/MessageReporter.h"

namespace rvf {

void plenarixFreePlenarixConverterResources(UConverter*) {}

void ConverterCloser::operator()(UConverter* converter) const {
  plenarixFreePlenarixConverterResources(converter);
  ucnv_close(converter);
}

namespace {

// ICU never chooses the byte order from its platform.
eString withByteOrder(const eString& name) {
  return name == eString(u"UTF-16") ? eString(u"UTF-16LE") : name;
}

ConverterHandle tryOpen(const char16_t* name) {
  UErrorCode code = U_ZERO_ERROR;
  ConverterHandle handle(ucnv_openU(name, &code));
  const bool isGood = code == U_ZERO_ERROR || code == U_AMBIGUOUS_ALIAS_WARNING;
  return isGood ? std::move(handle) : nullptr;
}

}  // namespace

// What ICU calls for bytes that it cannot map.
void TextConverter::substitute(const void* context, UConverterToUnicodeArgs* arguments,
                               const char* bytes, int32_t length, UConverterCallbackReason reason,
                               UErrorCode* code) {
  if (reason > UCNV_IRREGULAR) {
    return;  // told of a reset, a close or a copy: nothing to convert
  }
  Decoding& decoding = *static_cast<Decoding*>(const_cast<void*>(context));
  const std::span<const ReplacementPair> pairs = decoding.replacements;
  const auto byte = length > 0 ? static_cast<u8>(bytes[0]) : u8{0};
  const auto found = std::ranges::find(pairs, byte, &ReplacementPair::byte);
  decoding.isTruncated = *code == U_TRUNCATED_CHAR_FOUND;
  *code = U_ZERO_ERROR;
  if (found != pairs.end()) {
    ucnv_cbToUWriteUChars(arguments, &found->character, 1, 0, code);
  } else {
    ucnv_cbToUWriteSub(arguments, 0, code);
  }
}

namespace {

bool fitsIcu(std::size_t size, std::size_t unit) {
  return size <= static_cast<std::size_t>(std::numeric_limits<int32_t>::max()) / unit;
}

}  // namespace

ConverterHandle OpenConverter(const eString& name) {
  const eString wanted = withByteOrder(name);
  ConverterHandle handle = tryOpen(wanted.c_str());
  const char16_t* fallback = fallbackConverter(wanted);
  if (handle == nullptr && *fallback != 0) {
    handle = tryOpen(fallback);
  }
  if (handle == nullptr) {
    eString text;
    text.Format(u"Could not open Unicode Converter with \"%ls\" encoding.", wanted);
    Report(MessageNumber::kConverterNotOpened, text);
    return nullptr;
  }
  ucnv_setFallback(handle.get(), 1);
  return handle;
}

bool TextConverter::SetEncoding(i32 id) {
  eString name;
  GetEncodingName(id, false, name);
  const bool isSet = SetEncodingByName(name);
  encodingId_ = id;
  return isSet;
}

bool TextConverter::SetEncodingByName(const eString& name) {
  converter_.reset();
  converter_ = OpenConverter(name);
  converterName_ = isOpen() ? name : eString();
  GetEncodingId(name, encodingId_);
  if (isOpen()) {
    installCallback();
  }
  return isOpen();
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
  if (converter_ == nullptr || text.empty()) {
    return {};
  }
  const auto largest = static_cast<std::size_t>(ucnv_getMaxCharSize(converter_.get()));
  // The shifts in front of and behind the text need room too.
  const std::size_t room = (text.size() + 10) * largest;
  if (!fitsIcu(text.size() + 10, largest)) {
    return {};
  }
  convertBuffer_.resize(std::max(convertBuffer_.size(), room));
  UErrorCode code = U_ZERO_ERROR;
  const int32_t length = ucnv_fromUChars(converter_.get(), convertBuffer_.data(),
                                         static_cast<int32_t>(convertBuffer_.size()), text.data(),
                                         static_cast<int32_t>(text.size()), &code);
  if (U_FAILURE(code)) {
    return {};
  }
  return std::string_view(convertBuffer_).substr(0, static_cast<std::size_t>(length));
}

std::u16string_view TextConverter::ConvertToWide(std::string_view bytes) {
  constexpr std::size_t kMostCharactersPerByte = 2;
  decoding_.isTruncated = false;
  if (converter_ == nullptr || bytes.empty() ||
      !fitsIcu(bytes.size() + 1, kMostCharactersPerByte)) {
    return {};
  }
  const std::size_t room = (bytes.size() + 1) * kMostCharactersPerByte;
  convertedText_.resize(std::max(convertedText_.size(), room));
  UErrorCode code = U_ZERO_ERROR;
  const int32_t length = ucnv_toUChars(converter_.get(), convertedText_.data(),
                                       static_cast<int32_t>(convertedText_.size()), bytes.data(),
                                       static_cast<int32_t>(bytes.size()), &code);
  if (U_FAILURE(code)) {
    return {};
  }
  return std::u16string_view(convertedText_).substr(0, static_cast<std::size_t>(length));
}

}  // namespace rvf
