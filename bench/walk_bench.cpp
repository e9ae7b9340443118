// The cost of a walk through two files, that is, of a run without the disk: loading both, their
// pages and the difference file.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "compare/CustomerWalk.h"
#include "storage/MemFile.h"
#include "support/Capture.h"

namespace rvf {
namespace {

constexpr int kPages = 1000, kPartsOfAPage = 20;

std::string captureOfTexts(bool isChanged) {
  test::Part part = test::text({.text = u"The sum insured of this item"});
  std::vector<test::Part> parts(kPartsOfAPage, part);
  if (isChanged) parts.back() = test::text({.text = u"The sum insured was changed"});
  return writeCapture(test::captureOf({kPages, test::page(parts)})).bytes;
}

/// One of the two files of a walk, loaded anew each time.
struct Loaded {
  explicit Loaded(std::string& bytes)
      : file(reinterpret_cast<std::byte*>(bytes.data()), static_cast<i32>(bytes.size()), 0) {
    reader.load(file);
  }

  eMemFile file;
  CompareContext context;
  RvfReader reader{context, false};
};

void walk(benchmark::State& state, bool isChanged) {
  std::string first = captureOfTexts(false);
  std::string second = captureOfTexts(isChanged);
  for (auto _ : state) {
    Loaded a(first);
    Loaded b(second);
    eMemFile differences(1 << 16);
    const DiffFlags status = walkCustomers(a.reader, b.reader, CountMismatch::kLimitsWalk, {},
                                           {differences, u"first", u"second"});
    if ((status != 0) != isChanged) state.SkipWithError("another result");
  }
  state.SetItemsProcessed(state.iterations() * kPages);
  state.SetBytesProcessed(state.iterations() * static_cast<i64>(first.size() + second.size()));
}
BENCHMARK_CAPTURE(walk, equal, false);
BENCHMARK_CAPTURE(walk, changed, true);

}  // namespace
}  // namespace rvf
