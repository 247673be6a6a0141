// Costs of the structured multi-frame view on a 64 x 64 x 4 grid (16,384 positions):
// building it with a frame index and three attributes per position, normalising it, and
// extracting every position in each mode. Item counts are positions.
#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;

const std::vector<unsigned int> kExtent{64, 64, 4};
constexpr unsigned int kPositions = 64 * 64 * 4;

// Per position: the frame index, an image position that differs everywhere, a slice
// thickness equal everywhere and an acquisition number equal within each item of
// dimension 2, so that normalisation moves attributes to two different levels.
std::shared_ptr<Tree> buildGrid() {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, kExtent);
  unsigned int frame = 0;
  for (unsigned int k = 0; k < kExtent[2]; ++k) {
    for (unsigned int j = 0; j < kExtent[1]; ++j) {
      for (unsigned int i = 0; i < kExtent[0]; ++i) {
        grid.setFrameIndexForGridPosition(frame++, i, j, k);
        auto position = std::make_shared<Tag>(TagInfo(TagId(0x0020, 0x0032), "", DS, {3, 3}));
        position->addValue(std::to_string(i) + "\\" + std::to_string(j) + "\\" + std::to_string(k));
        grid.setTagForGridPosition(position, i, j, k);
        auto thickness = std::make_shared<Tag>(TagInfo(TagId(0x0018, 0x0050), "", DS, {1, 1}));
        thickness->addValue(1.5);
        grid.setTagForGridPosition(thickness, i, j, k);
        auto acquisition = std::make_shared<Tag>(TagInfo(TagId(0x0020, 0x0012), "", IS, {1, 1}));
        acquisition->addValue(static_cast<int>(k));
        grid.setTagForGridPosition(acquisition, i, j, k);
      }
    }
  }
  return tree;
}

void BM_BuildGrid(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(buildGrid());
  state.SetItemsProcessed(state.iterations() * kPositions);
}
BENCHMARK(BM_BuildGrid)->Unit(benchmark::kMillisecond);

void BM_Normalize(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto tree = buildGrid();
    state.ResumeTiming();
    StructuredMF(tree).normalizeTagStructure(0.0, true);
  }
  state.SetItemsProcessed(state.iterations() * kPositions);
}
BENCHMARK(BM_Normalize)->Unit(benchmark::kMillisecond);

// Every position of the normalised grid, mode 0 MergedWithShared, 1 PositionOnly,
// 2 SharedAsParent.
void BM_ExtractEveryPosition(benchmark::State& state) {
  auto tree = buildGrid();
  StructuredMF(tree).normalizeTagStructure(0.0, true);
  const StructuredMF grid{std::shared_ptr<const Tree>(tree)};
  const auto mode = static_cast<StructuredMF::ExtractMode>(state.range(0));
  for (auto _ : state) {
    for (unsigned int k = 0; k < kExtent[2]; ++k) {
      for (unsigned int j = 0; j < kExtent[1]; ++j) {
        for (unsigned int i = 0; i < kExtent[0]; ++i) {
          benchmark::DoNotOptimize(grid.extractTagTreeForGridPosition(i, j, k, mode));
        }
      }
    }
  }
  state.SetItemsProcessed(state.iterations() * kPositions);
}
BENCHMARK(BM_ExtractEveryPosition)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// The frame index of every position: one item lookup per dimension plus the tag lookups.
void BM_FrameIndexEveryPosition(benchmark::State& state) {
  const auto tree = buildGrid();
  const StructuredMF grid{std::shared_ptr<const Tree>(tree)};
  for (auto _ : state) {
    for (unsigned int k = 0; k < kExtent[2]; ++k) {
      for (unsigned int j = 0; j < kExtent[1]; ++j) {
        for (unsigned int i = 0; i < kExtent[0]; ++i) {
          benchmark::DoNotOptimize(grid.frameIndexForGridPosition(i, j, k));
        }
      }
    }
  }
  state.SetItemsProcessed(state.iterations() * kPositions);
}
BENCHMARK(BM_FrameIndexEveryPosition)->Unit(benchmark::kMillisecond);

}  // namespace
