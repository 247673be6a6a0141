// Costs of the data-set operations: layered lookups, sharing versus copying stores,
// flattening and listing.
#include "BenchData.h"

#include <benchmark/benchmark.h>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;

// getTag through k layers: one map search and one set search per layer.
void BM_LayeredLookup(benchmark::State& state) {
  const auto layers = static_cast<unsigned int>(state.range(0));
  auto top = QuiltraBench::layerOver(QuiltraBench::makeTree(1000), layers);
  const TagId deepest(0x0011, 0x1000 + 999);
  for (auto _ : state) benchmark::DoNotOptimize(top->getTag(deepest, AllLayers));
}
BENCHMARK(BM_LayeredLookup)->Arg(0)->Arg(1)->Arg(4)->Arg(16);

void BM_AddTagShares(benchmark::State& state) {
  auto source = QuiltraBench::makeTree(1);
  auto tag = source->getTag_rw(TagId(0x0011, 0x1000));
  Tree tree;
  for (auto _ : state) tree.addTag(tag);
}
BENCHMARK(BM_AddTagShares);

void BM_SetTagCopies(benchmark::State& state) {
  auto source = QuiltraBench::makeTree(2);
  auto tag = source->getTag(TagId(0x0011, 0x1001));
  Tree tree;
  for (auto _ : state) tree.setTag(tag);
}
BENCHMARK(BM_SetTagCopies);

void BM_MergedCopy(benchmark::State& state) {
  auto top = QuiltraBench::layerOver(QuiltraBench::makeTree(1000), 4);
  for (auto _ : state) benchmark::DoNotOptimize(top->mergedCopy(AllLayers));
  state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(BM_MergedCopy);

void BM_TagIdsAllLayers(benchmark::State& state) {
  auto top = QuiltraBench::layerOver(QuiltraBench::makeTree(1000), 4);
  for (auto _ : state) benchmark::DoNotOptimize(top->tagIds(AllLayers));
  state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(BM_TagIdsAllLayers);

void BM_PrivateSlot(benchmark::State& state) {
  auto tree = QuiltraBench::makeTree(100);
  tree->getPrivateSlot(0x0029, "Quiltra benchmark");
  for (auto _ : state) benchmark::DoNotOptimize(tree->getPrivateSlot(0x0029, "Quiltra benchmark"));
}
BENCHMARK(BM_PrivateSlot);

}  // namespace
