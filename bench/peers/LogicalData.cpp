#include "LogicalData.h"

#include <cstdlib>
#include <malloc.h>
#include <map>
#include <memory>
#include <random>

namespace QuiltraPeers {
namespace {

// Attribute keywords of the standard dictionary, long and short, so that an implementation
// that stores a name per element pays for names of the length it will meet in practice.
const char* const kKeywords[] = {
    "PatientName",
    "PatientID",
    "PatientBirthDate",
    "PatientSex",
    "PatientAge",
    "PatientWeight",
    "StudyInstanceUID",
    "SeriesInstanceUID",
    "SOPInstanceUID",
    "SOPClassUID",
    "StudyDate",
    "AcquisitionDateTime",
    "AccessionNumber",
    "Modality",
    "Manufacturer",
    "InstitutionName",
    "ReferringPhysicianName",
    "StationName",
    "StudyDescription",
    "SeriesDescription",
    "InstitutionalDepartmentName",
    "PerformingPhysicianName",
    "OperatorsName",
    "ManufacturerModelName",
    "BodyPartExamined",
    "SliceThickness",
    "RepetitionTime",
    "EchoTime",
    "MagneticFieldStrength",
    "SpacingBetweenSlices",
    "DeviceSerialNumber",
    "SoftwareVersions",
    "ProtocolName",
    "TransmitCoilName",
    "PatientPosition",
    "SeriesNumber",
    "InstanceNumber",
    "ImagePositionPatient",
    "ImageOrientationPatient",
    "FrameOfReferenceUID",
    "PositionReferenceIndicator",
    "PhotometricInterpretation",
    "PixelSpacing",
    "RescaleIntercept",
    "RequestedProcedureDescription",
    "PerformedProcedureStepStartDate",
    "ScheduledProcedureStepDescription",
    "ReferencedPerformedProcedureStepSequence",
    "DimensionOrganizationSequence",
    "ContributingEquipmentSequence",
    "AnatomicRegionSequence",
    "ContentQualification",
    "AcquisitionContextSequence",
    "IrradiationEventUID",
    "PresentationLUTShape",
    "LossyImageCompressionRatio",
    "BurnedInAnnotation",
    "RecognizableVisualFeatures",
    "DerivationDescription",
    "SourceImageSequence",
    "PurposeOfReferenceCodeSequence",
    "SharedFunctionalGroupsSequence",
    "ConcatenationFrameOffsetNumber",
    "RealWorldValueMappingSequence",
};
constexpr std::size_t kKeywordCount = sizeof(kKeywords) / sizeof(kKeywords[0]);

constexpr std::size_t kElementsPerGroup = 500;

// Texts of 10 to 30 characters, always an even number, so that no implementation pads.
std::string textFor(const char* prefix, std::size_t index) {
  std::string text = prefix + std::to_string(index);
  const std::size_t length = 10 + 2 * (index % 11);
  if (text.size() % 2 != 0) text += '-';
  while (text.size() < length) text += "AB";
  return text;
}

ElementSpec elementFor(std::size_t index) {
  ElementSpec spec;
  spec.group = static_cast<std::uint16_t>(0x0010 + 2 * (index / kElementsPerGroup));
  spec.element = static_cast<std::uint16_t>(0x1000 + index % kElementsPerGroup);
  const std::size_t slot = index % 5;  // 3 of 5 LO, 1 US, 1 FD
  spec.kind = slot < 3 ? Kind::LO : (slot == 3 ? Kind::US : Kind::FD);
  spec.keyword = keyword(index);
  spec.text = textFor("TEXT ", index);
  spec.replacement = textFor("EDIT ", index);
  spec.number = static_cast<std::uint16_t>(index & 0xFFFF);
  spec.real = static_cast<double>(index) * 0.25 + 0.5;
  return spec;
}

// Fisher-Yates over a fixed-seed engine: the same order on every run and in every
// implementation, whatever the standard library's own shuffle does.
std::vector<std::size_t> permutation(std::size_t count, std::uint32_t seed) {
  std::vector<std::size_t> order(count);
  for (std::size_t i = 0; i < count; ++i) order[i] = i;
  std::mt19937 engine(seed);
  for (std::size_t i = count; i > 1; --i) std::swap(order[i - 1], order[engine() % i]);
  return order;
}

FlatData makeFlatData(std::size_t count) {
  FlatData data;
  data.ascending.reserve(count);
  for (std::size_t i = 0; i < count; ++i) data.ascending.push_back(elementFor(i));
  data.shuffled = permutation(count, 20240613);
  std::mt19937 engine(7);
  data.lookups.reserve(sizes().lookups);
  for (std::size_t i = 0; i < sizes().lookups; ++i) data.lookups.push_back(engine() % count);
  const std::vector<std::size_t> picks = permutation(count, 99);
  const std::size_t removed = count / 100;
  const std::size_t replaced = count / 10;
  data.removed.assign(picks.begin(), picks.begin() + static_cast<std::ptrdiff_t>(removed));
  data.replaced.assign(picks.begin() + static_cast<std::ptrdiff_t>(removed),
                       picks.begin() + static_cast<std::ptrdiff_t>(removed + replaced));
  return data;
}

Sizes makeSizes() {
  const char* choice = std::getenv("QUILTRA_BENCH_SIZE");
  Sizes chosen;
  if (choice != nullptr && std::string(choice) == "tiny") {
    chosen.tiny = true;
    chosen.elementCounts = {100, 1000};
    chosen.lookups = 1000;
    chosen.frames = 200;
    chosen.largeValueBytes = std::size_t{1} << 20;
    chosen.largeTextValueBytes = std::size_t{1} << 18;
    return chosen;
  }
  chosen.elementCounts = {10000, 100000};
  chosen.lookups = 100000;
  chosen.frames = 20000;
  chosen.largeValueBytes = std::size_t{256} << 20;
  chosen.largeTextValueBytes = std::size_t{16} << 20;
  return chosen;
}

}  // namespace

// The frame items follow the functional groups of enhanced multi-frame objects; the value
// kinds are chosen for the mix of the suite (two FD, two US and one LO per item).
const NestedSequence FrameLayout::nested[3] = {
    {0x0020,
     0x9111,
     "FrameContentSequence",
     {{0x0018, 0x9220, Kind::FD, "FrameAcquisitionDuration"},
      {0x0020, 0x9057, Kind::US, "InStackPositionNumber"},
      {0x0020, 0x9156, Kind::US, "FrameAcquisitionNumber"},
      {0x0020, 0x930D, Kind::FD, "TemporalPositionTimeOffset"},
      {0x0020, 0x9453, Kind::LO, "FrameLabel"}}},
    {0x0020,
     0x9113,
     "PlanePositionSequence",
     {{0x0018, 0x0088, Kind::FD, "SpacingBetweenSlices"},
      {0x0020, 0x0013, Kind::US, "InstanceNumber"},
      {0x0020, 0x0032, Kind::FD, "ImagePositionPatient"},
      {0x0020, 0x9056, Kind::LO, "StackID"},
      {0x0020, 0x9128, Kind::US, "TemporalPositionIndex"}}},
    {0x0020,
     0x9116,
     "PlaneOrientationSequence",
     {{0x0018, 0x1312, Kind::LO, "InPlanePhaseEncodingDirection"},
      {0x0020, 0x0037, Kind::FD, "ImageOrientationPatient"},
      {0x0028, 0x0010, Kind::US, "Rows"},
      {0x0028, 0x0011, Kind::US, "Columns"},
      {0x0028, 0x0030, Kind::FD, "PixelSpacing"}}},
};

std::uint16_t frameNumber(std::size_t frame, std::size_t sequence, std::size_t element) {
  return static_cast<std::uint16_t>((frame + 7 * sequence + element) & 0xFFFF);
}

double frameReal(std::size_t frame, std::size_t sequence, std::size_t element) {
  return static_cast<double>(frame) * 0.5 + static_cast<double>(sequence) +
         static_cast<double>(element) * 0.125;
}

const std::string& frameText(std::size_t frame) {
  static const std::vector<std::string> texts = [] {
    std::vector<std::string> made;
    made.reserve(sizes().frames);
    for (std::size_t f = 0; f < sizes().frames; ++f) made.push_back(textFor("FRAME ", f));
    return made;
  }();
  return texts[frame];
}

const Sizes& sizes() {
  static const Sizes chosen = makeSizes();
  return chosen;
}

const FlatData& flatData(std::size_t count) {
  static std::map<std::size_t, std::unique_ptr<FlatData>> made;
  std::unique_ptr<FlatData>& data = made[count];
  if (!data) data = std::make_unique<FlatData>(makeFlatData(count));
  return *data;
}

const char* keyword(std::size_t index) {
  return kKeywords[index % kKeywordCount];
}

std::size_t heapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace QuiltraPeers
