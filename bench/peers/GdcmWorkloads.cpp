// GDCM's side of the comparison, through gdcm::DataSet as its examples use it. Values are
// set and read as the raw little-endian bytes of their ByteValue: gdcm::Element's typed
// conversions go through a string stream per value, so the byte route is the faster one
// and the harder one to beat. Sequences and items have undefined lengths, GDCM's default.
#include "Workloads.h"

#include <cstring>
#include <gdcmByteValue.h>
#include <gdcmDataElement.h>
#include <gdcmDataSet.h>
#include <gdcmExplicitDataElement.h>
#include <gdcmItem.h>
#include <gdcmSequenceOfItems.h>
#include <gdcmSwapper.h>
#include <memory>
#include <sstream>
#include <string>

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

gdcm::DataElement makeElement(const ElementSpec& spec) {
  return makeElement(spec.group, spec.element, spec.kind, spec.text, spec.number, spec.real);
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
      const NestedElement& spec = sequence.elements[e];
      nestedItem.Insert(makeElement(spec.group, spec.element, spec.kind, frameText(frame),
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

struct GdcmImpl {
  static DataSetPtr empty() { return std::make_unique<gdcm::DataSet>(); }

  static void insert(const DataSetPtr& set, const ElementSpec& spec) {
    set->Insert(makeElement(spec));
  }

  static double read(const DataSetPtr& set, const ElementSpec& spec) {
    const gdcm::DataElement& element = set->GetDataElement(gdcm::Tag(spec.group, spec.element));
    switch (spec.kind) {
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

  static void remove(const DataSetPtr& set, const ElementSpec& spec) {
    set->Remove(gdcm::Tag(spec.group, spec.element));
  }

  static void replace(const DataSetPtr& set, const ElementSpec& spec) {
    set->Replace(makeElement(spec));
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
    return bytesAs<double>(readItem(*tree, frame).GetDataElement(kReadElementTag));
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
};

}  // namespace

Workloads gdcmWorkloads() {
  return sharedWorkloads<GdcmImpl>("GDCM");
}

}  // namespace QuiltraPeers
