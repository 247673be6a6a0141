// GDCM's side of the comparison, through gdcm::DataSet as its examples use it. Values are
// set and read as the raw little-endian bytes of their ByteValue: gdcm::Element's typed
// conversions go through a string stream per value, so the byte route is the faster one
// and the harder one to beat. Sequences and items have undefined lengths, GDCM's default.
// Files go through gdcm::Writer and gdcm::Reader, the dump through gdcm::Printer,
// identifiers through gdcm::UIDGenerator. GDCM has no character set converter.
#include "Workloads.h"

#include <cstring>
#include <gdcmByteValue.h>
#include <gdcmDataElement.h>
#include <gdcmDataSet.h>
#include <gdcmExplicitDataElement.h>
#include <gdcmFile.h>
#include <gdcmItem.h>
#include <gdcmPrinter.h>
#include <gdcmReader.h>
#include <gdcmSequenceOfItems.h>
#include <gdcmSwapper.h>
#include <gdcmUIDGenerator.h>
#include <gdcmWriter.h>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

namespace QuiltraPeers {
namespace {

using DataSetPtr = std::unique_ptr<gdcm::DataSet>;

const gdcm::Tag kFramesTag(FrameLayout::kGroup, FrameLayout::kElement);
const NestedSequence& kReadSequence = FrameLayout::nested[FrameLayout::kReadSequence];
const NestedElement& kReadElement = kReadSequence.elements[FrameLayout::kReadElement];
const gdcm::Tag kReadSequenceTag(kReadSequence.group, kReadSequence.element);
const gdcm::Tag kReadElementTag(kReadElement.group, kReadElement.element);

gdcm::DataElement makeElement(std::uint16_t group, std::uint16_t element, Kind kind,
                              const std::string& text, std::uint16_t number, double real) {
  gdcm::DataElement made{gdcm::Tag(group, element)};
  switch (kind) {
    case Kind::LO:
      made.SetVR(gdcm::VR::LO);
      made.SetByteValue(text.data(), static_cast<std::uint32_t>(text.size()));
      break;
    case Kind::US:
      made.SetVR(gdcm::VR::US);
      made.SetByteValue(reinterpret_cast<const char*>(&number), sizeof number);
      break;
    case Kind::FD:
      made.SetVR(gdcm::VR::FD);
      made.SetByteValue(reinterpret_cast<const char*>(&real), sizeof real);
      break;
  }
  return made;
}

gdcm::DataElement makeElement(const ElementSpec& entry) {
  return makeElement(entry.group, entry.element, entry.kind, entry.text, entry.number, entry.real);
}

gdcm::DataElement sequenceElement(const gdcm::Tag& tag, gdcm::SequenceOfItems& items) {
  gdcm::DataElement made(tag);
  made.SetVR(gdcm::VR::SQ);
  made.SetValue(items);
  made.SetVLToUndefined();
  return made;
}

template <class T>
T bytesAs(const gdcm::DataElement& element) {
  T value{};
  std::memcpy(&value, element.GetByteValue()->GetPointer(), sizeof value);
  return value;
}

void fillFrameItem(gdcm::DataSet& item, std::size_t frame) {
  for (std::size_t s = 0; s < 3; ++s) {
    const NestedSequence& sequence = FrameLayout::nested[s];
    gdcm::SmartPointer<gdcm::SequenceOfItems> nested = new gdcm::SequenceOfItems;
    gdcm::DataSet& nestedItem = nested->AddNewUndefinedLengthItem().GetNestedDataSet();
    for (std::size_t e = 0; e < 5; ++e) {
      const NestedElement& entry = sequence.elements[e];
      nestedItem.Insert(makeElement(entry.group, entry.element, entry.kind, frameText(frame),
                                    frameNumber(frame, s, e), frameReal(frame, s, e)));
    }
    item.Insert(sequenceElement(gdcm::Tag(sequence.group, sequence.element), *nested));
  }
}

// GDCM copies share their values, so an independent copy is made element by element.
void deepCopyInto(const gdcm::DataSet& source, gdcm::DataSet& target) {
  for (const gdcm::DataElement& element : source.GetDES()) {
    if (const gdcm::ByteValue* bytes = element.GetByteValue()) {
      gdcm::DataElement made(element.GetTag(), element.GetVL(), element.GetVR());
      made.SetByteValue(bytes->GetPointer(), bytes->GetLength());
      target.Insert(made);
      continue;
    }
    gdcm::SmartPointer<gdcm::SequenceOfItems> items = element.GetValueAsSQ();
    gdcm::SmartPointer<gdcm::SequenceOfItems> copied = new gdcm::SequenceOfItems;
    for (std::size_t i = 1; i <= items->GetNumberOfItems(); ++i) {
      deepCopyInto(items->GetItem(i).GetNestedDataSet(),
                   copied->AddNewUndefinedLengthItem().GetNestedDataSet());
    }
    target.Insert(sequenceElement(element.GetTag(), *copied));
  }
}

// The item of the read sequence inside frame's item (GDCM counts items from 1).
const gdcm::DataSet& readItem(const gdcm::DataSet& tree, std::size_t frame) {
  const gdcm::DataSet& item =
      tree.GetDataElement(kFramesTag).GetValueAsSQ()->GetItem(frame + 1).GetNestedDataSet();
  return item.GetDataElement(kReadSequenceTag).GetValueAsSQ()->GetItem(1).GetNestedDataSet();
}

// Texts padded to an even length as a file holds them: UI with a zero byte, others a blank.
gdcm::DataElement textElement(const TextElement& text) {
  std::string padded = text.value;
  if (padded.size() % 2 != 0) padded += text.kind == TextKind::UI ? '\0' : ' ';
  gdcm::DataElement made{gdcm::Tag(text.group, text.element)};
  switch (text.kind) {
    case TextKind::UI:
      made.SetVR(gdcm::VR::UI);
      break;
    case TextKind::CS:
      made.SetVR(gdcm::VR::CS);
      break;
    case TextKind::IS:
      made.SetVR(gdcm::VR::IS);
      break;
  }
  made.SetByteValue(padded.data(), static_cast<std::uint32_t>(padded.size()));
  return made;
}

const gdcm::Tag kPixelDataTag(ImageLayout::kPixelGroup, ImageLayout::kPixelElement);

// The reader owns the file it read.
using ReaderPtr = std::unique_ptr<gdcm::Reader>;
using FilePtr = gdcm::SmartPointer<gdcm::File>;

double frameValueIn(const gdcm::DataSet& tree, std::size_t frame) {
  return bytesAs<double>(readItem(tree, frame).GetDataElement(kReadElementTag));
}

struct GdcmImpl {
  static constexpr bool kConvertsNames = false;
  static constexpr bool kWritesFiles = true;

  static DataSetPtr empty() { return std::make_unique<gdcm::DataSet>(); }

  static void insert(const DataSetPtr& set, const ElementSpec& entry) {
    set->Insert(makeElement(entry));
  }

  static double read(const DataSetPtr& set, const ElementSpec& entry) {
    const gdcm::DataElement& element = set->GetDataElement(gdcm::Tag(entry.group, entry.element));
    switch (entry.kind) {
      case Kind::LO: {
        const gdcm::ByteValue* bytes = element.GetByteValue();
        return static_cast<double>(std::string(bytes->GetPointer(), bytes->GetLength()).size());
      }
      case Kind::US:
        return bytesAs<std::uint16_t>(element);
      case Kind::FD:
        return bytesAs<double>(element);
    }
    return 0.0;
  }

  static void remove(const DataSetPtr& set, const ElementSpec& entry) {
    set->Remove(gdcm::Tag(entry.group, entry.element));
  }

  static void replace(const DataSetPtr& set, const ElementSpec& entry) {
    set->Replace(makeElement(entry));
  }

  static DataSetPtr buildFrames(std::size_t count) {
    auto tree = empty();
    gdcm::SmartPointer<gdcm::SequenceOfItems> frames = new gdcm::SequenceOfItems;
    for (std::size_t f = 0; f < count; ++f) {
      fillFrameItem(frames->AddNewUndefinedLengthItem().GetNestedDataSet(), f);
    }
    tree->Insert(sequenceElement(kFramesTag, *frames));
    return tree;
  }

  static DataSetPtr deepCopy(const DataSetPtr& tree) {
    auto copy = empty();
    deepCopyInto(*tree, *copy);
    return copy;
  }

  static void changeFrameValue(const DataSetPtr& tree, std::size_t frame, double value) {
    gdcm::DataSet& item =
        tree->GetDataElement(kFramesTag).GetValueAsSQ()->GetItem(frame + 1).GetNestedDataSet();
    gdcm::DataSet& nested =
        item.GetDataElement(kReadSequenceTag).GetValueAsSQ()->GetItem(1).GetNestedDataSet();
    nested.Replace(makeElement(kReadElement.group, kReadElement.element, Kind::FD, "", 0, value));
  }

  static double frameValue(const DataSetPtr& tree, std::size_t frame) {
    return frameValueIn(*tree, frame);
  }

  static std::string store(const DataSetPtr& tree) {
    std::ostringstream out;
    tree->Write<gdcm::ExplicitDataElement, gdcm::SwapperNoOp>(out);
    return out.str();
  }

  static DataSetPtr load(const std::string& stored) {
    std::istringstream in(stored);
    auto tree = empty();
    tree->Read<gdcm::ExplicitDataElement, gdcm::SwapperNoOp>(in);
    return tree;
  }

  // A file of the data set; its copy shares the values. The writer fills the meta group.
  static FilePtr toFile(const DataSetPtr& set) {
    FilePtr file = new gdcm::File;
    file->SetDataSet(*set);
    file->GetHeader().SetDataSetTransferSyntax(gdcm::TransferSyntax::ExplicitVRLittleEndian);
    return file;
  }

  static FilePtr printable(const DataSetPtr& tree) { return toFile(tree); }

  static void print(const FilePtr& file, std::ostream& out) {
    gdcm::Printer printer;
    printer.SetFile(*file);
    printer.Print(out);
  }

  static void putText(const DataSetPtr& set, const TextElement& text) {
    set->Insert(textElement(text));
  }

  static void putNumber(const DataSetPtr& set, const NumberElement& number) {
    set->Insert(makeElement(number.group, number.element, Kind::US, "", number.value, 0.0));
  }

  static void putPixels(const DataSetPtr& set, const std::vector<unsigned char>& pixels) {
    gdcm::DataElement made(kPixelDataTag);
    made.SetVR(gdcm::VR::OW);
    made.SetByteValue(reinterpret_cast<const char*>(pixels.data()),
                      static_cast<std::uint32_t>(pixels.size()));
    set->Insert(made);
  }

  static void writeFile(const FilePtr& file, const std::string& path) {
    gdcm::Writer writer;
    writer.SetFileName(path.c_str());
    writer.SetFile(*file);
    if (!writer.Write()) throw std::runtime_error("gdcm::Writer could not write " + path);
  }

  static ReaderPtr readFile(const std::string& path) {
    auto reader = std::make_unique<gdcm::Reader>();
    reader->SetFileName(path.c_str());
    if (!reader->Read()) throw std::runtime_error("gdcm::Reader could not read " + path);
    return reader;
  }

  static double loadedFrameValue(const ReaderPtr& reader, std::size_t frame) {
    return frameValueIn(reader->GetFile().GetDataSet(), frame);
  }

  static std::pair<const unsigned char*, std::size_t> loadedPixels(const ReaderPtr& reader) {
    const gdcm::ByteValue* bytes =
        reader->GetFile().GetDataSet().GetDataElement(kPixelDataTag).GetByteValue();
    if (bytes == nullptr) return {nullptr, 0};
    return {reinterpret_cast<const unsigned char*>(bytes->GetPointer()), bytes->GetLength()};
  }

  static bool uidsReady() { return true; }

  static std::string uid() {
    static gdcm::UIDGenerator generator;
    return generator.Generate();
  }
};

}  // namespace

Workloads gdcmWorkloads() {
  return sharedWorkloads<GdcmImpl>("GDCM");
}

}  // namespace QuiltraPeers
