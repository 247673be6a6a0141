// Quiltra's side of the comparison: the shared workloads through Quiltra's public
// interface (DICOM files through the file module's codec, linked directly), and the
// workloads only Quiltra has (layers, the structured multi-frame grid, the text stream
// form, one large value against memcpy).
#include "Workloads.h"

#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/quiltra.h>

#ifdef QUILTRA_BENCH_WITH_DICOMFILE
#include <DicomFile.h>
#endif

namespace QuiltraPeers {
namespace {

using Quiltra::Tag;
using Quiltra::TagId;
using Quiltra::TagInfo;
using Quiltra::Tree;

Quiltra::Vr vrOf(Kind kind) {
  switch (kind) {
    case Kind::LO:
      return Quiltra::LO;
    case Kind::US:
      return Quiltra::US;
    case Kind::FD:
      return Quiltra::FD;
  }
  return Quiltra::UN;
}

const TagId kFramesId(FrameLayout::kGroup, FrameLayout::kElement);
const NestedSequence& kReadSequence = FrameLayout::nested[FrameLayout::kReadSequence];
const NestedElement& kReadElement = kReadSequence.elements[FrameLayout::kReadElement];
const TagId kReadSequenceId(kReadSequence.group, kReadSequence.element);
const TagId kReadElementId(kReadElement.group, kReadElement.element);

std::shared_ptr<Tag> sequenceTag(std::uint16_t group, std::uint16_t element, const char* keyword) {
  return std::make_shared<Tag>(TagInfo(TagId(group, element), keyword, Quiltra::SQ, {1, 1}));
}

std::shared_ptr<Tree> frameItem(std::size_t frame) {
  auto item = std::make_shared<Tree>();
  for (std::size_t s = 0; s < 3; ++s) {
    const NestedSequence& sequence = FrameLayout::nested[s];
    auto nestedItem = std::make_shared<Tree>();
    for (std::size_t e = 0; e < 5; ++e) {
      const NestedElement& entry = sequence.elements[e];
      auto tag = std::make_shared<Tag>(
          TagInfo(TagId(entry.group, entry.element), entry.keyword, vrOf(entry.kind), {1, 1}));
      switch (entry.kind) {
        case Kind::LO:
          tag->addValue(frameText(frame));
          break;
        case Kind::US:
          tag->addValue(frameNumber(frame, s, e));
          break;
        case Kind::FD:
          tag->addValue(frameReal(frame, s, e));
          break;
      }
      nestedItem->addTag(tag);
    }
    auto nested = sequenceTag(sequence.group, sequence.element, sequence.keyword);
    nested->addSequenceItem(nestedItem);
    item->addTag(nested);
  }
  return item;
}

Quiltra::Vr vrOf(TextKind kind) {
  switch (kind) {
    case TextKind::UI:
      return Quiltra::UI;
    case TextKind::CS:
      return Quiltra::CS;
    case TextKind::IS:
      return Quiltra::IS;
  }
  return Quiltra::UN;
}

const TagId kPixelDataId(ImageLayout::kPixelGroup, ImageLayout::kPixelElement);

struct QuiltraImpl {
  static constexpr bool kConvertsNames = true;
#ifdef QUILTRA_BENCH_WITH_DICOMFILE
  static constexpr bool kWritesFiles = true;
#else
  static constexpr bool kWritesFiles = false;
#endif

  static std::shared_ptr<Tree> empty() {
    return std::make_shared<Tree>();
  }

  static void insert(const std::shared_ptr<Tree>& tree, const ElementSpec& entry) {
    auto tag = std::make_shared<Tag>(
        TagInfo(TagId(entry.group, entry.element), entry.keyword, vrOf(entry.kind), {1, 1}));
    switch (entry.kind) {
      case Kind::LO:
        tag->addValue(entry.text);
        break;
      case Kind::US:
        tag->addValue(entry.number);
        break;
      case Kind::FD:
        tag->addValue(entry.real);
        break;
    }
    tree->addTag(tag);
  }

  static double read(const std::shared_ptr<Tree>& tree, const ElementSpec& entry) {
    const auto tag = tree->getTag(TagId(entry.group, entry.element));
    switch (entry.kind) {
      case Kind::LO:
        return static_cast<double>(tag->toString(0).size());
      case Kind::US:
        return tag->toUShort(0);
      case Kind::FD:
        return tag->toDouble(0);
    }
    return 0.0;
  }

  static void remove(const std::shared_ptr<Tree>& tree, const ElementSpec& entry) {
    tree->removeTag(TagId(entry.group, entry.element));
  }

  static void replace(const std::shared_ptr<Tree>& tree, const ElementSpec& entry) {
    const auto tag = tree->getTag_rw(TagId(entry.group, entry.element));
    switch (entry.kind) {
      case Kind::LO:
        tag->setValue(entry.text, 0);
        break;
      case Kind::US:
        tag->setValue(entry.number, 0);
        break;
      case Kind::FD:
        tag->setValue(entry.real, 0);
        break;
    }
  }

  static std::shared_ptr<Tree> buildFrames(std::size_t count) {
    auto tree = std::make_shared<Tree>();
    auto frames = sequenceTag(FrameLayout::kGroup, FrameLayout::kElement, FrameLayout::kKeyword);
    for (std::size_t f = 0; f < count; ++f) frames->addSequenceItem(frameItem(f));
    tree->addTag(frames);
    return tree;
  }

  static std::shared_ptr<Tree> deepCopy(const std::shared_ptr<Tree>& tree) {
    return tree->copy();
  }

  static void changeFrameValue(const std::shared_ptr<Tree>& tree, std::size_t frame, double value) {
    const auto& item = tree->getTag_rw(kFramesId)->sequenceItems()[frame];
    const auto& nested = item->getTag_rw(kReadSequenceId)->sequenceItems()[0];
    nested->getTag_rw(kReadElementId)->setValue(value, 0);
  }

  static double frameValue(const std::shared_ptr<Tree>& tree, std::size_t frame) {
    const auto& item = tree->getTag(kFramesId)->sequenceItems()[frame];
    const auto& nested = item->getTag(kReadSequenceId)->sequenceItems()[0];
    return nested->getTag(kReadElementId)->toDouble(0);
  }

  static std::vector<unsigned char> store(const std::shared_ptr<Tree>& tree) {
    Quiltra_Serialization::MemorySink sink;
    tree->serializeX(sink);
    return sink.takeBytes();
  }

  static std::shared_ptr<Tree> load(std::vector<unsigned char>&& stored) {
    Quiltra_Serialization::MemorySource source(std::move(stored));
    auto tree = std::make_shared<Tree>();
    tree->deserializeX(source);
    return tree;
  }

  static void toUtf8(const std::string& latin1, std::string& out) {
    out = Quiltra_Unicode::latin1ToUTF8(latin1);
  }

  static void toLatin1(const std::string& utf8, std::string& out) {
    out = Quiltra_Unicode::UTF8toLatin1(utf8);
  }

  static std::shared_ptr<Quiltra::Message> printable(const std::shared_ptr<Tree>& tree) {
    auto message =
        std::make_shared<Quiltra::Message>("ISO_IR 100", Quiltra::EXPLICIT_LITTLE_ENDIAN);
    message->setTags(tree);
    return message;
  }

  static void print(const std::shared_ptr<Quiltra::Message>& message, std::ostream& out) {
    Quiltra::TextDump(nullptr, out).write(nullptr, message);
  }

  static void putText(const std::shared_ptr<Tree>& tree, const TextElement& text) {
    auto tag = std::make_shared<Tag>(
        TagInfo(TagId(text.group, text.element), text.keyword, vrOf(text.kind), {1, 1}));
    tag->addValue(text.value);
    tree->addTag(tag);
  }

  static void putNumber(const std::shared_ptr<Tree>& tree, const NumberElement& number) {
    auto tag = std::make_shared<Tag>(
        TagInfo(TagId(number.group, number.element), number.keyword, Quiltra::US, {1, 1}));
    tag->addValue(number.value);
    tree->addTag(tag);
  }

  static void putPixels(const std::shared_ptr<Tree>& tree,
                        const std::vector<unsigned char>& pixels) {
    auto tag = std::make_shared<Tag>(TagInfo(kPixelDataId, "PixelData", Quiltra::OW, {1, 1}));
    tag->addValue().setData(static_cast<unsigned int>(pixels.size()), pixels.data());
    tree->addTag(tag);
  }

#ifdef QUILTRA_BENCH_WITH_DICOMFILE
  static std::shared_ptr<Tree> toFile(std::shared_ptr<Tree> tree) {
    return tree;
  }

  static void writeFile(const std::shared_ptr<Tree>& tree, const std::string& path) {
    Quiltra_DicomFile::writeDicomFile(*tree, Quiltra::EXPLICIT_LITTLE_ENDIAN, path, {});
  }

  static std::shared_ptr<Tree> readFile(const std::string& path) {
    return Quiltra_DicomFile::readDicomFile(path, {}).tree;
  }
#endif

  static double loadedFrameValue(const std::shared_ptr<Tree>& tree, std::size_t frame) {
    return frameValue(tree, frame);
  }

  static std::pair<const unsigned char*, std::size_t> loadedPixels(
      const std::shared_ptr<Tree>& tree) {
    const Quiltra::Value& pixels = tree->getTag(kPixelDataId)->getValue(0);
    return {pixels.data(), pixels.size()};
  }

  static bool uidsReady() {
    static const bool ready = [] {
      try {
        Quiltra_Utils::UIDGenerator::initialize("1.2.826.0.1.3680043.9.7433", "2", "3");
        return true;
      } catch (const Quiltra::Exception&) {
        return false;
      }
    }();
    return ready;
  }

  static std::string uid() {
    return Quiltra_Utils::UIDGenerator::uid();
  }
};

/// The same tree in the text stream form.
struct QuiltraTextImpl : QuiltraImpl {
  static std::string store(const std::shared_ptr<Tree>& tree) {
    std::ostringstream out;
    tree->toStream(out);
    return out.str();
  }

  static std::shared_ptr<Tree> load(const std::string& stored) {
    std::istringstream in(stored);
    auto tree = std::make_shared<Tree>();
    tree->fromStream(in);
    return tree;
  }
};

// A child layer that changes the read value of one frame, its parent untouched: the
// per-frame sequence and the nested one become the child's own, sharing every other item,
// and the items on the way become layers over the parent's.
void changeThroughLayer(Tree& child, std::size_t frame, double value) {
  const auto nested = child.layerSequenceItem(
      {{kFramesId, static_cast<unsigned int>(frame)}, {kReadSequenceId, 0}});
  auto changed = nested->getTag(kReadElementId)->copy();
  changed->setValue(value, 0);
  nested->addTag(changed);
}

// Workload 4, the layered way: a child layer and the change; then every frame read
// through the child.
void layeredChangeWorkload(benchmark::State& state) {
  const std::shared_ptr<const Tree> tree = QuiltraImpl::buildFrames(sizes().frames);
  const std::size_t frame = sizes().frames / 2;
  for (auto _ : state) {
    std::shared_ptr<Tree> child;
    timed(state, [&] {
      child = std::make_shared<Tree>(tree);
      changeThroughLayer(*child, frame, -1.0);
    });
  }
}

void readThroughLayerWorkload(benchmark::State& state) {
  const std::shared_ptr<const Tree> tree = QuiltraImpl::buildFrames(sizes().frames);
  auto child = std::make_shared<Tree>(tree);
  changeThroughLayer(*child, sizes().frames / 2, -1.0);
  if (QuiltraImpl::frameValue(child, sizes().frames / 2) != -1.0) {
    state.SkipWithError("the change is not visible through the child");
    return;
  }
  frameAccessLoop<QuiltraImpl>(state, child);
}

// Workload 5, through a structured multi-frame grid: the same frames laid out in a grid
// whose position items share the frame items' nested sequences, each frame's value read
// through the grid's position lookup.
struct FrameGrid {
  std::shared_ptr<const Tree> frames;  // keeps the shared sequences' tree alive
  std::shared_ptr<Tree> tree;
  std::vector<unsigned int> extent;
};

FrameGrid frameGrid() {
  FrameGrid grid;
  const auto frames = QuiltraImpl::buildFrames(sizes().frames);
  grid.frames = frames;
  grid.tree = std::make_shared<Tree>();
  const auto columns = static_cast<unsigned int>(gridColumns());
  grid.extent = {columns, static_cast<unsigned int>(sizes().frames / columns)};
  Quiltra::StructuredMF view(grid.tree, grid.extent);
  const auto& items = frames->getTag(kFramesId)->sequenceItems();
  for (unsigned int f = 0; f < items.size(); ++f) {
    const std::vector<unsigned int> position{f % columns, f / columns};
    view.setGridPositionSpecificTags(items[f], position);
    view.setFrameIndexForGridPosition(f, position);
  }
  return grid;
}

double gridValue(const Quiltra::StructuredMF& view, unsigned int i, unsigned int j) {
  const auto nested = view.tagForGridPosition(kReadSequenceId, i, j, 0);
  return nested->sequenceItems()[0]->getTag(kReadElementId)->toDouble(0);
}

void gridAccessWorkload(benchmark::State& state) {
  const FrameGrid grid = frameGrid();
  const Quiltra::StructuredMF view{std::shared_ptr<const Tree>(grid.tree)};
  const unsigned int columns = grid.extent[0];
  const unsigned int rows = grid.extent[1];
  if (view.getNumberOfFrames() != sizes().frames) {
    state.SkipWithError("the grid does not have as many positions as there are frames");
    return;
  }
  if (!isLastFrameValue(state, gridValue(view, columns - 1, rows - 1))) return;
  double sum = 0.0;
  for (auto _ : state) {
    timed(state, [&] {
      for (unsigned int j = 0; j < rows; ++j) {
        for (unsigned int i = 0; i < columns; ++i) sum += gridValue(view, i, j);
      }
    });
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sizes().frames));
}

// Workload 6: one large value (pixel data) through both storage forms, against memcpy.
std::shared_ptr<Tree> largeValueTree(std::size_t bytes) {
  auto tag =
      std::make_shared<Tag>(TagInfo(TagId(0x7FE0, 0x0010), "PixelData", Quiltra::OB, {1, 1}));
  std::vector<unsigned char> pixels(bytes);
  for (std::size_t i = 0; i < bytes; ++i) pixels[i] = static_cast<unsigned char>(i * 31);
  tag->addValue().setData(static_cast<unsigned int>(bytes), pixels.data());
  auto tree = std::make_shared<Tree>();
  tree->addTag(tag);
  return tree;
}

template <class Impl>
void largeStoreWorkload(benchmark::State& state, std::size_t bytes) {
  storeLoop<Impl>(state, largeValueTree(bytes));
}

template <class Impl>
void largeLoadWorkload(benchmark::State& state, std::size_t bytes) {
  auto whole = [bytes](benchmark::State& s, const std::shared_ptr<Tree>& back) {
    if (back->getTag(TagId(0x7FE0, 0x0010))->getValueSize() == bytes) return true;
    s.SkipWithError("the large value did not come back whole");
    return false;
  };
  loadLoop<Impl>(state, Impl::store(largeValueTree(bytes)), whole);
}

void memcpyWorkload(benchmark::State& state, std::size_t bytes) {
  std::vector<unsigned char> from(bytes, 1);
  std::vector<unsigned char> to(bytes, 2);
  for (auto _ : state) {
    timed(state, [&] { std::memcpy(to.data(), from.data(), bytes); });
    benchmark::DoNotOptimize(to.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

// The floor of any store or read that hands out new memory: the same copy into a buffer
// allocated for it, whose pages the system supplies on first touch.
void newBufferWorkload(benchmark::State& state, std::size_t bytes) {
  std::vector<unsigned char> from(bytes, 1);
  for (auto _ : state) {
    std::unique_ptr<unsigned char[]> to;
    timed(state, [&] {
      to.reset(new unsigned char[bytes]);
      std::memcpy(to.get(), from.data(), bytes);
    });
    benchmark::DoNotOptimize(to.get());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

void insertAfter(Workloads& list, const std::string& name, Workloads more) {
  auto at = list.begin();
  while (at != list.end() && at->name != name) ++at;
  if (at != list.end()) ++at;
  list.insert(at, more.begin(), more.end());
}

}  // namespace

Workloads quiltraWorkloads() {
  const std::string q = "Quiltra";
  Workloads list = sharedWorkloads<QuiltraImpl>(q);
  insertAfter(list, "frames: deep copy+change",
              {{"frames: layered change", q, layeredChangeWorkload},
               {"frames: read all via layer", q, readThroughLayerWorkload}});

  const std::size_t large = sizes().largeValueBytes;
  const std::size_t largeText = sizes().largeTextValueBytes;
  const std::string largeName = "value " + sizeName(large) + ": ";
  const std::string textName = "value " + sizeName(largeText) + ": ";
  auto copy = [large](benchmark::State& s) { memcpyWorkload(s, large); };
  insertAfter(list, "frames: read binary",
              {{"frames: store text", q, [](auto& s) { storeWorkload<QuiltraTextImpl>(s); }},
               {"frames: read text", q, [](auto& s) { loadWorkload<QuiltraTextImpl>(s); }},
               {largeName + "store binary", q,
                [large](auto& s) { largeStoreWorkload<QuiltraImpl>(s, large); }},
               {largeName + "store binary", "memcpy", copy},
               {largeName + "read binary", q,
                [large](auto& s) { largeLoadWorkload<QuiltraImpl>(s, large); }},
               {largeName + "read binary", "memcpy", copy},
               {largeName + "memcpy into a new buffer", "memcpy",
                [large](auto& s) { newBufferWorkload(s, large); }},
               {textName + "store text", q,
                [largeText](auto& s) { largeStoreWorkload<QuiltraTextImpl>(s, largeText); }},
               {textName + "read text", q,
                [largeText](auto& s) { largeLoadWorkload<QuiltraTextImpl>(s, largeText); }}});
  insertAfter(list, "frames: access by index",
              {{"frames: access via grid", q, gridAccessWorkload}});

  // Only Quiltra has these; the table holds them against the peers' own route.
  for (Workload& workload : list) {
    if (workload.name == "frames: layered change") {
      workload.comparedWith = "frames: deep copy+change";
    } else if (workload.name == "frames: read all via layer" ||
               workload.name == "frames: access via grid") {
      workload.comparedWith = "frames: access by index";
    }
  }
  return list;
}

}  // namespace QuiltraPeers
