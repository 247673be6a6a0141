// DCMTK's side of the comparison, through dcmdata's DcmDataset and DcmItem with the
// putAndInsert and findAndGet calls its documentation shows. Every tag is made with its
// representation, so no element costs a dictionary search when it is built. Storage is
// explicit VR little endian with explicit lengths, DCMTK's default for files. Files go
// through DcmFileFormat's saveFile and loadFile (undefined lengths for sequences, its
// default), names through DcmSpecificCharacterSet, identifiers through
// dcmGenerateUniqueIdentifier, the dump through DcmDataset::print.
#include "Workloads.h"

#include <cstring>
#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcdatset.h>
#include <dcmtk/dcmdata/dcdict.h>
#include <dcmtk/dcmdata/dcfilefo.h>
#include <dcmtk/dcmdata/dcistrmb.h>
#include <dcmtk/dcmdata/dcitem.h>
#include <dcmtk/dcmdata/dcostrmb.h>
#include <dcmtk/dcmdata/dcsequen.h>
#include <dcmtk/dcmdata/dcspchrs.h>
#include <dcmtk/dcmdata/dcuid.h>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace QuiltraPeers {
namespace {

using DataSetPtr = std::unique_ptr<DcmDataset>;

const DcmTagKey kFramesKey(FrameLayout::kGroup, FrameLayout::kElement);
const NestedSequence& kReadSequence = FrameLayout::nested[FrameLayout::kReadSequence];
const NestedElement& kReadElement = kReadSequence.elements[FrameLayout::kReadElement];
const DcmTagKey kReadSequenceKey(kReadSequence.group, kReadSequence.element);

void check(const OFCondition& status) {
  if (status.bad()) throw std::runtime_error(status.text());
}

void putValue(DcmItem& item, std::uint16_t group, std::uint16_t element, Kind kind,
              const std::string& text, std::uint16_t number, double real) {
  switch (kind) {
    case Kind::LO:
      check(item.putAndInsertString(DcmTag(group, element, EVR_LO), text.data(),
                                    static_cast<Uint32>(text.size())));
      break;
    case Kind::US:
      check(item.putAndInsertUint16(DcmTag(group, element, EVR_US), number));
      break;
    case Kind::FD:
      check(item.putAndInsertFloat64(DcmTag(group, element, EVR_FD), real));
      break;
  }
}

DcmItem* frameItem(std::size_t frame) {
  auto* item = new DcmItem();
  for (std::size_t s = 0; s < 3; ++s) {
    const NestedSequence& sequence = FrameLayout::nested[s];
    auto* nestedItem = new DcmItem();
    for (std::size_t e = 0; e < 5; ++e) {
      const NestedElement& entry = sequence.elements[e];
      putValue(*nestedItem, entry.group, entry.element, entry.kind, frameText(frame),
               frameNumber(frame, s, e), frameReal(frame, s, e));
    }
    auto* nested = new DcmSequenceOfItems(DcmTag(sequence.group, sequence.element, EVR_SQ));
    check(nested->append(nestedItem));
    check(item->insert(nested));
  }
  return item;
}

// The item of the read sequence inside frame's item.
DcmItem* readItem(DcmDataset& tree, std::size_t frame) {
  DcmItem* item = nullptr;
  check(tree.findAndGetSequenceItem(kFramesKey, item, static_cast<signed long>(frame)));
  DcmItem* nested = nullptr;
  check(item->findAndGetSequenceItem(kReadSequenceKey, nested, 0));
  return nested;
}

DcmEVR evrOf(TextKind kind) {
  switch (kind) {
    case TextKind::UI:
      return EVR_UI;
    case TextKind::CS:
      return EVR_CS;
    case TextKind::IS:
      return EVR_IS;
  }
  return EVR_UN;
}

/// The converters of both directions, selected once.
struct NameConverters {
  DcmSpecificCharacterSet toUnicode;
  DcmSpecificCharacterSet toLatin;

  static NameConverters& get() {
    static NameConverters converters;
    return converters;
  }

 private:
  NameConverters() {
    check(toUnicode.selectCharacterSet("ISO_IR 100", "ISO_IR 192"));
    check(toLatin.selectCharacterSet("ISO_IR 192", "ISO_IR 100"));
  }
};

using FilePtr = std::unique_ptr<DcmFileFormat>;

const DcmTagKey kPixelDataKey(ImageLayout::kPixelGroup, ImageLayout::kPixelElement);

double frameValueIn(DcmDataset& tree, std::size_t frame) {
  Float64 real = 0.0;
  check(readItem(tree, frame)
            ->findAndGetFloat64(DcmTagKey(kReadElement.group, kReadElement.element), real));
  return real;
}

struct DcmtkImpl {
  static constexpr bool kConvertsNames = true;
  static constexpr bool kWritesFiles = true;

  static DataSetPtr empty() { return std::make_unique<DcmDataset>(); }

  static void insert(const DataSetPtr& set, const ElementSpec& entry) {
    putValue(*set, entry.group, entry.element, entry.kind, entry.text, entry.number, entry.real);
  }

  static double read(const DataSetPtr& set, const ElementSpec& entry) {
    const DcmTagKey key(entry.group, entry.element);
    switch (entry.kind) {
      case Kind::LO: {
        OFString text;
        check(set->findAndGetOFString(key, text));
        return static_cast<double>(text.size());
      }
      case Kind::US: {
        Uint16 number = 0;
        check(set->findAndGetUint16(key, number));
        return number;
      }
      case Kind::FD: {
        Float64 real = 0.0;
        check(set->findAndGetFloat64(key, real));
        return real;
      }
    }
    return 0.0;
  }

  static void remove(const DataSetPtr& set, const ElementSpec& entry) {
    check(set->findAndDeleteElement(DcmTagKey(entry.group, entry.element)));
  }

  static void replace(const DataSetPtr& set, const ElementSpec& entry) { insert(set, entry); }

  static DataSetPtr buildFrames(std::size_t count) {
    auto tree = empty();
    auto* frames =
        new DcmSequenceOfItems(DcmTag(FrameLayout::kGroup, FrameLayout::kElement, EVR_SQ));
    for (std::size_t f = 0; f < count; ++f) check(frames->append(frameItem(f)));
    check(tree->insert(frames));
    return tree;
  }

  static DataSetPtr deepCopy(const DataSetPtr& tree) { return std::make_unique<DcmDataset>(*tree); }

  static void changeFrameValue(const DataSetPtr& tree, std::size_t frame, double value) {
    putValue(*readItem(*tree, frame), kReadElement.group, kReadElement.element, Kind::FD, "", 0,
             value);
  }

  static double frameValue(const DataSetPtr& tree, std::size_t frame) {
    return frameValueIn(*tree, frame);
  }

  // Written through a buffer stream, chunk by chunk, as DCMTK's network code does.
  static std::vector<char> store(const DataSetPtr& tree) {
    std::vector<char> stored;
    std::vector<char> chunk(std::size_t{1} << 20);
    DcmOutputBufferStream stream(chunk.data(), static_cast<offile_off_t>(chunk.size()));
    tree->transferInit();
    OFCondition status;
    do {
      status = tree->write(stream, EXS_LittleEndianExplicit, EET_ExplicitLength, nullptr);
      void* data = nullptr;
      offile_off_t length = 0;
      stream.flushBuffer(data, length);
      stored.insert(stored.end(), static_cast<char*>(data), static_cast<char*>(data) + length);
    } while (status == EC_StreamNotifyClient);
    tree->transferEnd();
    check(status);
    return stored;
  }

  static DataSetPtr load(const std::vector<char>& stored) {
    DcmInputBufferStream stream;
    stream.setBuffer(stored.data(), static_cast<offile_off_t>(stored.size()));
    stream.setEos();
    auto tree = empty();
    tree->transferInit();
    const OFCondition status = tree->read(stream, EXS_LittleEndianExplicit);
    tree->transferEnd();
    check(status);
    return tree;
  }

  static void toUtf8(const std::string& latin1, std::string& out) {
    check(NameConverters::get().toUnicode.convertString(latin1.data(), latin1.size(), out));
  }

  static void toLatin1(const std::string& utf8, std::string& out) {
    check(NameConverters::get().toLatin.convertString(utf8.data(), utf8.size(), out));
  }

  static DcmDataset* printable(const DataSetPtr& tree) { return tree.get(); }

  static void print(DcmDataset* tree, std::ostream& out) { tree->print(out); }

  static void putText(const DataSetPtr& set, const TextElement& text) {
    check(set->putAndInsertString(DcmTag(text.group, text.element, evrOf(text.kind)),
                                  text.value.data(), static_cast<Uint32>(text.value.size())));
  }

  static void putNumber(const DataSetPtr& set, const NumberElement& number) {
    check(set->putAndInsertUint16(DcmTag(number.group, number.element, EVR_US), number.value));
  }

  static void putPixels(const DataSetPtr& set, const std::vector<unsigned char>& pixels) {
    std::vector<Uint16> words(pixels.size() / 2);
    std::memcpy(words.data(), pixels.data(), words.size() * 2);
    check(set->putAndInsertUint16Array(DcmTag(kPixelDataKey, EVR_OW), words.data(),
                                       static_cast<unsigned long>(words.size())));
  }

  // The file format takes the data set over without copying it.
  static FilePtr toFile(DataSetPtr set) {
    return std::make_unique<DcmFileFormat>(set.release(), OFFalse);
  }

  static void writeFile(const FilePtr& file, const std::string& path) {
    check(file->saveFile(path.c_str(), EXS_LittleEndianExplicit));
  }

  // Every value is read at once: by default, loadFile leaves values over 4 KiB in the file
  // until they are first used.
  static FilePtr readFile(const std::string& path) {
    auto file = std::make_unique<DcmFileFormat>();
    check(file->loadFile(path.c_str(), EXS_Unknown, EGL_noChange,
                         std::numeric_limits<Uint32>::max()));
    return file;
  }

  static double loadedFrameValue(const FilePtr& file, std::size_t frame) {
    return frameValueIn(*file->getDataset(), frame);
  }

  static std::pair<const unsigned char*, std::size_t> loadedPixels(const FilePtr& file) {
    const Uint16* pixels = nullptr;
    unsigned long count = 0;
    check(file->getDataset()->findAndGetUint16Array(kPixelDataKey, pixels, &count));
    return {reinterpret_cast<const unsigned char*>(pixels), count * 2};
  }

  static bool uidsReady() { return true; }

  static std::string uid() {
    char made[100];
    return dcmGenerateUniqueIdentifier(made);
  }
};

}  // namespace

Workloads dcmtkWorkloads() {
  // The data dictionary is loaded on first use; load it now, before anything is timed.
  if (!dcmDataDict.isDictionaryLoaded()) throw std::runtime_error("DCMTK has no data dictionary");
  Workloads list = sharedWorkloads<DcmtkImpl>("DCMTK");
  // DCMTK keeps an item's elements in a linked list: every search walks it, and so does
  // every insertion short of the end. These workloads grow with the square of the size; at
  // the largest size each run takes seconds to many minutes.
  const std::string n = std::to_string(sizes().elementCounts.back());
  for (Workload& workload : list) {
    if (workload.name == "remove 1% of " + n || workload.name == "replace 10% of " + n) {
      workload.runOnce = true;
    }
    if (workload.name == "build " + n + " shuffled" || workload.name == "lookup+read in " + n) {
      workload.runOnce = workload.takesMinutes = true;
    }
  }
  return list;
}

}  // namespace QuiltraPeers
