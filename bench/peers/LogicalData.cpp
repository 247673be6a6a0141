#include "LogicalData.h"

#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <map>
#include <memory>
#include <random>
#include <system_error>
#include <unistd.h>

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
  ElementSpec entry;
  entry.group = static_cast<std::uint16_t>(0x0010 + 2 * (index / kElementsPerGroup));
  entry.element = static_cast<std::uint16_t>(0x1000 + index % kElementsPerGroup);
  const std::size_t slot = index % 5;  // 3 of 5 LO, 1 US, 1 FD
  entry.kind = slot < 3 ? Kind::LO : (slot == 3 ? Kind::US : Kind::FD);
  entry.keyword = keyword(index);
  entry.text = textFor("TEXT ", index);
  entry.replacement = textFor("EDIT ", index);
  entry.number = static_cast<std::uint16_t>(index & 0xFFFF);
  entry.real = static_cast<double>(index) * 0.25 + 0.5;
  return entry;
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
    chosen.names = 1000;
    chosen.identifiers = 1000;
    chosen.imageFrames = 2;
    chosen.imageRows = chosen.imageColumns = 64;
    return chosen;
  }
  chosen.elementCounts = {10000, 100000};
  chosen.lookups = 100000;
  chosen.frames = 20000;
  chosen.largeValueBytes = std::size_t{256} << 20;
  chosen.largeTextValueBytes = std::size_t{16} << 20;
  chosen.names = 100000;
  chosen.identifiers = 100000;
  chosen.imageFrames = 400;  // 400 frames of 512 x 512 x 2 bytes: 200 MiB
  chosen.imageRows = chosen.imageColumns = 512;
  return chosen;
}

// Each byte from 0x80 up as two bytes.
std::string latin1AsUtf8(const std::string& latin1) {
  std::string utf8;
  for (const char c : latin1) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (byte >> 6));
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

// The scratch folder of this process, removed with everything in it when the process ends.
class ScratchFolder {
 public:
  ScratchFolder() {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path base = fs::is_directory("/dev/shm", error) && access("/dev/shm", W_OK) == 0
                              ? fs::path("/dev/shm")
                              : fs::temp_directory_path();
    _path = base / ("quiltra-peers-" + std::to_string(getpid()));
    fs::create_directories(_path);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  const std::filesystem::path& path() const { return _path; }

 private:
  std::filesystem::path _path;
};

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

std::size_t gridColumns() {
  return sizes().tiny ? 20 : 100;
}

const std::vector<TextElement>& framesFileTexts() {
  static const std::vector<TextElement> texts = {
      {0x0008, 0x0016, TextKind::UI, "SOPClassUID", "1.2.840.10008.5.1.4.1.1.4.1"},
      {0x0008, 0x0018, TextKind::UI, "SOPInstanceUID", "1.2.826.0.1.3680043.9.7433.1.1"},
  };
  return texts;
}

// Multi-frame grayscale word secondary capture: an image of many 16-bit frames.
const std::vector<TextElement>& ImageLayout::texts() {
  static const std::vector<TextElement> texts = {
      {0x0008, 0x0016, TextKind::UI, "SOPClassUID", "1.2.840.10008.5.1.4.1.1.7.3"},
      {0x0008, 0x0018, TextKind::UI, "SOPInstanceUID", "1.2.826.0.1.3680043.9.7433.1.2"},
      {0x0028, 0x0004, TextKind::CS, "PhotometricInterpretation", "MONOCHROME2"},
      {0x0028, 0x0008, TextKind::IS, "NumberOfFrames", std::to_string(sizes().imageFrames)},
  };
  return texts;
}

const std::vector<NumberElement>& ImageLayout::numbers() {
  static const std::vector<NumberElement> numbers = {
      {0x0028, 0x0002, "SamplesPerPixel", 1},
      {0x0028, 0x0010, "Rows", static_cast<std::uint16_t>(sizes().imageRows)},
      {0x0028, 0x0011, "Columns", static_cast<std::uint16_t>(sizes().imageColumns)},
      {0x0028, 0x0100, "BitsAllocated", 16},
      {0x0028, 0x0101, "BitsStored", 16},
      {0x0028, 0x0102, "HighBit", 15},
      {0x0028, 0x0103, "PixelRepresentation", 0},
  };
  return numbers;
}

std::size_t ImageLayout::bytes() {
  return sizes().imageFrames * sizes().imageRows * sizes().imageColumns * 2;
}

const std::vector<unsigned char>& ImageLayout::pixels() {
  static const std::vector<unsigned char> made = [] {
    std::vector<unsigned char> pixels(bytes());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      pixels[i] = static_cast<unsigned char>(i * 31 + i / 4099);
    }
    return pixels;
  }();
  return made;
}

const std::vector<std::string>& latin1Names() {
  static const std::vector<std::string> names = [] {
    const char* families[] = {"Smith",    "M\xFCller",        "Garc\xED\x61", "Johnson",
                              "Dupr\xE9", "\xD8sterg\xE5rd",  "Brown",        "Nu\xF1\x65z",
                              "Taylor",   "Schr\xF6\x64\x65r"};
    const char* givens[] = {"Jane",   "J\xE9r\xF4me", "Anna",        "Fran\xE7ois", "Peter",
                            "Zo\xEB", "Michael",      "Ren\xE9\x65", "Olivia"};
    std::vector<std::string> made;
    made.reserve(sizes().names);
    for (std::size_t i = 0; i < sizes().names; ++i) {
      made.push_back(std::string(families[i % 10]) + "^" + givens[(i / 10) % 9] + "^^Dr.");
    }
    return made;
  }();
  return names;
}

const std::vector<std::string>& utf8Names() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> made;
    made.reserve(latin1Names().size());
    for (const std::string& name : latin1Names()) made.push_back(latin1AsUtf8(name));
    return made;
  }();
  return names;
}

std::string scratchPath(const std::string& name) {
  static const ScratchFolder folder;
  return (folder.path() / name).string();
}

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
