#include "DemoStudy.h"

#include <string>
#include <vector>

#include <quiltra/quiltra.h>

namespace QuiltraTools {

namespace {

using namespace Quiltra;

constexpr unsigned int kColumns = 3;  // grid positions along i
constexpr unsigned int kRows = 2;     // along j
constexpr unsigned short kPixels = 4;

// An element described by the dictionary, with one value given as text (numbers of the
// binary representations are parsed into their binary form).
std::shared_ptr<Tag> element(const Dict& dict, const std::string& name, const std::string& text) {
  auto tag = std::make_shared<Tag>(TagInfo(dict.tagId(name), dict));
  if (!text.empty()) tag->addValue(text);
  return tag;
}

// Latin-1 text with every byte from 0x80 up shown as \xNN, so a UTF-8 terminal shows it.
std::string shown(const std::string& latin1) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string text;
  for (const unsigned char c : latin1) {
    if (c < 0x80) {
      text += static_cast<char>(c);
      continue;
    }
    text += "\\x";
    text += kHex[c >> 4];
    text += kHex[c & 0x0F];
  }
  return text;
}

void set(Tree& tree, const std::string& name, const std::string& text) {
  tree.addTag(element(*tree.getDict(), name, text));
}

std::shared_ptr<Tag> pixelData(const Dict& dict) {
  auto pixels = element(dict, "PixelData", "");
  std::vector<unsigned char> bytes(kColumns * kRows * kPixels * kPixels * 2);
  for (std::size_t i = 0; i < bytes.size(); i += 2) bytes[i] = static_cast<unsigned char>(i);
  pixels->addValue().setData(static_cast<unsigned int>(bytes.size()), bytes.data());
  return pixels;
}

// Frame i + 3 j lies at (0, 10 i, 5 j); every frame is 2.5 mm thick, which the
// normalisation later finds shared.
void fillGrid(const std::shared_ptr<Tree>& study) {
  const Dict& dict = *study->getDict();
  StructuredMF grid(study, kColumns, kRows, 1);
  for (unsigned int j = 0; j < kRows; ++j) {
    for (unsigned int i = 0; i < kColumns; ++i) {
      grid.setFrameIndexForGridPosition(i + kColumns * j, i, j, 0);
      grid.setTagForGridPosition(element(dict, "SliceThickness", "2.5"), i, j, 0);
      grid.setTagForGridPosition(
          element(dict, "ImagePositionPatient",
                  "0\\" + std::to_string(10 * i) + "\\" + std::to_string(5 * j)),
          i, j, 0);
    }
  }
}

// The per-position elements of the grid, one line per position.
void printGrid(const std::shared_ptr<const Tree>& tree, std::ostream& out) {
  const StructuredMF grid(tree);
  const TagId thickness(0x0018, 0x0050);
  const TagId position(0x0020, 0x0032);
  for (unsigned int j = 0; j < kRows; ++j) {
    for (unsigned int i = 0; i < kColumns; ++i) {
      const auto own = grid.extractTagTreeForGridPosition(i, j, 0, StructuredMF::PositionOnly);
      out << "  [" << i << ", " << j << "] frame " << grid.frameIndexForGridPosition(i, j, 0)
          << ": position " << own->getTag(position)->toString() << ", thickness "
          << (own->hasTag(thickness) ? own->getTag(thickness)->toString() : "(shared)") << "\n";
    }
  }
  const auto shared = grid.sharedTag(thickness);
  out << "  shared SliceThickness: " << (shared ? shared->toString() : "(none)") << "\n";
}

}  // namespace

std::shared_ptr<Tree> buildStudy(const std::shared_ptr<const Dict>& dict, std::ostream& out) {
  auto study = std::make_shared<Tree>();
  study->setDict(dict);
  set(*study, "SpecificCharacterSet", "ISO_IR 100");
  set(*study, "SOPClassUID", "1.2.840.10008.5.1.4.1.1.4.1");  // enhanced MR image
  set(*study, "SOPInstanceUID", "2.25.301755427318237441137307214262153720001");
  set(*study, "StudyInstanceUID", "2.25.301755427318237441137307214262153720002");
  set(*study, "SeriesInstanceUID", "2.25.301755427318237441137307214262153720003");
  set(*study, "Modality", "MR");
  set(*study, "PatientName", "M\xFCller^J\xE9r\xF4me");  // Latin-1
  set(*study, "PatientID", "QA-0042");
  set(*study, "StudyDescription", "\xC9paule gauche, T2");
  set(*study, "SamplesPerPixel", "1");
  set(*study, "PhotometricInterpretation", "MONOCHROME2");
  set(*study, "NumberOfFrames", std::to_string(kColumns * kRows));
  set(*study, "Rows", std::to_string(kPixels));
  set(*study, "Columns", std::to_string(kPixels));
  set(*study, "BitsAllocated", "16");
  set(*study, "BitsStored", "12");
  set(*study, "HighBit", "11");
  set(*study, "PixelRepresentation", "0");
  study->addTag(pixelData(*dict));
  fillGrid(study);
  out << study->tagsSize() << " elements; a " << kColumns << " x " << kRows
      << " grid of frames in the private group 0041 (creator \""
      << study->getPrivateCreator(TagId(0x0041, 0x1000)) << "\"):\n";
  printGrid(study, out);
  return study;
}

std::shared_ptr<Tree> layerChange(const std::shared_ptr<Tree>& study, std::ostream& out) {
  auto change = std::make_shared<Tree>(study);
  change->setDict(study->getDict());
  set(*change, "PatientName", "Anonymis\xE9^Patient");
  set(*change, "SeriesDescription", "Demo series");
  change->removeTag(change->getDict()->tagId("PatientID"));
  out << "the layer sees PatientName '" << shown(change->getTag("PatientName")->toString())
      << "', PatientID present: " << change->hasTag("PatientID") << ", own elements "
      << change->tagsSize() << "\n";
  out << "the study keeps PatientName '" << shown(study->getTag("PatientName")->toString())
      << "', PatientID present: " << study->hasTag("PatientID") << "\n";
  return change;
}

void normaliseGrid(const std::shared_ptr<Tree>& flat, std::ostream& out) {
  StructuredMF(flat).normalizeTagStructure(0.0, true);
  printGrid(flat, out);
}

}  // namespace QuiltraTools
