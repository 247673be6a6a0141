#include "support/QuiltraTestSupport.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>
#include <quiltra/io/MemorySink.h>
#include <quiltra/io/MemorySource.h>

namespace Quiltra {
namespace {

using Quiltra_Serialization::MemorySink;
using Quiltra_Serialization::MemorySource;
using QuiltraTest::expectQuiltraError;
using Bytes = std::vector<unsigned char>;

const TagInfo kDateInfo(TagId(0x0010, 0x0020), "AB", DA, {1, 1});
const TagId kSequenceId(0x0008, 0x1115);

Tag textTag(const TagId& id, Vr vr, std::initializer_list<const char*> texts) {
  Tag tag(TagInfo(id, "Text", vr, {1, 3}));
  for (const char* text : texts) tag.addValue().setData(std::string(text));
  return tag;
}

// A tag with several values, one of them null.
Tag multiValued() {
  Tag tag = textTag(TagId(0x0008, 0x0060), CS, {"CT", "", "MR"});
  tag.addValue();
  return tag;
}

// A sequence of two items, the second holding a sequence with one nested item.
Tag nestedSequence() {
  auto inner = std::make_shared<Tree>();
  inner->addTag(std::make_shared<Tag>(textTag(TagId(0x0010, 0x0010), PN, {"Doe^J"})));
  Tag innerSequence(TagInfo(TagId(0x0040, 0x0260), "Inner", SQ, {1, 1}));
  innerSequence.addSequenceItem(inner);
  auto first = std::make_shared<Tree>();
  first->addTag(std::make_shared<Tag>(multiValued()));
  auto second = std::make_shared<Tree>();
  second->addTag(std::make_shared<Tag>(innerSequence));
  second->addTag(std::make_shared<Tag>(textTag(TagId(0x0008, 0x1150), UI, {"1.2.3"})));
  Tag outer(TagInfo(kSequenceId, "Outer", SQ, {1, 0xFFFFFFFFu}));
  outer.addSequenceItem(first);
  outer.addSequenceItem(second);
  return outer;
}

Bytes binaryOf(const Tag& tag) {
  MemorySink sink;
  tag.serializeX(sink);
  return sink.bytes();
}

Tag readBinary(const Bytes& bytes) {
  MemorySource source(bytes);
  Tag tag;
  tag.deserializeX(source);
  return tag;
}

std::string textOf(const Tag& tag) {
  std::ostringstream out;
  tag.toStream(out);
  return out.str();
}

Tag readText(const std::string& text) {
  std::istringstream in(text);
  Tag tag;
  tag.fromStream(in);
  return tag;
}

void expectSameTag(const Tag& read, const Tag& written) {
  EXPECT_TRUE(read.isEqual(written, 0.0));
  EXPECT_EQ(read.info().name(), written.info().name());
  EXPECT_EQ(read.info().vr(), written.info().vr());
  EXPECT_EQ(read.info().multiplicity(), written.info().multiplicity());
}

TEST(TagLayoutTest, WritesAnEmptyTagAsItsInfoAndTwoZeroCounts) {
  const Bytes expected = {0x02, 0, 0, 0, 0x20, 0, 0x10, 0,            // TagId
                          0x09, 0, 0, 0, 0x02, 0, 0,    0, 'A', 'B',  // name
                          0x0F, 0, 0, 0, 0x03, 0, 0,    0,            // Vr DA
                          0x0A, 0, 0, 0,                              // pair
                          0x02, 0, 0, 0, 0x01, 0, 0,    0,            // multiplicity
                          0x02, 0, 0, 0, 0x01, 0, 0,    0,            //
                          0x0B, 0, 0, 0, 0x00, 0, 0,    0,            // no values
                          0x02, 0, 0, 0, 0x00, 0, 0,    0};           // no items
  EXPECT_EQ(binaryOf(Tag(kDateInfo)), expected);
  std::ostringstream info;
  kDateInfo.toStream(info);
  EXPECT_EQ(textOf(Tag(kDateInfo)), info.str() + "0000000000000000");
}

TEST(TagLayoutTest, RoundTripsValuesAndNestedItemsThroughBothForms) {
  for (const Tag& written : {multiValued(), nestedSequence(), Tag(kDateInfo)}) {
    const Tag binary = readBinary(binaryOf(written));
    expectSameTag(binary, written);
    EXPECT_EQ(binary.numberOfSequenceItems(), written.numberOfSequenceItems());
    const Tag text = readText(textOf(written));
    expectSameTag(text, written);
    EXPECT_EQ(text.numberOfSequenceItems(), written.numberOfSequenceItems());
  }
  const Tag read = readBinary(binaryOf(multiValued()));
  EXPECT_TRUE(read.isNull(3));
  EXPECT_EQ(read.getValueSize(1), 1u);
}

TEST(TagLayoutTest, ReadingReplacesThePreviousContent) {
  const Bytes bytes = binaryOf(multiValued());
  Tag tag = nestedSequence();
  tag.addValue();
  MemorySource source(bytes);
  tag.deserializeX(source);
  EXPECT_EQ(tag.numberOfSequenceItems(), 0u);
  EXPECT_TRUE(tag.isEqual(multiValued(), 0.0));
  Tag streamed = nestedSequence();
  std::istringstream in(textOf(multiValued()));
  streamed.fromStream(in);
  EXPECT_EQ(streamed.numberOfSequenceItems(), 0u);
  EXPECT_EQ(streamed.numberOfValues(), 4u);
}

TEST(TagLayoutTest, RejectsNullItemsInBothWriters) {
  Tag tag = nestedSequence();
  tag.dropSequenceItem(0);
  MemorySink sink;
  expectQuiltraError([&] { tag.serializeX(sink); }, "Tag::serializeX", "null sequence item");
  std::ostringstream out;
  expectQuiltraError([&] { tag.toStream(out); }, "Tag::toStream", "null sequence item");
}

// In an empty tag the value count ends 8 bytes before the end, the item count at the end.
TEST(TagLayoutTest, RejectsForgedBinaryCountsAtTheEndOfInput) {
  const Bytes empty = binaryOf(Tag(kDateInfo));
  const std::size_t values = empty.size() - 12;
  for (std::size_t offset : {values, empty.size() - 4}) {
    Bytes forged = empty;
    for (std::size_t i = 0; i < 4; ++i) forged[offset + i] = 0xFF;
    expectQuiltraError([&] { readBinary(forged); }, "MemorySource::readX",
                       "cannot read past end of data");
  }
}

TEST(TagLayoutTest, RejectsEveryTruncationOfTheBinaryForm) {
  const Bytes bytes = binaryOf(nestedSequence());
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    const Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_THROW(readBinary(cut), Exception) << "cut at " << size;
  }
}

TEST(TagLayoutTest, KeepsWhatWasReadFromATruncatedText) {
  const std::string text = textOf(nestedSequence());
  for (std::size_t size = 0; size < text.size(); ++size) {
    Tag tag;
    std::istringstream in(text.substr(0, size));
    EXPECT_NO_THROW(tag.fromStream(in)) << "cut at " << size;
    EXPECT_LE(tag.numberOfSequenceItems(), 2u) << "cut at " << size;
    EXPECT_EQ(tag.numberOfValues(), 0u);
  }
}

TEST(TagLayoutTest, StopsAtTheFailedStreamWhateverTheCountsSay) {
  std::ostringstream info;
  kDateInfo.toStream(info);
  const Tag values = readText(info.str() + "/?/?/?/?");
  EXPECT_EQ(values.numberOfValues(), 1u);  // the one being read when the stream ended
  EXPECT_EQ(values.numberOfSequenceItems(), 0u);
  const Tag items = readText(info.str() + "00000000" + "/?/?/?/?");
  EXPECT_EQ(items.numberOfValues(), 0u);
  EXPECT_EQ(items.numberOfSequenceItems(), 1u);
}

}  // namespace
}  // namespace Quiltra
