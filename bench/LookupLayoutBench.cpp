// What a random lookup in a large data set costs, and where that cost comes from: the same
// 100,000 ids searched through the same kind of map, with the map's nodes spread between the
// elements as a builder allocates them (a Tag, then its node, in turn), with the nodes
// allocated one after another, and in a map of bare integers. The searches are pointer
// chases through memory, so their cost follows the spacing and the size of the nodes.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;

constexpr unsigned int kElements = 100000;

const std::vector<TagId>& ids() {
  static const std::vector<TagId> all = [] {
    std::vector<TagId> made;
    for (unsigned int i = 0; i < kElements; ++i) {
      made.emplace_back(static_cast<unsigned short>(0x0011 + 2 * (i / 500)),
                        static_cast<unsigned short>(0x1000 + i % 500));
    }
    return made;
  }();
  return all;
}

const std::vector<TagId>& randomOrder() {
  static const std::vector<TagId> order = [] {
    std::mt19937 random(7);
    std::vector<TagId> picked;
    for (unsigned int i = 0; i < kElements; ++i) picked.push_back(ids()[random() % kElements]);
    return picked;
  }();
  return order;
}

std::shared_ptr<Tag> element(const TagId& id, unsigned int i) {
  auto tag = std::make_shared<Tag>(TagInfo(id, "ReferencedSOPInstanceUID", FD, {1, 1}));
  tag->addValue(static_cast<double>(i));
  return tag;
}

// Each node allocated right after its element, as Tree::addTag of a new Tag does.
Tree::TagMap interleaved() {
  Tree::TagMap map;
  for (unsigned int i = 0; i < kElements; ++i) {
    map.emplace_hint(map.end(), ids()[i], element(ids()[i], i));
  }
  return map;
}

template <class Map, class Key>
void searchAll(benchmark::State& state, const Map& map, Key key) {
  std::size_t found = 0;
  for (auto _ : state) {
    for (const TagId& id : randomOrder()) found += map.count(key(id));
  }
  benchmark::DoNotOptimize(found);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kElements));
}

void BM_FindNodesBetweenElements(benchmark::State& state) {
  const Tree::TagMap map = interleaved();
  searchAll(state, map, [](const TagId& id) { return id; });
}
BENCHMARK(BM_FindNodesBetweenElements)->Unit(benchmark::kMillisecond);

void BM_FindNodesTogether(benchmark::State& state) {
  const Tree::TagMap elements = interleaved();
  Tree::TagMap map;
  for (const auto& entry : elements) map.emplace_hint(map.end(), entry.first, nullptr);
  for (auto& entry : map) entry.second = elements.at(entry.first);
  searchAll(state, map, [](const TagId& id) { return id; });
}
BENCHMARK(BM_FindNodesTogether)->Unit(benchmark::kMillisecond);

void BM_FindIntegerNodes(benchmark::State& state) {
  std::map<unsigned int, int> map;
  for (const TagId& id : ids()) map.emplace_hint(map.end(), id.rawId(), 1);
  searchAll(state, map, [](const TagId& id) { return id.rawId(); });
}
BENCHMARK(BM_FindIntegerNodes)->Unit(benchmark::kMillisecond);

// The public lookup on the interleaved layout: the search, the shared pointer handed out,
// and a typed read of the element.
void BM_GetTagAndRead(benchmark::State& state) {
  auto tree = std::make_shared<Tree>();
  for (unsigned int i = 0; i < kElements; ++i) tree->addTag(element(ids()[i], i));
  double sum = 0.0;
  for (auto _ : state) {
    for (const TagId& id : randomOrder()) sum += tree->getTag(id)->toDouble(0);
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kElements));
}
BENCHMARK(BM_GetTagAndRead)->Unit(benchmark::kMillisecond);

}  // namespace
