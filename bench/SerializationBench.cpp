// Throughput of both storage forms for a flat data set of 1000 elements.
#include "BenchData.h"

#include <benchmark/benchmark.h>
#include <sstream>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;
using Quiltra_Serialization::MemorySink;
using Quiltra_Serialization::MemorySource;

void BM_BinaryWrite(benchmark::State& state) {
  auto tree = QuiltraBench::makeTree(1000);
  std::size_t bytes = 0;
  for (auto _ : state) {
    MemorySink sink;
    tree->serializeX(sink);
    bytes = sink.bytes().size();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_BinaryWrite);

void BM_BinaryRead(benchmark::State& state) {
  MemorySink sink;
  QuiltraBench::makeTree(1000)->serializeX(sink);
  MemorySource source(sink.bytes());
  for (auto _ : state) {
    source.rewind();
    Tree tree;
    tree.deserializeX(source);
    benchmark::DoNotOptimize(tree.tagsSize());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * sink.bytes().size()));
}
BENCHMARK(BM_BinaryRead);

void BM_TextWrite(benchmark::State& state) {
  auto tree = QuiltraBench::makeTree(1000);
  std::size_t bytes = 0;
  for (auto _ : state) {
    std::ostringstream out;
    tree->toStream(out);
    bytes = out.str().size();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_TextWrite);

void BM_TextRead(benchmark::State& state) {
  std::ostringstream out;
  QuiltraBench::makeTree(1000)->toStream(out);
  const std::string text = out.str();
  for (auto _ : state) {
    std::istringstream in(text);
    Tree tree;
    tree.fromStream(in);
    benchmark::DoNotOptimize(tree.tagsSize());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_TextRead);

}  // namespace
