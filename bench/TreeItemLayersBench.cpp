// A layered change inside a large sequence against a deep copy and the same change, and what
// reading through such a layer costs. The frame tree: a per-frame sequence of 20,000 items,
// each holding three nested sequences of one item with five values (FD, US, LO).
#include <benchmark/benchmark.h>
#include <memory>
#include <string>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;

constexpr unsigned int kFrames = 20000;
constexpr unsigned int kChangedFrame = kFrames / 2;
const TagId kFramesId(0x5200, 0x9230);
const TagId kNestedIds[3] = {TagId(0x0020, 0x9111), TagId(0x0020, 0x9113), TagId(0x0020, 0x9116)};
const char* const kNestedNames[3] = {"FrameContentSequence", "PlanePositionSequence",
                                     "PlaneOrientationSequence"};
// The value every benchmark reads and changes: the first FD of the second nested sequence.
const TagId kReadId(0x0020, 0x1000);

std::shared_ptr<Tree> frameItem(unsigned int frame) {
  auto item = std::make_shared<Tree>();
  for (unsigned int s = 0; s < 3; ++s) {
    auto nestedItem = std::make_shared<Tree>();
    for (unsigned short e = 0; e < 5; ++e) {
      const TagId id(0x0020, static_cast<unsigned short>(0x1000 + e));
      const Vr vr = e < 2 ? FD : e < 4 ? US : LO;
      auto tag = std::make_shared<Tag>(TagInfo(id, "FrameValue" + std::to_string(e), vr, {1, 1}));
      if (vr == FD) tag->addValue(frame + s * 0.5 + e);
      if (vr == US) tag->addValue(static_cast<unsigned short>(frame + e));
      if (vr == LO) tag->addValue("frame " + std::to_string(frame));
      nestedItem->addTag(tag);
    }
    auto nested = std::make_shared<Tag>(TagInfo(kNestedIds[s], kNestedNames[s], SQ, {1, 1}));
    nested->addSequenceItem(nestedItem);
    item->addTag(nested);
  }
  return item;
}

std::shared_ptr<const Tree> frameTree() {
  static const std::shared_ptr<const Tree> tree = [] {
    auto built = std::make_shared<Tree>();
    auto frames =
        std::make_shared<Tag>(TagInfo(kFramesId, "PerFrameFunctionalGroupsSequence", SQ, {1, 1}));
    for (unsigned int f = 0; f < kFrames; ++f) frames->addSequenceItem(frameItem(f));
    built->addTag(frames);
    return built;
  }();
  return tree;
}

// A child layer over tree in which one frame's value reads value.
std::shared_ptr<Tree> changedLayer(const std::shared_ptr<const Tree>& tree, double value) {
  auto child = std::make_shared<Tree>(tree);
  auto item = child->layerSequenceItem({{kFramesId, kChangedFrame}, {kNestedIds[1], 0}});
  auto changed = item->getTag(kReadId)->copy();
  changed->setValue(value, 0);
  item->addTag(changed);
  return child;
}

double frameValue(const Tree& tree, unsigned int frame) {
  const auto& item = tree.getTag(kFramesId)->sequenceItems()[frame];
  const auto& nested = item->getTag(kNestedIds[1])->sequenceItems()[0];
  return nested->getTag(kReadId)->toDouble(0);
}

void BM_LayeredChange(benchmark::State& state) {
  const auto tree = frameTree();
  for (auto _ : state) benchmark::DoNotOptimize(changedLayer(tree, -1.0));
}
BENCHMARK(BM_LayeredChange)->Unit(benchmark::kMicrosecond);

void BM_DeepCopyAndChange(benchmark::State& state) {
  const auto tree = frameTree();
  for (auto _ : state) {
    auto copy = tree->copy();
    const auto& item = copy->getTag_rw(kFramesId)->sequenceItems()[kChangedFrame];
    const auto& nested = item->getTag_rw(kNestedIds[1])->sequenceItems()[0];
    nested->getTag_rw(kReadId)->setValue(-1.0, 0);
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(BM_DeepCopyAndChange)->Unit(benchmark::kMillisecond);

// Every frame's value, through the changed child and, for comparison, in the tree itself.
void readEveryFrame(benchmark::State& state, const Tree& tree) {
  double sum = 0.0;
  for (auto _ : state) {
    for (unsigned int f = 0; f < kFrames; ++f) sum += frameValue(tree, f);
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(static_cast<long>(state.iterations()) * kFrames);
}

void BM_ReadEveryFrameThroughChild(benchmark::State& state) {
  const auto child = changedLayer(frameTree(), -1.0);
  if (frameValue(*child, kChangedFrame) != -1.0) state.SkipWithError("change not visible");
  readEveryFrame(state, *child);
}
BENCHMARK(BM_ReadEveryFrameThroughChild)->Unit(benchmark::kMicrosecond);

void BM_ReadEveryFrameOfTree(benchmark::State& state) {
  readEveryFrame(state, *frameTree());
}
BENCHMARK(BM_ReadEveryFrameOfTree)->Unit(benchmark::kMicrosecond);

}  // namespace
