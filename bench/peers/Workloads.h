#ifndef QUILTRA_BENCH_PEERS_WORKLOADS_H_
#define QUILTRA_BENCH_PEERS_WORKLOADS_H_

// The workloads every implementation runs, written once over an adapter so that each one
// does the same steps on the same logical data and is timed the same way.
//
// An adapter is a struct of static functions:
//   empty()                          a new, empty data set (a handle: smart pointer)
//   insert(set, entry)                adds one element of the flat data
//   read(set, entry)                  a typed read of that element (text length, US, FD)
//   remove(set, entry), replace(set, entry)  replace writes entry's value over the element
//   buildFrames(count)               the frame tree of FrameLayout
//   deepCopy(tree)                   an independent copy, values and items included
//   changeFrameValue(tree, frame, v) writes the read FD of one frame
//   frameValue(tree, frame)          reads it through the frame index
//   store(tree), load(stored)        explicit little-endian (peers) or binary (Quiltra)
//                                    form in memory, and back
//   printable(tree), print(p, out)   what the text dump prints, and the dump itself
//   putText, putNumber, putPixels    the elements of a file's identity and of the image
//   toFile(set), writeFile(file, path), readFile(path)
//                                    a DICOM file in explicit VR little endian, each
//                                    library with its own defaults for lengths
//   loadedFrameValue(read, frame), loadedPixels(read)   what readFile gave
//   uidsReady(), uid()               a new unique identifier
//   kConvertsNames: toUtf8(latin1, out), toLatin1(utf8, out)   character sets
//
// Every measurement times only the operation (manual time): building the input before it
// and destroying the result after it are left out.

#include "LogicalData.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <ostream>
#include <streambuf>
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
  /// For a workload only Quiltra has: the shared workload whose peer figures it is held
  /// against (the table shows them in parentheses).
  std::string comparedWith{};
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

/// Drops every character and counts them: the dumps print into it, so that only their own
/// work is measured.
class NullBuffer : public std::streambuf {
 public:
  std::size_t count() const { return _count; }

 protected:
  int overflow(int c) override {
    ++_count;
    return c;
  }
  std::streamsize xsputn(const char*, std::streamsize count) override {
    _count += static_cast<std::size_t>(count);
    return count;
  }

 private:
  std::size_t _count = 0;
};

/// "256 MiB", "16 KiB": a size as it appears in a workload's name.
inline std::string sizeName(std::size_t bytes) {
  return bytes >= (std::size_t{1} << 20) ? std::to_string(bytes >> 20) + " MiB"
                                         : std::to_string(bytes >> 10) + " KiB";
}

/// What read() answers for the element entry describes.
inline double expectedRead(const ElementSpec& entry) {
  switch (entry.kind) {
    case Kind::LO:
      return static_cast<double>(entry.text.size());
    case Kind::US:
      return entry.number;
    case Kind::FD:
      return entry.real;
  }
  return 0.0;
}

/// entry with the value that replace() writes instead of the original.
inline ElementSpec replacementOf(const ElementSpec& entry) {
  ElementSpec changed = entry;
  changed.text = entry.replacement;
  changed.number = static_cast<std::uint16_t>(entry.number ^ 1U);
  changed.real = entry.real + 0.25;
  return changed;
}

template <class Impl>
auto buildFlat(const FlatData& data, bool shuffled) {
  auto set = Impl::empty();
  if (shuffled) {
    for (std::size_t index : data.shuffled) Impl::insert(set, data.ascending[index]);
  } else {
    for (const ElementSpec& entry : data.ascending) Impl::insert(set, entry);
  }
  return set;
}

/// Stops the run when the implementation does not hold what it was given: a benchmark of
/// wrong work is worse than none.
template <class Impl, class Set>
bool holdsFlatData(benchmark::State& state, const Set& set, const FlatData& data) {
  for (const ElementSpec* entry : {&data.ascending.front(), &data.ascending.back()}) {
    if (Impl::read(set, *entry) != expectedRead(*entry)) {
      state.SkipWithError("the data set does not hold the values it was built with");
      return false;
    }
  }
  return true;
}

/// Whether value, read from the last frame, is the one it was built with.
inline bool isLastFrameValue(benchmark::State& state, double value) {
  const std::size_t last = sizes().frames - 1;
  if (value == frameReal(last, FrameLayout::kReadSequence, FrameLayout::kReadElement)) return true;
  state.SkipWithError("the frame tree does not hold the values it was built with");
  return false;
}

template <class Impl, class Tree>
bool holdsFrames(benchmark::State& state, const Tree& tree) {
  return isLastFrameValue(state, Impl::frameValue(tree, sizes().frames - 1));
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
    // Each run reads its own copy, made untimed, which a reader may take over.
    Bytes input = stored;
    decltype(Impl::load(std::move(input))) back;
    timed(state, [&] { back = Impl::load(std::move(input)); });
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

// Workload 7: person names from Latin-1 to UTF-8 and back, one converted string per name.
template <class Impl, bool kToUtf8>
void namesWorkload(benchmark::State& state) {
  const std::vector<std::string>& from = kToUtf8 ? latin1Names() : utf8Names();
  const std::vector<std::string>& expected = kToUtf8 ? utf8Names() : latin1Names();
  std::vector<std::string> converted(from.size());
  for (auto _ : state) {
    timed(state, [&] {
      for (std::size_t i = 0; i < from.size(); ++i) {
        if constexpr (kToUtf8) {
          Impl::toUtf8(from[i], converted[i]);
        } else {
          Impl::toLatin1(from[i], converted[i]);
        }
      }
    });
  }
  if (converted != expected) state.SkipWithError("the names did not convert as expected");
  std::size_t bytes = 0;
  for (const std::string& name : from) bytes += name.size();
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

// Workload 7: the text dump of the frame tree into a stream that drops it.
template <class Impl>
void dumpWorkload(benchmark::State& state) {
  const auto tree = Impl::buildFrames(sizes().frames);
  const auto printable = Impl::printable(tree);
  NullBuffer discard;
  std::ostream out(&discard);
  for (auto _ : state) {
    timed(state, [&] { Impl::print(printable, out); });
  }
  if (discard.count() == 0) state.SkipWithError("the dump printed nothing");
  state.SetBytesProcessed(static_cast<std::int64_t>(discard.count()));
}

// Workload 7: DICOM files of the frame tree and of the multi-frame image.
template <class Impl>
auto framesForFile() {
  auto tree = Impl::buildFrames(sizes().frames);
  for (const TextElement& text : framesFileTexts()) Impl::putText(tree, text);
  return tree;
}

template <class Impl>
auto buildImage() {
  auto image = Impl::empty();
  for (const TextElement& text : ImageLayout::texts()) Impl::putText(image, text);
  for (const NumberElement& number : ImageLayout::numbers()) Impl::putNumber(image, number);
  Impl::putPixels(image, ImageLayout::pixels());
  return image;
}

template <class Impl, class Loaded>
bool holdsFramesFile(benchmark::State& state, const Loaded& loaded) {
  return isLastFrameValue(state, Impl::loadedFrameValue(loaded, sizes().frames - 1));
}

template <class Impl, class Loaded>
bool holdsImage(benchmark::State& state, const Loaded& loaded) {
  const std::vector<unsigned char>& pixels = ImageLayout::pixels();
  const auto [data, size] = Impl::loadedPixels(loaded);
  if (size != pixels.size() || std::memcmp(data, pixels.data(), size) != 0) {
    state.SkipWithError("the image's pixels did not come back from its file");
    return false;
  }
  return true;
}

/// Writes the file of set to a scratch file on every iteration; the file goes untimed.
template <class Impl, class Set>
void writeFileWorkload(benchmark::State& state, Set set, const std::string& name) {
  const auto file = Impl::toFile(std::move(set));
  const std::string path = scratchPath(name);
  std::uintmax_t bytes = 0;
  for (auto _ : state) {
    timed(state, [&] { Impl::writeFile(file, path); });
    bytes = std::filesystem::file_size(path);
    std::filesystem::remove(path);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

/// Reads the file the implementation wrote of set on every iteration.
template <class Impl, class Set, class Check>
void readFileWorkload(benchmark::State& state, Set set, const std::string& name, Check holds) {
  const std::string path = scratchPath(name);
  Impl::writeFile(Impl::toFile(std::move(set)), path);
  const std::uintmax_t bytes = std::filesystem::file_size(path);
  for (auto _ : state) {
    decltype(Impl::readFile(path)) back;
    timed(state, [&] { back = Impl::readFile(path); });
    if (!holds(state, back)) break;
  }
  std::filesystem::remove(path);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

// Workload 7: unique identifiers, kept as strings; the table also shows them per
// millisecond against the ceiling of 100 that Quiltra's generator keeps to.
template <class Impl>
void uidWorkload(benchmark::State& state) {
  if (!Impl::uidsReady()) {
    state.SkipWithError("the generator cannot be initialised on this machine");
    return;
  }
  std::vector<std::string> made;
  made.reserve(sizes().identifiers);
  for (auto _ : state) {
    made.clear();
    timed(state, [&] {
      for (std::size_t i = 0; i < sizes().identifiers; ++i) made.push_back(Impl::uid());
    });
  }
  std::sort(made.begin(), made.end());
  if (std::adjacent_find(made.begin(), made.end()) != made.end()) {
    state.SkipWithError("an identifier came twice");
  }
  state.counters["per_ms_of"] = static_cast<double>(sizes().identifiers);
  state.counters["per_ms_ceiling"] = 100;
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

/// The workloads of every implementation, in table order (Quiltra's own join them in
/// QuiltraWorkloads.cpp).
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
  if constexpr (Impl::kConvertsNames) {
    const std::string names = std::to_string(sizes().names) + " names: ";
    add(names + "Latin-1 to UTF-8", [](auto& s) { namesWorkload<Impl, true>(s); });
    add(names + "UTF-8 to Latin-1", [](auto& s) { namesWorkload<Impl, false>(s); });
  }
  add("frames: dump", [](auto& s) { dumpWorkload<Impl>(s); });
  if constexpr (Impl::kWritesFiles) {
    add("frames: write file",
        [](auto& s) { writeFileWorkload<Impl>(s, framesForFile<Impl>(), "frames.dcm"); });
    add("frames: read file", [](auto& s) {
      readFileWorkload<Impl>(
          s, framesForFile<Impl>(), "frames.dcm",
          [](auto& st, const auto& back) { return holdsFramesFile<Impl>(st, back); });
    });
    const std::string image = "image " + sizeName(ImageLayout::bytes()) + ": ";
    add(image + "write file",
        [](auto& s) { writeFileWorkload<Impl>(s, buildImage<Impl>(), "image.dcm"); });
    add(image + "read file", [](auto& s) {
      readFileWorkload<Impl>(s, buildImage<Impl>(), "image.dcm",
                             [](auto& st, const auto& back) { return holdsImage<Impl>(st, back); });
    });
  }
  add(std::to_string(sizes().identifiers) + " UIDs", [](auto& s) { uidWorkload<Impl>(s); });
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
