#pragma once

#include <bit>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "messages/MessageCatalogue.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf::test {

inline constexpr std::string_view kHead = "// test\n#define MESS_SYMB_VER 1602008\n";

/// ASCII as UTF-16 in the given byte order, without a mark.
inline std::string utf16(std::string_view ascii, std::endian order) {
  std::string bytes;
  for (const char c : ascii) {
    bytes += order == std::endian::little ? std::string{c, '\0'} : std::string{'\0', c};
  }
  return bytes;
}

/// Writes a catalogue into `folder` and makes it the one that is to be loaded.
inline void useCatalogue(MessageCatalogue& catalogue, const TempFolder& folder,
                         std::string_view bytes) {
  catalogue.SetMessageFile(fromNative(folder.write("catalogue.dat", bytes)));
}

/// A stream that remembers what is printed on it.
class PrintedText {
 public:
  std::FILE* stream() { return file_.get(); }
  std::string text() {
    std::string text(static_cast<std::size_t>(std::ftell(file_.get())), '\0');
    std::rewind(file_.get());
    text.resize(std::fread(text.data(), 1, text.size(), file_.get()));
    return text;
  }

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Closer> file_{std::tmpfile()};
};

}  // namespace rvf::test
