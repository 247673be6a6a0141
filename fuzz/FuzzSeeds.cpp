// Writes valid encodings of each class as seeds for the fuzzers, so that fuzzing starts
// from well-formed input and mutates it, rather than from nothing.
// Usage: FuzzSeeds <binary corpus dir> <text corpus dir> [<message corpus dir>
//        <character-set corpus dir>]
#include "FuzzTarget.h"

#include <cstdint>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <quiltra/quiltra.h>

namespace {

using QuiltraFuzz::binaryOf;
using QuiltraFuzz::textOf;

using namespace Quiltra;

std::shared_ptr<Tree> sampleTree() {
  auto tree = std::make_shared<Tree>();
  auto name = std::make_shared<Tag>(TagInfo(TagId(0x0010, 0x0010), "PatientName", PN, {1, 1}));
  name->addValue(std::string("Doe^Jane\\Roe^Richard"));
  tree->addTag(name);
  auto rows = std::make_shared<Tag>(TagInfo(TagId(0x0028, 0x0010), "Rows", US, {1, 1}));
  rows->addValue(static_cast<unsigned short>(512));
  tree->addTag(rows);
  auto item = std::make_shared<Tree>();
  auto thickness = std::make_shared<Tag>(TagInfo(TagId(0x0018, 0x0050), "", DS, {1, 1}));
  thickness->addValue(2.5);
  item->addTag(thickness);
  auto sequence = std::make_shared<Tag>(TagInfo(TagId(0x0040, 0xA730), "", SQ, {1, 1}));
  sequence->addSequenceItem(item);
  tree->addTag(sequence);
  return tree;
}

void writeSeed(const std::string& path, QuiltraFuzz::Target target, const std::string& body) {
  std::ofstream out(path, std::ios::binary);
  out.put(static_cast<char>(target));
  out << body;
}

template <class Object>
void writeBoth(const std::string& binaryDir, const std::string& textDir, const std::string& name,
               QuiltraFuzz::Target target, const Object& object) {
  writeSeed(binaryDir + "/" + name, target, binaryOf(object));
  writeSeed(textDir + "/" + name, target, textOf(object));
}

void writeFile(const std::string& path, const std::string& body) {
  std::ofstream out(path, std::ios::binary);
  out << body;
}

// A message in both forms (odd first byte: binary, even: text), and texts for the
// conversions: Latin-1, UTF-8 of 1 to 4 bytes, malformed and truncated UTF-8.
void writeMessageAndTextSeeds(const std::string& messageDir, const std::string& charsetDir,
                              const std::shared_ptr<Tree>& tree) {
  Message message(Quiltra_Unicode::isoLatin1CharacterSet(), EXPLICIT_LITTLE_ENDIAN);
  tree->addTag(std::make_shared<Tag>(TagInfo(TagId(0x0010, 0x1000), "", LO, {1, 1})));
  tree->getTag_rw(TagId(0x0010, 0x1000))->addValue(std::string("M\xFCller\\Ren\xE9"));
  message.setTags(tree);
  writeFile(messageDir + "/binary", std::string(1, '\x01') + binaryOf(message));
  writeFile(messageDir + "/text", std::string(1, '\x00') + textOf(message));
  writeFile(messageDir + "/text-without-tree", std::string(1, '\x00') + textOf(Message()));
  writeFile(charsetDir + "/latin1", "M\xFCller^J\xE9r\xF4me");
  writeFile(charsetDir + "/utf8", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  writeFile(charsetDir + "/malformed", "\xA9\xC3\x41\xC0\x80\xF8\x41\x42\x43\x44\xFC");
  writeFile(charsetDir + "/truncated", "caf\xE2\x82");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 && argc != 5) {
    std::cerr << "usage: FuzzSeeds <binary corpus dir> <text corpus dir> [<message corpus dir> "
                 "<character-set corpus dir>]\n";
    return 2;
  }
  const std::string binaryDir = argv[1];
  const std::string textDir = argv[2];
  using QuiltraFuzz::Target;
  const auto tree = sampleTree();
  const unsigned char bytes[] = {0x80, 0xFF, 0x00, 0x41};
  writeBoth(binaryDir, textDir, "tagid", Target::TagId, TagId(0x7FE0, 0x0010));
  writeBoth(binaryDir, textDir, "value", Target::Value, Value(4, bytes));
  writeBoth(binaryDir, textDir, "taginfo", Target::TagInfo,
            TagInfo(TagId(0x0010, 0x0020), "AB", DA, {1, 1}));
  writeBoth(binaryDir, textDir, "tag", Target::Tag, *tree->getTag(TagId(0x0010, 0x0010)));
  writeBoth(binaryDir, textDir, "sequence", Target::Tag, *tree->getTag(TagId(0x0040, 0xA730)));
  writeBoth(binaryDir, textDir, "tree", Target::Tree, *tree);
  if (argc == 5) writeMessageAndTextSeeds(argv[3], argv[4], tree);
  return 0;
}
