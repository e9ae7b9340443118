#include "text/NativeText.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

namespace rvf {
namespace {

using namespace std::string_literals;

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

}  // namespace
}  // namespace rvf
