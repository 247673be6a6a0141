#include "support/AllocationWatch.h"
#include "support/QuiltraTestSupport.h"
#include "support/TextElement.h"

#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <quiltra/quiltra.h>

using namespace Quiltra;
using Bytes = std::vector<unsigned char>;
using TreePtr = std::shared_ptr<Tree>;
using QuiltraTest::expectQuiltraError;
using QuiltraTest::hex;
using QuiltraTest::largestAllocation;
using QuiltraTest::textElement;

namespace {

const TagId kCharacterSet(0x0008, 0x0005), kName(0x0010, 0x0010), kSequence(0x0040, 0xA730);

// A data set with Latin-1 text, a number, and items nested two levels deep.
TreePtr sampleTree() {
  auto inner = std::make_shared<Tree>();
  inner->addTag(textElement(kName, PN, "Gr\xFCn^Ren\xE9"));
  auto item = std::make_shared<Tree>();
  auto innerSequence = std::make_shared<Tag>(TagInfo(kSequence, "", SQ, {1, 1}));
  innerSequence->addSequenceItem(inner);
  innerSequence->addSequenceItem(std::make_shared<Tree>());
  item->addTag(innerSequence);
  auto tree = std::make_shared<Tree>();
  tree->addTag(textElement(kCharacterSet, CS, "ISO_IR 100"));
  tree->addTag(textElement(kName, PN, "M\xFCller^J\xE9r\xF4me\\Doe^Jane"));
  auto rows = std::make_shared<Tag>(TagInfo(TagId(0x0028, 0x0010), "Rows", US, {1, 1}));
  rows->addValue(static_cast<unsigned short>(512));
  tree->addTag(rows);
  auto sequence = std::make_shared<Tag>(TagInfo(kSequence, "", SQ, {1, 1}));
  sequence->addSequenceItem(item);
  tree->addTag(sequence);
  return tree;
}

Message sampleMessage() {
  Message message("ISO_IR 100", EXPLICIT_LITTLE_ENDIAN);
  message.setTags(sampleTree());
  return message;
}

Bytes bytesOf(const Message& message) {
  Quiltra_Serialization::MemorySink sink;
  message.serializeX(sink);
  return sink.bytes();
}

Message readBinary(const Bytes& bytes) {
  Quiltra_Serialization::MemorySource source(bytes);
  Message message;
  message.deserializeX(source);
  return message;
}

std::string textOf(const Message& message) {
  std::ostringstream out;
  message.toStream(out);
  return out.str();
}

Message readText(const std::string& text, Message message = Message()) {
  std::istringstream in(text);
  message.fromStream(in);
  return message;
}

// Same character set, syntax and elements, compared element by element at every depth.
void expectSameMessage(Message read, Message original) {
  EXPECT_EQ(read.specificCharacterSet(), original.specificCharacterSet());
  EXPECT_EQ(read.syntax(), original.syntax());
  const Message& constRead = read;
  const Message& constOriginal = original;
  ASSERT_TRUE(constRead.tags());
  ASSERT_TRUE(read.tags());
  const auto ids = constOriginal.tags()->tagIds(AllLayers);
  EXPECT_EQ(*constRead.tags()->tagIds(AllLayers), *ids);
  for (const TagId& id : *ids) {
    EXPECT_TRUE(constRead.tags()->getTag(id)->isEqual(*constOriginal.tags()->getTag(id), 0.0))
        << id.toString();
  }
}

std::string tempPath(const std::string& name) {
  return (std::filesystem::temp_directory_path() / name).string();
}

}  // namespace

TEST(MessageLayoutTest, WritesCharacterSetSyntaxAndTreeInBothForms) {
  Message message("ISO_IR 192", EXPLICIT_LITTLE_ENDIAN);
  message.setTags(std::make_shared<Tree>());
  const Bytes binary =
      hex("09 00 00 00 0A 00 00 00 49 53 4F 5F 49 52 20 31 39 32 "  // "ISO_IR 192"
          "0F 00 00 00 02 00 00 00 "                                // syntax 2
          "02 00 00 00 00 00 00 00");                               // no elements
  EXPECT_EQ(bytesOf(message), binary);
  EXPECT_EQ(textOf(message),
            "0:000000"
            "4953"
            "4?5?"
            "4952"
            "2031"
            "3932"
            "02000000"
            "01"
            "00000000"
            "00000000");
  // Without a Tree: the binary form has no flag and writes an empty Tree; the text form
  // says there is none.
  Message empty("ISO_IR 192", EXPLICIT_LITTLE_ENDIAN);
  EXPECT_EQ(bytesOf(empty), binary);
  EXPECT_EQ(textOf(empty),
            "0:000000"
            "49534?5?495220313932"
            "02000000"
            "00");
  const Message read = readBinary(binary);
  EXPECT_TRUE(read.tags());
  EXPECT_EQ(read.tags()->tagsSize(), 0u);
  EXPECT_FALSE(readText(textOf(empty)).tags());
}

TEST(MessageLayoutTest, RoundTripsThroughMemoryFilesAndStringStreams) {
  const Message original = sampleMessage();
  expectSameMessage(readBinary(bytesOf(original)), original);
  expectSameMessage(readText(textOf(original)), original);

  const std::string path = tempPath("quiltra-message-layout.bin");
  {
    Quiltra_Serialization::FileSink sink(path);
    original.serializeX(sink);
  }
  Message fromFile;
  {
    Quiltra_Serialization::FileSource source(path);
    fromFile.deserializeX(source);
  }
  std::remove(path.c_str());
  expectSameMessage(fromFile, original);
  const Message& read = fromFile;
  const auto item = read.tags()->getTag(kSequence)->sequenceItems()[0];
  const auto inner = item->getTag(kSequence)->sequenceItems()[0];
  EXPECT_EQ(inner->getTag(kName)->toString(), "Gr\xFCn^Ren\xE9");

  // A text stream carried through a file, with line breaks added on the way.
  std::string text = textOf(original);
  for (std::size_t at = 60; at < text.size(); at += 61) text.insert(at, "\n");
  expectSameMessage(readText(text), original);
}

TEST(MessageLayoutTest, ConvertedMessageRoundTripsWithItsNewCharacterSet) {
  Message message = sampleMessage();
  message.convertToCharacterSet("ISO_IR 192");
  for (const Message& read : {readBinary(bytesOf(message)), readText(textOf(message))}) {
    EXPECT_EQ(Message(read).specificCharacterSet(), "ISO_IR 192");
    EXPECT_EQ(read.tags()->getTag(kName)->toString(0), "M\xC3\xBCller^J\xC3\xA9r\xC3\xB4me");
  }
}

TEST(MessageLayoutTest, BinaryFlattensLayersAndTextRefusesThem) {
  auto parent = sampleTree();
  auto child = std::make_shared<Tree>(parent);
  child->removeTag(kCharacterSet);
  Message message("ISO_IR 100", RLE);
  message.setTags(std::shared_ptr<const Tree>(child));
  const Message read = readBinary(bytesOf(message));
  EXPECT_FALSE(read.tags()->hasParent());
  EXPECT_EQ(*read.tags()->tagIds(AllLayers), *child->tagIds(AllLayers));

  std::ostringstream out;
  expectQuiltraError([&] { message.toStream(out); }, "Tree::toStream",
                     "cannot stream tree with parents");
}

TEST(MessageLayoutTest, TextReaderResetsThenStoresWhatItRead) {
  Message written("ISO_IR 192", EXPLICIT_LITTLE_ENDIAN);
  const Message read = readText(textOf(written), sampleMessage());
  EXPECT_EQ(Message(read).specificCharacterSet(), "ISO_IR 192");
  EXPECT_EQ(read.syntax(), EXPLICIT_LITTLE_ENDIAN);
  EXPECT_FALSE(read.tags());
  // A stream that ends early reads as zeros: an empty name and syntax 0, no Tree.
  const Message cut = readText("", sampleMessage());
  EXPECT_EQ(Message(cut).specificCharacterSet(), "");
  EXPECT_EQ(cut.syntax(), 0);
  EXPECT_FALSE(cut.tags());
  const Message flagOnly = readText("00000000 02000000 01");
  ASSERT_TRUE(flagOnly.tags());
  EXPECT_EQ(flagOnly.tags()->tagsSize(), 0u);
}

TEST(MessageLayoutTest, ReadsEveryTruncationCleanly) {
  const Message original = sampleMessage();
  const Bytes binary = bytesOf(original);
  for (std::size_t size = 0; size < binary.size(); ++size) {
    EXPECT_THROW(readBinary(Bytes(binary.begin(), binary.begin() + size)), Exception) << size;
  }
  const std::string text = textOf(original);
  for (std::size_t size = 0; size < text.size(); ++size) {
    const Message read = readText(text.substr(0, size));
    if (read.tags()) {
      EXPECT_LE(read.tags()->tagsSize(), 4u) << "cut at " << size;
    }
  }
  const std::string path = tempPath("quiltra-message-cut.bin");
  {
    Quiltra_Serialization::FileSink sink(path);
    sink.writeX(binary.data(), static_cast<unsigned int>(binary.size() - 3));
  }
  Message fromFile;
  Quiltra_Serialization::FileSource source(path);
  expectQuiltraError([&] { fromFile.deserializeX(source); }, "FileSource::readX",
                     "cannot read from file");
  std::remove(path.c_str());
}

TEST(MessageLayoutTest, DamagedInputFailsWithBoundedAllocation) {
  Bytes forged = bytesOf(sampleMessage());
  forged[0] = 0x02;  // a number where the character set should be
  expectQuiltraError([&] { readBinary(forged); }, "Source::readTypeX", "Wrong type code");

  forged = bytesOf(sampleMessage());
  forged[4] = forged[5] = forged[6] = 0xFF;
  forged[7] = 0x7F;  // a character set of 2 GiB, with a few hundred bytes present
  largestAllocation = 0;
  expectQuiltraError([&] { readBinary(forged); }, "MemorySource::readX",
                     "cannot read past end of data");
  EXPECT_LT(largestAllocation.load(), std::size_t{1} << 20);

  const std::string text = textOf(sampleMessage());
  largestAllocation = 0;
  const Message read = readText("/?/?/?7?" + text.substr(8));
  EXPECT_LT(largestAllocation.load(), std::size_t{1} << 20);
  EXPECT_FALSE(read.tags());  // everything went into the name until the stream ended
}
