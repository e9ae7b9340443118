// A sequence of typed stores (ArchiveScript) in an archive on a memory file: all of it is loaded
// again. The first bytes are the sizes of the buffers.

#include <cstddef>

#include "support/ArchiveScript.h"
#include "support/FuzzInput.h"
#include "support/FuzzRun.h"

namespace rvf::fuzz {
namespace {

constexpr i32 kSmallestBuffer = 8;  // the widest primitive

void roundTrip(FuzzInput input) {
  const i32 storeBuffer = kSmallestBuffer + input.take();
  const i32 loadBuffer = kSmallestBuffer + input.take();
  eMemFile file(1 + input.take());

  eArchive out(file, eArchive::Mode::kStore, storeBuffer);
  ArchiveScript(input).play(out);
  const i32 end = out.GetPosition();
  out.Close();
  require(!out.failed() && end == file.GetLength(), "everything is stored");

  file.Seek(0, SeekOrigin::kStart);
  eArchive in(file, eArchive::Mode::kLoad, loadBuffer);
  ArchiveScript(input).play(in);
  require(!in.failed() && in.GetPosition() == end && in.BytesLeft() == 0, "everything is loaded");

  // After a seek, which may find its place in what was read before, and by another archive, which
  // goes on with that.
  require(in.Seek(0) == 0, "a memory file has a start");
  ArchiveScript(input).play(in);
  require(!in.failed() && in.GetPosition() == end, "everything is loaded again");
  eArchive other(file, eArchive::Mode::kLoad, loadBuffer);
  require(other.Seek(0) == 0, "a memory file has a start");
  ArchiveScript(input).play(other);
  require(!other.failed() && other.GetPosition() == end, "everything is loaded by another");
}

}  // namespace
}  // namespace rvf::fuzz

extern "C" int LLVMFuzzerTestOneInput(const rvf::u8* data, std::size_t size) {
  return rvf::fuzz::runOnce([=] { rvf::fuzz::roundTrip({data, size}); });
}
