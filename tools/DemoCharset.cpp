#include "DemoCharset.h"

#include <cstdio>
#include <memory>
#include <string>

#include <quiltra/quiltra.h>

namespace QuiltraTools {

namespace {

using namespace Quiltra;

const TagId kSpecificCharacterSet(0x0008, 0x0005);

std::shared_ptr<Tag> textElement(const TagId& id, const std::string& name, Vr vr,
                                 const std::string& text) {
  auto tag = std::make_shared<Tag>(TagInfo(id, name, vr, {1, 9}));
  tag->addValue(text);
  return tag;
}

// The text with every byte from 0x80 up written as \xNN, so both encodings show as bytes.
std::string escaped(const std::string& text) {
  std::string shown;
  for (unsigned char c : text) {
    if (c < 0x80) {
      shown += static_cast<char>(c);
      continue;
    }
    char hex[8];
    std::snprintf(hex, sizeof hex, "\\x%02X", c);
    shown += hex;
  }
  return shown;
}

void print(const Tree& tree, std::ostream& out, const std::string& indent) {
  const auto elements = tree.getTags(OwnLayer);
  for (const auto& [id, tag] : *elements) {
    out << indent << id.toString() << " " << toString(tag->info().vr()) << " "
        << tag->info().name();
    if (!tag->isSequence()) {
      out << " = \"" << escaped(tag->toString()) << "\"\n";
      continue;
    }
    out << "\n";
    for (const auto& item : tag->sequenceItems()) print(*item, out, indent + "    ");
  }
}

// A study in Latin-1: names, a description inside a sequence item, and a CS code that
// no conversion touches.
std::shared_ptr<Tree> latin1Study() {
  auto study = std::make_shared<Tree>();
  study->addTag(textElement(kSpecificCharacterSet, "SpecificCharacterSet", CS, "ISO_IR 100"));
  study->addTag(
      textElement(TagId(0x0010, 0x0010), "PatientName", PN, "M\xFCller^J\xE9r\xF4me\\Ren\xE9"));
  study->addTag(textElement(TagId(0x0008, 0x0060), "Modality", CS, "MR"));
  auto item = std::make_shared<Tree>();
  item->addTag(textElement(TagId(0x0008, 0x1030), "StudyDescription", LO, "\xC9paule gauche, T2"));
  auto sequence =
      std::make_shared<Tag>(TagInfo(TagId(0x0008, 0x1110), "ReferencedStudySequence", SQ, {1, 1}));
  sequence->addSequenceItem(item);
  study->addTag(sequence);
  return study;
}

}  // namespace

void showCharacterSets(std::ostream& out) {
  out << "\n== Character sets: a Latin-1 data set converted to UTF-8\n";
  Message message("", EXPLICIT_LITTLE_ENDIAN);
  message.setTags(latin1Study());
  out << "learnt from (0008,0005): " << message.specificCharacterSet() << "\n";
  print(*message.tags(), out, "  ");
  message.convertToCharacterSet(Quiltra_Unicode::UTF8CharacterSet());
  // The conversion leaves (0008,0005) to the caller.
  message.tags()
      ->getTag_rw(kSpecificCharacterSet)
      ->setValue(Quiltra_Unicode::UTF8CharacterSet(), 0);
  out << "after convertToCharacterSet(\"" << message.specificCharacterSet() << "\"):\n";
  print(*message.tags(), out, "  ");
  out << "PatientName as UTF-8 text: " << message.tags()->getTag(TagId(0x0010, 0x0010))->toString()
      << "\n";
}

}  // namespace QuiltraTools
