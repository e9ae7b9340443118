// The cost of comparing pages: equal lists, the hard cases of the matcher, and the decoding of each
// family of parts.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

#include "compare/DrawListMatch.h"
#include "pagemodel/DrawListReader.h"
#include "storage/MemFile.h"
#include "support/Capture.h"

namespace rvf {
namespace {

/// A list record in memory that is read again and again.
class StoredList {
 public:
  explicit StoredList(const std::vector<test::Part>& parts) : bytes_(true), file_(0) {
    writeList(bytes_, {.parts = parts});
    file_.Attach(reinterpret_cast<std::byte*>(bytes_.bytes.data()), static_cast<i32>(bytes_.size()),
                 0);
  }

  void readInto(DrawList& list) {
    eArchive archive(file_, eArchive::Mode::kLoad, eArchive::kFileBufferSize);
    archive.Seek(0);
    resetList(list);
    readDrawList(list, archive);
  }

  [[nodiscard]] i64 size() const { return static_cast<i64>(bytes_.size()); }

 private:
  test::ByteWriter bytes_;
  eMemFile file_;
};

test::Part numberedText(int n) {
  return test::text({.text = u"The sum insured is now another one.",
                     .runs = {{.x = n % 2000, .y = n}, {.x = 7, .y = n}, {.x = n, .y = 8}}});
}

std::vector<test::Part> numberedTexts(int count) {
  std::vector<test::Part> parts;
  for (int i = 0; i < count; ++i) {
    parts.push_back(numberedText(i));
  }
  return parts;
}

void decode(benchmark::State& state, const test::Part& part) {
  constexpr int kParts = 500;
  StoredList stored(std::vector<test::Part>(kParts, part));
  DrawList list;
  for (auto _ : state) {
    stored.readInto(list);
  }
  state.SetItemsProcessed(state.iterations() * kParts);
  state.SetBytesProcessed(state.iterations() * stored.size());
}
BENCHMARK_CAPTURE(decode, text, numberedText(1));
BENCHMARK_CAPTURE(decode, line, test::line());
BENCHMARK_CAPTURE(decode, rect, test::rect());
BENCHMARK_CAPTURE(decode, poly, test::poly());
BENCHMARK_CAPTURE(decode, image, test::image());
BENCHMARK_CAPTURE(decode, marker, test::startEnd());
BENCHMARK_CAPTURE(decode, area, test::clickArea());
BENCHMARK_CAPTURE(decode, reference, test::staticRef());

void equalLists(benchmark::State& state) {
  const auto parts = numberedTexts(static_cast<int>(state.range(0)));
  DrawList a;
  DrawList b;
  StoredList(parts).readInto(a);
  StoredList(parts).readInto(b);
  for (auto _ : state) {
    benchmark::DoNotOptimize(listsEqual(a, b));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(equalLists)->Arg(500);

/// Matches a list against a changed copy of itself.
void match(benchmark::State& state, const std::function<void(std::vector<test::Part>&)>& change) {
  std::vector<test::Part> parts = numberedTexts(static_cast<int>(state.range(0)));
  DrawList a;
  DrawList b;
  StoredList(parts).readInto(a);
  change(parts);
  StoredList(parts).readInto(b);
  for (auto _ : state) {
    benchmark::DoNotOptimize(matchLists(a, b, {}));
  }
  state.SetComplexityN(state.range(0));
}

void insertInFront(std::vector<test::Part>& parts) {
  parts.insert(parts.begin(), test::justOneLine());
}
void shuffleAll(std::vector<test::Part>& parts) {
  std::shuffle(parts.begin(), parts.end(), std::mt19937(1));
}
void changeAll(std::vector<test::Part>& parts) {
  const auto n = static_cast<int>(parts.size());
  for (int i = 0; i < n; ++i) {
    parts[static_cast<std::size_t>(i)] = numberedText(n + i);
  }
}
void changeNothing(std::vector<test::Part>&) {}

BENCHMARK_CAPTURE(match, equal, changeNothing)->Arg(500)->Arg(100000);
BENCHMARK_CAPTURE(match, shifted, insertInFront)->Arg(500)->Arg(100000)->Arg(200000);
BENCHMARK_CAPTURE(match, shuffled, shuffleAll)->Arg(500)->Arg(100000);
BENCHMARK_CAPTURE(match, allDifferent, changeAll)->Arg(500)->Arg(100000);

}  // namespace
}  // namespace rvf
