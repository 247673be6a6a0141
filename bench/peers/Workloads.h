#ifndef QUILTRA_BENCH_PEERS_WORKLOADS_H_
#define QUILTRA_BENCH_PEERS_WORKLOADS_H_

// The workloads every implementation runs, written once over an adapter so that each one
// does the same steps on the same logical data and is timed the same way.
//
// An adapter is a struct of static functions:
//   empty()                          a new, empty data set (a handle: smart pointer)
//   insert(set, spec)                adds one element of the flat data
//   read(set, spec)                  a typed read of that element (text length, US, FD)
//   remove(set, spec), replace(set, spec)  replace writes spec's value over the element
//   buildFrames(count)               the frame tree of FrameLayout
//   deepCopy(tree)                   an independent copy, values and items included
//   changeFrameValue(tree, frame, v) writes the read FD of one frame
//   frameValue(tree, frame)          reads it through the frame index
//   store(tree), load(stored)        explicit little-endian (peers) or binary (Quiltra)
//                                    form in memory, and back
//
// Every measurement times only the operation (manual time): building the input before it
// and destroying the result after it are left out.

#include "LogicalData.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace QuiltraPeers {

/// One measurement of one implementation, registered as "<name>/<implementation>".
struct Workload {
  std::string name;
  std::string implementation;
  std::function<void(benchmark::State&)> run;
  bool singleIteration = false;  // heap figures: one build per repetition is enough
  bool runOnce = false;          // one repetition: a single run takes many seconds
  bool takesMinutes = false;     // at full size, left out unless QUILTRA_BENCH_ALL is set
};
using Workloads = std::vector<Workload>;

Workloads quiltraWorkloads();
#ifdef QUILTRA_BENCH_WITH_DCMTK
Workloads dcmtkWorkloads();
#endif
#ifdef QUILTRA_BENCH_WITH_GDCM
Workloads gdcmWorkloads();
#endif

/// Runs op and reports its duration as the iteration's time.
template <class Op>
void timed(benchmark::State& state, Op&& op) {
  const auto start = std::chrono::steady_clock::now();
  op();
  const auto end = std::chrono::steady_clock::now();
  state.SetIterationTime(std::chrono::duration<double>(end - start).count());
}

/// What read() answers for the element spec describes.
inline double expectedRead(const ElementSpec& spec) {
  switch (spec.kind) {
    case Kind::LO:
      return static_cast<double>(spec.text.size());
    case Kind::US:
      return spec.number;
    case Kind::FD:
      return spec.real;
  }
  return 0.0;
}

/// spec with the value that replace() writes instead of the original.
inline ElementSpec replacementOf(const ElementSpec& spec) {
  ElementSpec changed = spec;
  changed.text = spec.replacement;
  changed.number = static_cast<std::uint16_t>(spec.number ^ 1U);
  changed.real = spec.real + 0.25;
  return changed;
}

template <class Impl>
auto buildFlat(const FlatData& data, bool shuffled) {
  auto set = Impl::empty();
  if (shuffled) {
    for (std::size_t index : data.shuffled) Impl::insert(set, data.ascending[index]);
  } else {
    for (const ElementSpec& spec : data.ascending) Impl::insert(set, spec);
  }
  return set;
}

/// Stops the run when the implementation does not hold what it was given: a benchmark of
/// wrong work is worse than none.
template <class Impl, class Set>
bool holdsFlatData(benchmark::State& state, const Set& set, const FlatData& data) {
  for (const ElementSpec* spec : {&data.ascending.front(), &data.ascending.back()}) {
    if (Impl::read(set, *spec) != expectedRead(*spec)) {
      state.SkipWithError("the data set does not hold the values it was built with");
      return false;
    }
  }
  return true;
}

template <class Impl, class Tree>
bool holdsFrames(benchmark::State& state, const Tree& tree) {
  const std::size_t last = sizes().frames - 1;
  if (Impl::frameValue(tree, last) !=
      frameReal(last, FrameLayout::kReadSequence, FrameLayout::kReadElement)) {
    state.SkipWithError("the frame tree does not hold the values it was built with");
    return false;
  }
  return true;
}

// Workload 1: building flat data sets.
template <class Impl>
void buildWorkload(benchmark::State& state, std::size_t count, bool shuffled) {
  const FlatData& data = flatData(count);
  for (auto _ : state) {
    decltype(Impl::empty()) set;
    timed(state, [&] { set = buildFlat<Impl>(data, shuffled); });
    if (!holdsFlatData<Impl>(state, set, data)) return;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}

// Workload 2: random lookups, each with a typed read.
template <class Impl>
void lookupWorkload(benchmark::State& state, std::size_t count) {
  const FlatData& data = flatData(count);
  auto set = buildFlat<Impl>(data, false);
  if (!holdsFlatData<Impl>(state, set, data)) return;
  double sum = 0.0;
  for (auto _ : state) {
    timed(state, [&] {
      for (std::size_t index : data.lookups) sum += Impl::read(set, data.ascending[index]);
    });
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * data.lookups.size()));
}

// Workload 3: removing 1% of the elements (put back untimed), replacing the values of 10%.
template <class Impl>
void removeWorkload(benchmark::State& state, std::size_t count) {
  const FlatData& data = flatData(count);
  auto set = buildFlat<Impl>(data, false);
  for (auto _ : state) {
    timed(state, [&] {
      for (std::size_t index : data.removed) Impl::remove(set, data.ascending[index]);
    });
    for (std::size_t index : data.removed) Impl::insert(set, data.ascending[index]);
  }
  holdsFlatData<Impl>(state, set, data);
}

template <class Impl>
void replaceWorkload(benchmark::State& state, std::size_t count) {
  const FlatData& data = flatData(count);
  auto set = buildFlat<Impl>(data, false);
  std::vector<ElementSpec> changed;
  for (std::size_t index : data.replaced) changed.push_back(replacementOf(data.ascending[index]));
  bool alternate = false;
  for (auto _ : state) {
    alternate = !alternate;
    timed(state, [&] {
      for (std::size_t i = 0; i < changed.size(); ++i) {
        Impl::replace(set, alternate ? changed[i] : data.ascending[data.replaced[i]]);
      }
    });
  }
  if (!changed.empty() &&
      Impl::read(set, changed.front()) !=
          expectedRead(alternate ? changed.front() : data.ascending[data.replaced.front()])) {
    state.SkipWithError("replace did not change the value");
  }
}

// Workload 4: the frame tree, built, deep-copied with one nested change.
template <class Impl>
void frameBuildWorkload(benchmark::State& state) {
  for (auto _ : state) {
    decltype(Impl::buildFrames(0)) tree;
    timed(state, [&] { tree = Impl::buildFrames(sizes().frames); });
    if (!holdsFrames<Impl>(state, tree)) return;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sizes().frames));
}

template <class Impl>
void deepCopyWorkload(benchmark::State& state) {
  auto tree = Impl::buildFrames(sizes().frames);
  const std::size_t frame = sizes().frames / 2;
  for (auto _ : state) {
    decltype(Impl::buildFrames(0)) copy;
    timed(state, [&] {
      copy = Impl::deepCopy(tree);
      Impl::changeFrameValue(copy, frame, -1.0);
    });
    if (Impl::frameValue(copy, frame) != -1.0 || Impl::frameValue(tree, frame) == -1.0) {
      state.SkipWithError("the change did not stay in the copy");
      return;
    }
  }
}

// Workload 5: every frame's nested value through its frame index.
template <class Impl, class Tree>
void frameAccessLoop(benchmark::State& state, const Tree& tree) {
  double sum = 0.0;
  for (auto _ : state) {
    timed(state, [&] {
      for (std::size_t f = 0; f < sizes().frames; ++f) sum += Impl::frameValue(tree, f);
    });
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sizes().frames));
}

template <class Impl>
void frameAccessWorkload(benchmark::State& state) {
  auto tree = Impl::buildFrames(sizes().frames);
  frameAccessLoop<Impl>(state, tree);
}

// Workload 6: the frame tree stored in memory and read back.
template <class Impl, class Stored>
void storeLoop(benchmark::State& state, const Stored& tree) {
  std::size_t bytes = 0;
  for (auto _ : state) {
    decltype(Impl::store(tree)) stored;
    timed(state, [&] { stored = Impl::store(tree); });
    bytes = stored.size();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

/// Reads stored back on every iteration; holds(state, result) checks what came back.
template <class Impl, class Bytes, class Check>
void loadLoop(benchmark::State& state, const Bytes& stored, Check holds) {
  for (auto _ : state) {
    decltype(Impl::load(stored)) back;
    timed(state, [&] { back = Impl::load(stored); });
    if (!holds(state, back)) return;
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * stored.size()));
}

template <class Impl>
void storeWorkload(benchmark::State& state) {
  storeLoop<Impl>(state, Impl::buildFrames(sizes().frames));
}

template <class Impl>
void loadWorkload(benchmark::State& state) {
  loadLoop<Impl>(state, Impl::store(Impl::buildFrames(sizes().frames)),
                 [](benchmark::State& s, const auto& back) { return holdsFrames<Impl>(s, back); });
}

// Workload 8: heap in use after building, from the allocator's statistics.
template <class Impl>
void flatHeapWorkload(benchmark::State& state, std::size_t count) {
  const FlatData& data = flatData(count);
  for (auto _ : state) {
    const std::size_t before = heapInUse();
    decltype(Impl::empty()) set;
    timed(state, [&] { set = buildFlat<Impl>(data, false); });
    state.counters["heap_bytes"] = static_cast<double>(heapInUse() - before) / count;
  }
}

template <class Impl>
void frameHeapWorkload(benchmark::State& state) {
  for (auto _ : state) {
    const std::size_t before = heapInUse();
    decltype(Impl::buildFrames(0)) tree;
    timed(state, [&] { tree = Impl::buildFrames(sizes().frames); });
    state.counters["heap_bytes"] = static_cast<double>(heapInUse() - before) / sizes().frames;
  }
}

/// The workloads of every implementation, in table order. Workload 7 (character sets, the
/// dump, files, identifiers) and access through a structured multi-frame grid (5) join here
/// as those features land.
template <class Impl>
Workloads sharedWorkloads(const std::string& implementation) {
  Workloads list;
  auto add = [&](std::string name, std::function<void(benchmark::State&)> run,
                 bool single = false) {
    list.push_back({std::move(name), implementation, std::move(run), single});
  };
  for (std::size_t count : sizes().elementCounts) {
    const std::string n = std::to_string(count);
    add("build " + n + " ascending", [count](auto& s) { buildWorkload<Impl>(s, count, false); });
    add("build " + n + " shuffled", [count](auto& s) { buildWorkload<Impl>(s, count, true); });
  }
  for (std::size_t count : sizes().elementCounts) {
    add("lookup+read in " + std::to_string(count),
        [count](auto& s) { lookupWorkload<Impl>(s, count); });
  }
  for (std::size_t count : sizes().elementCounts) {
    add("remove 1% of " + std::to_string(count),
        [count](auto& s) { removeWorkload<Impl>(s, count); });
  }
  for (std::size_t count : sizes().elementCounts) {
    add("replace 10% of " + std::to_string(count),
        [count](auto& s) { replaceWorkload<Impl>(s, count); });
  }
  add("frames: build", [](auto& s) { frameBuildWorkload<Impl>(s); });
  add("frames: deep copy+change", [](auto& s) { deepCopyWorkload<Impl>(s); });
  add("frames: access by index", [](auto& s) { frameAccessWorkload<Impl>(s); });
  add("frames: store binary", [](auto& s) { storeWorkload<Impl>(s); });
  add("frames: read binary", [](auto& s) { loadWorkload<Impl>(s); });
  for (std::size_t count : sizes().elementCounts) {
    add(
        "heap per element, " + std::to_string(count),
        [count](auto& s) { flatHeapWorkload<Impl>(s, count); }, true);
  }
  add(
      "heap per frame", [](auto& s) { frameHeapWorkload<Impl>(s); }, true);
  return list;
}

}  // namespace QuiltraPeers

#endif  // QUILTRA_BENCH_PEERS_WORKLOADS_H_
