// A sequence of typed stores in an archive on a memory file: all of it is loaded again. The first
// bytes are the sizes of the buffers; then comes one byte for the kind of each value, and the
// value.

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
  load(in);  // after a seek, which may find its place in what was read before
  eArchive other(file, eArchive::Mode::kLoad, loadBuffer);
  load(other);  // goes on with that
}

}  // namespace rvf::fuzz
