#pragma once

#include <string>
#include <string_view>

#include "text/eString.h"

namespace rvf {

// Conversion between this system's 16-bit text and the UTF-8 of the operating system: arguments,
// paths, error texts. Every byte string survives the round trip, so that any file name that a shell
// can pass can be opened: a byte that is not valid UTF-8 becomes a lone low surrogate U+DC80 to
// U+DCFF, and such a surrogate becomes that byte again.

[[nodiscard]] eString fromNative(std::string_view bytes);
[[nodiscard]] std::string toNative(std::u16string_view text);

/// The operating system's text for an error number, in the C locale.
[[nodiscard]] eString systemErrorText(int errorNumber);

}  // namespace rvf
