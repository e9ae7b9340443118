// A sequence of typed values is stored in an archive on a memory file and loaded again. The first
// bytes are the sizes of the buffers; each value follows a byte that gives its kind.

#include "support/ArchiveScript.h"

namespace rvf::fuzz {

void checkInput(FuzzInput input) {
  constexpr i32 kSmallestBuffer = 8;  // the widest primitive
  const i32 storeBuffer = kSmallestBuffer + input.take();
  const i32 loadBuffer = kSmallestBuffer + input.take();
  eMemFile file(1 + input.take());
  eArchive out(file, eArchive::Mode::kStore, storeBuffer);
  ArchiveScript(input).play(out);
  const i64 end = out.GetPosition();
  out.Close();
  require(!out.failed() && end == file.GetLength(), "everything is stored");

  const auto load = [&](eArchive& archive) {
    require(archive.Seek(0) == 0, "a memory file has a start");
    ArchiveScript(input).play(archive);
    require(!archive.failed() && archive.GetPosition() == end && archive.bytesLeft() == 0,
            "everything is loaded");
  };
  eArchive in(file, eArchive::Mode::kLoad, loadBuffer);
  load(in);
  load(in);  // after a seek, whose target may still be in the buffer
  eArchive other(file, eArchive::Mode::kLoad, loadBuffer);
  load(other);  // continues with the same window
}

}  // namespace rvf::fuzz
