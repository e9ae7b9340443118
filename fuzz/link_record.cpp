// A link record in the tagged or the old form: after it is stored, it is read back the same.

#include "storage/HyperlinkInfo.h"
#include "support/Fuzz.h"

namespace rvf::fuzz {
namespace {

std::u16string_view textOf(const HyperlinkInfo& link) {
  return link.text == nullptr ? std::u16string_view()
                              : std::u16string_view(link.text.get(), link.textLength);
}

bool areSame(const HyperlinkInfo& a, const HyperlinkInfo& b) {
  return a.linkValue1 == b.linkValue1 && a.linkValue2 == b.linkValue2 &&
         a.linkValue3 == b.linkValue3 && textOf(a) == textOf(b) && a.firstLabel == b.firstLabel &&
         a.secondLabel == b.secondLabel;
}

}  // namespace

void checkInput(FuzzInput input) {
  const u8 flags = input.take();
  const auto version = input.take<i16>();
  InputFile record(input.rest());
  Loader archive(record.file);
  archive.setWideStrings((flags & 1) != 0);
  HyperlinkInfo link;
  // The second read replaces the link left by the first.
  for (int i = 0; i < ((flags & 4) != 0 ? 2 : 1) && !archive.failed(); ++i) {
    if ((flags & 2) != 0) {
      link.readOldForm(archive, version);
    } else {
      link.read(archive);
    }
    require(link.text == nullptr || link.text[link.textLength] == 0, "a text has its end");
  }
  require(areSame(HyperlinkInfo(link), link), "a copy is equal to its original");

  eMemFile stored(16);
  eArchive out(stored, eArchive::Mode::kStore, eArchive::kSectionBufferSize);
  link.store(out);
  out.Close();
  stored.Seek(0, SeekOrigin::kStart);
  Loader in(stored);
  HyperlinkInfo again;
  again.read(in);
  require(!in.failed() && areSame(again, link), "what was stored is read again");
}

}  // namespace rvf::fuzz
