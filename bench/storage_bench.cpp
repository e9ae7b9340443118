// The cost of loading through an archive.

#include <benchmark/benchmark.h>

#include <string>

#include "storage/Archive.h"
#include "storage/MemFile.h"
#include "support/Bytes.h"

namespace rvf {
namespace {

void loadIntegers(benchmark::State& state) {
  constexpr i32 kCount = 1 << 18;
  std::string bytes(kCount * sizeof(i32), '\x11');
  eMemFile file(reinterpret_cast<std::byte*>(bytes.data()), static_cast<i32>(bytes.size()), 0);
  for (auto _ : state) {
    eArchive archive(file, eArchive::Mode::kLoad, eArchive::kFileBufferSize);
    archive.Seek(0);
    i32 sum = 0;
    for (i32 i = 0; i < kCount; ++i) {
      sum ^= archive.ReadI32();
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<i64>(bytes.size()));
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(loadIntegers);

void loadStrings(benchmark::State& state) {
  constexpr i32 kCount = 10000;
  const bool isWide = state.range(0) != 0;
  test::ByteWriter bytes(isWide);
  for (i32 i = 0; i < kCount; ++i) {
    bytes.string(u"a page name of usual length");
  }
  eMemFile file(reinterpret_cast<std::byte*>(bytes.bytes.data()), static_cast<i32>(bytes.size()),
                0);
  eString text;
  for (auto _ : state) {
    eArchive archive(file, eArchive::Mode::kLoad, eArchive::kFileBufferSize);
    archive.setWideStrings(isWide);
    archive.Seek(0);
    for (i32 i = 0; i < kCount; ++i) {
      archive.ReadString(text);
    }
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(loadStrings)->ArgName("wide")->Arg(0)->Arg(1);

}  // namespace
}  // namespace rvf
