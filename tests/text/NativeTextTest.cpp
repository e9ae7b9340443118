#include "text/NativeText.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

namespace rvf {
namespace {

using namespace std::string_literals;

TEST(NativeText, DecodesUtf8AndKeepsWhatIsNone) {
  struct Row {
    std::string bytes;
    std::u16string text;
  };
  const Row rows[] = {
      {"", u""},
      {"a/b", u"a/b"},
      {"\xC3\xA9\xE2\x82\xAC", u"\u00E9\u20AC"},
      {"\xF0\x9F\x98\x80", u"\xD83D\xDE00"},
      {"\xE9x", u"\xDCE9x"},
      {"\x80\xFF", u"\xDC80\xDCFF"},
      {"\xC0\xAF", u"\xDCC0\xDCAF"},                      // an overlong form
      {"\xED\xB3\xBF", u"\xDCED\xDCB3\xDCBF"},            // U+DCFF itself, which is no UTF-8
      {"\xE2\x82", u"\xDCE2\xDC82"},                      // cut
      {"\xF4\x90\x80\x80", u"\xDCF4\xDC90\xDC80\xDC80"},  // beyond U+10FFFF
  };
  for (const Row& row : rows) {
    EXPECT_EQ(fromNative(row.bytes).view(), row.text);
    EXPECT_EQ(toNative(row.text), row.bytes);
  }
}

TEST(NativeText, EveryByteStringComesBack) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      for (const std::string& rest : {""s, "\x80"s, "\xBF\xBF"s, "a"s}) {
        const std::string bytes =
            std::string{static_cast<char>(first), static_cast<char>(second)} + rest;
        ASSERT_EQ(toNative(fromNative(bytes).view()), bytes) << first << ' ' << second;
      }
    }
  }
}

TEST(NativeText, SystemErrorText) {
  EXPECT_EQ(systemErrorText(ENOENT).view(), u"No such file or directory");
}

}  // namespace
}  // namespace rvf
