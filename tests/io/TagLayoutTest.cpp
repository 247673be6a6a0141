#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <sstream>

#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>
#include <quiltra/io/MemorySink.h>
#include <quiltra/io/MemorySource.h>

namespace Quiltra {
namespace {

using Bytes = std::vector<unsigned char>;
using QuiltraTest::expectQuiltraError;

const TagInfo kInfo(TagId(0x0010, 0x0020), "AB", DA, {1, 1});

// Items nested two deep holding a text, an empty text and a null value; null values on top.
Tag sample() {
  auto values = std::make_shared<Tag>(TagInfo(TagId(0x0008, 0x0060), "Mod", CS, {1, 3}));
  values->addValue(std::string("CT\\"));
  values->addValue();
  Tag tag(TagInfo(TagId(0x0008, 0x1115), "Items", SQ, {1, 0xFFFFFFFFu}));
  for (int level = 0; level < 2; ++level) {
    tag.addValue();
    auto item = std::make_shared<Tree>();
    item->addTag(tag.copy());
    (tag.addSequenceItem() = item)->addTag(values);
  }
  return tag;
}
std::pair<Bytes, std::string> forms(const Tag& tag) {
  Quiltra_Serialization::MemorySink sink;
  std::ostringstream out;
  tag.serializeX(sink);
  tag.toStream(out);
  return {sink.bytes(), out.str()};
}

Tag readOverSample(const Bytes& binary) {
  Quiltra_Serialization::MemorySource source(binary);
  Tag tag = sample();
  tag.deserializeX(source);
  return tag;
}
Tag readOverSample(const std::string& text) {
  std::istringstream in(text);
  Tag tag = sample();
  tag.fromStream(in);
  return tag;
}

TEST(TagLayoutTest, WritesAnEmptyTagAsItsInfoAndTwoZeroCounts) {
  const Bytes expected = {
      2,   0,   0,  0, 0x20, 0, 0x10, 0, 9, 0, 0,  0, 2, 0, 0, 0,   // id, name
      'A', 'B', 15, 0, 0,    0, 3,    0, 0, 0, 10, 0, 0, 0,         // "AB", Vr DA, pair
      2,   0,   0,  0, 1,    0, 0,    0, 2, 0, 0,  0, 1, 0, 0, 0,   // 1..1
      0xB, 0,   0,  0, 0,    0, 0,    0, 2, 0, 0,  0, 0, 0, 0, 0};  // counts
  std::ostringstream info;
  kInfo.toStream(info);
  EXPECT_EQ(forms(Tag(kInfo)), std::make_pair(expected, info.str() + "0000000000000000"));
}

TEST(TagLayoutTest, RoundTripsValuesAndNestedItemsThroughBothForms) {
  const auto written = forms(sample());  // names and nested values included
  EXPECT_EQ(forms(readOverSample(written.first)), written);
  EXPECT_EQ(forms(readOverSample(written.second)), written);
}

TEST(TagLayoutTest, RejectsNullItemsInBothWritersBeforeWritingAnything) {
  Tag tag = sample();
  tag.dropSequenceItem(0);
  Quiltra_Serialization::MemorySink sink;
  std::ostringstream out;
  expectQuiltraError([&] { tag.serializeX(sink); }, "Tag::serializeX", "null sequence item");
  expectQuiltraError([&] { tag.toStream(out); }, "Tag::toStream", "null sequence item");
  EXPECT_TRUE(sink.bytes().empty() && out.str().empty());  // refused before writing anything
}

// Entries are appended only as far as the input goes, whatever the counts say.
TEST(TagLayoutTest, ReadsForgedCountsOnlyAsFarAsTheInputGoes) {
  auto [binary, text] = forms(Tag(kInfo));
  binary[binary.size() - 9] = 0xFF;  // 0xFF000000 values
  EXPECT_THROW(readOverSample(binary), Exception);
  text.resize(text.size() - 16);
  EXPECT_EQ(readOverSample(text + "/?/?/?/?").numberOfValues(), 1u);
  EXPECT_EQ(readOverSample(text + "00000000/?/?/?/?").numberOfSequenceItems(), 1u);
}

// A cut anywhere in a valid encoding ends in the end-of-input failure (binary) or in a
// partly read element (text), never in a crash or an out-of-bounds read.
TEST(TagLayoutTest, ReadsEveryTruncationCleanly) {
  const auto [binary, text] = forms(sample());
  for (std::size_t size = 0; size < binary.size(); ++size) {
    Quiltra_Serialization::MemorySource source(Bytes(binary.begin(), binary.begin() + size));
    Tag tag;
    EXPECT_THROW(tag.deserializeX(source), Exception) << "cut at " << size;
  }
  for (std::size_t size = 0; size < text.size(); ++size) {
    std::istringstream in(text.substr(0, size));
    Tag tag;
    tag.fromStream(in);
    EXPECT_LE(tag.numberOfValues() + tag.numberOfSequenceItems(), 4u) << "cut at " << size;
  }
}

}  // namespace
}  // namespace Quiltra
