#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "messages/MessageCatalogue.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf::test {

inline constexpr std::string_view kHead = "// test\n#define MESS_SYMB_VER 1602008\n";

/// Writes a catalogue into `folder` and makes it the one that is to be loaded.
inline void useCatalogue(MessageCatalogue& catalogue, const TempFolder& folder,
                         std::string_view bytes) {
  catalogue.SetMessageFile(fromNative(folder.write("catalogue.dat", bytes)));
}

/// Loads the catalogue and returns what it prints.
inline std::string printedByLoad(MessageCatalogue& catalogue) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
  catalogue.LoadCatalogue(file.get());
  std::string text(static_cast<std::size_t>(std::ftell(file.get())), '\0');
  std::rewind(file.get());
  text.resize(std::fread(text.data(), 1, text.size(), file.get()));
  return text;
}

}  // namespace rvf::test
