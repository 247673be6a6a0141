#include "support/QuiltraTestSupport.h"
#include "support/TestDict.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <utility>
#include <vector>

#include <quiltra/quiltra.h>

using namespace Quiltra;
using Bytes = std::vector<unsigned char>;
using TreePtr = std::shared_ptr<Tree>;

namespace {

const TagId kName(0x0010, 0x0010), kId(0x0010, 0x0020), kSequence(0x0040, 0xA730);

std::shared_ptr<Tag> textTag(const TagId& id, const std::string& text) {
  auto tag = std::make_shared<Tag>(TagInfo(id, "Text", LO, {1, 3}));
  tag->addValue(text);
  return tag;
}

// A Tree over `levels` levels of sequence items; the innermost holds kName unless text is "".
TreePtr nested(int levels, const std::string& text = "deepest") {
  auto tree = std::make_shared<Tree>();
  if (!text.empty()) tree->addTag(textTag(kName, text));
  for (int level = 0; level < levels; ++level) {
    auto outer = std::make_shared<Tree>();
    outer->addTag(std::make_shared<Tag>(TagInfo(kSequence, "Sequence", SQ, {1, 1})));
    outer->getTag_rw(kSequence)->addSequenceItem(tree);
    tree = outer;
  }
  return tree;
}

Bytes bytesOf(const Tree& tree) {
  Quiltra_Serialization::MemorySink sink;
  tree.serializeX(sink);
  return sink.bytes();
}

TreePtr readBinary(const Bytes& bytes, TreePtr tree = std::make_shared<Tree>()) {
  Quiltra_Serialization::MemorySource source(bytes);
  tree->deserializeX(source);
  return tree;
}

std::string textOf(const Tree& tree) {
  std::ostringstream out;
  tree.toStream(out);
  return out.str();
}

TreePtr readText(const std::string& text, TreePtr tree = std::make_shared<Tree>()) {
  std::istringstream in(text);
  tree->fromStream(in);
  return tree;
}

Bytes tagBytesOf(const Tree& tree) {
  Quiltra_Serialization::MemorySink sink;
  tree.getTag(kSequence)->serializeX(sink);
  return sink.bytes();
}

std::string tagTextOf(const Tree& tree) {
  std::ostringstream out;
  tree.getTag(kSequence)->toStream(out);
  return out.str();
}

std::shared_ptr<Tag> readBinaryTag(const Bytes& bytes) {
  Quiltra_Serialization::MemorySource source(bytes);
  auto tag = std::make_shared<Tag>();
  tag->deserializeX(source);
  return tag;
}

std::shared_ptr<Tag> readTextTag(const std::string& text) {
  std::istringstream in(text);
  auto tag = std::make_shared<Tag>();
  tag->fromStream(in);
  return tag;
}

const Tree& firstItem(const Tag& tag) {
  return *tag.sequenceItems().at(0);
}

// One item level more than inner, a stream the writers refuse to make: oneLevel is the form
// of an object one level above the Tree whose form is noLevel, so it is noLevel with what
// a level adds before and after it.
template <class Stream>
Stream deeper(const Stream& inner, const Stream& oneLevel, const Stream& noLevel) {
  const auto at = std::search(oneLevel.begin(), oneLevel.end(), noLevel.begin(), noLevel.end());
  Stream stream(oneLevel.begin(), at);
  stream.insert(stream.end(), inner.begin(), inner.end());
  stream.insert(stream.end(), at + noLevel.size(), oneLevel.end());
  return stream;
}

// A layer's own entries and marks (own entries the OwnLayer view hides) in the text form.
std::string ownLayerText(const Tree& layer) {
  std::ostringstream out;
  std::vector<TagId> marks;
  Quiltra_Utils::toStream(out, static_cast<int>(layer.tagsSize()));
  for (const auto& entry : layer.constTags()) {
    Quiltra_Utils::toStream(out, entry.first.rawId());
    entry.second->toStream(out);
    if (!layer.hasTag(entry.first, OwnLayer)) marks.push_back(entry.first);
  }
  Quiltra_Utils::toStream(out, static_cast<int>(marks.size()));
  for (const TagId& mark : marks) mark.toStream(out);
  return out.str();
}

// A cut anywhere in a valid encoding of nested items ends in the end-of-input failure
// (binary) or in a partly read tree (text), never in a crash or an out-of-bounds read.
TEST(TreeLayoutTest, ReadsEveryTruncationCleanly) {
  const TreePtr tree = nested(3);
  const Bytes binary = bytesOf(*tree);
  const std::string text = textOf(*tree);
  for (std::size_t size = 0; size < binary.size(); ++size) {
    EXPECT_THROW(readBinary(Bytes(binary.begin(), binary.begin() + size)), Exception) << size;
  }
  for (std::size_t size = 0; size < text.size(); ++size) {
    EXPECT_LE(readText(text.substr(0, size))->tagsSize(), 2u) << "cut at " << size;
  }
}

}  // namespace

// Text: each layer's own entries and marks, exactly. Binary: the flat AllLayers view, each Tag
// read back under its own id. Both readers replace content, parent and marks, not the dict.
TEST(TreeLayoutTest, RoundTripsThreeLayersWithMarksAndNestedSequences) {
  // The middle layer overrides kId, hides (0029,1000) and adds items; the top one hides kName
  // and those items, replaces the root's sequence and adds an id above the signed range.
  const auto root = nested(3, "root");
  const auto middle = std::make_shared<Tree>(root);
  middle->setDict(std::make_shared<QuiltraTest::TestDict>());
  const auto top = std::make_shared<Tree>(middle);
  for (const TagId& id : {kName, kId, TagId(0x0029, 0x1000)}) root->addTag(textTag(id, "root"));
  root->addTag(TagId(0x0029, 0x1002), textTag(kId, "keyed"));  // under a key of its own
  middle->addTag(textTag(kId, "A\\B"));
  middle->removeTag(TagId(0x0029, 0x1000));
  middle->addTag(TagId(0x0029, 0x1001), nested(2, "middle")->getTag_rw(kSequence));
  top->removeTag(kName);
  top->removeTag(TagId(0x0029, 0x1001));
  top->addTag(nested(1, "top")->getTag_rw(kSequence));
  top->addTag(textTag(TagId(0xFFFE, 0xE0DD), "last"));

  EXPECT_EQ(textOf(*root), ownLayerText(*root));
  for (const auto& layer : {root, middle, top}) {
    const std::string text = ownLayerText(*layer);
    const auto read = readText(text, std::make_shared<Tree>(*top));  // over a parent, with marks
    EXPECT_EQ(textOf(*read), text);
    EXPECT_EQ(read->getDict(), top->getDict());
    // A root holding marks writes its binary form without the placeholders they hide.
    EXPECT_EQ(bytesOf(*read), bytesOf(*read->mergedCopy(AllLayers)));
  }
  std::ostringstream out;
  QuiltraTest::expectQuiltraError([&] { top->toStream(out); }, "Tree::toStream",
                                  "cannot stream tree with parents");
  EXPECT_EQ(out.str(), "");

  const Bytes bytes = bytesOf(*top);
  EXPECT_EQ(bytesOf(*top->mergedCopy(AllLayers)), bytes);
  const auto flat = readBinary(bytes, std::make_shared<Tree>(*top));
  EXPECT_EQ(flat->getDict(), top->getDict());
  EXPECT_EQ(textOf(*flat), textOf(*readBinary(bytes)));  // no parent, no marks
  EXPECT_EQ(*flat->tagIds(AllLayers), (Tree::TagIdList{kId, kSequence, TagId(0xFFFE, 0xE0DD)}));
  EXPECT_EQ(flat->getTag(kId)->toString(), "keyed");  // (0029,1002) replaced (0010,0020)
  EXPECT_EQ(*flat->getTag(kSequence), *top->getTag(kSequence));
}

// Readers accept items 256 levels below the object read and refuse deeper ones: a Tag read on
// its own once accepted 257 levels, as the limit counted Trees instead of item levels.
TEST(TreeLayoutTest, ReadersRefuseItemsMoreThan256LevelsBelowTreeOrTagRead) {
  const auto limit = nested(256);
  const Bytes binaryTree = deeper(bytesOf(*limit), bytesOf(*nested(1)), bytesOf(*nested(0)));
  const Bytes binaryTag = deeper(bytesOf(*limit), tagBytesOf(*nested(1)), bytesOf(*nested(0)));
  QuiltraTest::expectQuiltraError([&] { readBinary(binaryTree); }, "Tree::deserializeX",
                                  "nesting too deep");
  QuiltraTest::expectQuiltraError([&] { readBinaryTag(binaryTag); }, "Tree::deserializeX",
                                  "nesting too deep");
  EXPECT_EQ(bytesOf(*readBinary(bytesOf(*limit))), bytesOf(*limit));  // not left deep
  EXPECT_EQ(*readBinaryTag(tagBytesOf(*limit)), *limit->getTag(kSequence));

  // The text reader reads the Tree too deep, and no other, as the end of the stream: empty.
  const std::string textTree = deeper(textOf(*limit), textOf(*nested(1)), textOf(*nested(0)));
  const std::string textTag = deeper(textOf(*limit), tagTextOf(*nested(1)), textOf(*nested(0)));
  const std::string emptiedBelow256 = textOf(*nested(256, ""));
  EXPECT_EQ(textOf(firstItem(*readText(textTree)->getTag(kSequence))), emptiedBelow256);
  EXPECT_EQ(textOf(firstItem(*readTextTag(textTag))), emptiedBelow256);
  EXPECT_EQ(*readTextTag(tagTextOf(*limit)), *limit->getTag(kSequence));
}

// 257 levels were once written without complaint, and then refused or cut by the readers.
TEST(TreeLayoutTest, WritersRefuseNestingTheReadersRefuseBeforeWritingAnything) {
  const auto tooDeep = nested(257);
  const Tag& tooDeepTag = *tooDeep->getTag(kSequence);
  Quiltra_Serialization::MemorySink sink;
  std::ostringstream out;
  QuiltraTest::expectQuiltraError([&] { tooDeep->serializeX(sink); }, "Tree::serializeX",
                                  "nesting too deep");
  QuiltraTest::expectQuiltraError([&] { tooDeepTag.serializeX(sink); }, "Tree::serializeX",
                                  "nesting too deep");
  QuiltraTest::expectQuiltraError([&] { tooDeep->toStream(out); }, "Tree::toStream",
                                  "nesting too deep");
  QuiltraTest::expectQuiltraError([&] { tooDeepTag.toStream(out); }, "Tree::toStream",
                                  "nesting too deep");
  Message message;
  message.setTags(std::shared_ptr<const Tree>(tooDeep));
  QuiltraTest::expectQuiltraError([&] { message.serializeX(sink); }, "Tree::serializeX",
                                  "nesting too deep");
  QuiltraTest::expectQuiltraError([&] { message.toStream(out); }, "Tree::toStream",
                                  "nesting too deep");
  EXPECT_TRUE(sink.bytes().empty());
  EXPECT_TRUE(out.str().empty());

  // The binary form writes the view: a layer hiding the deep element writes, one showing it
  // does not. The text form writes the own layer, placeholders included.
  auto layer = std::make_shared<Tree>(tooDeep);
  EXPECT_THROW(layer->serializeX(sink), Exception);
  layer->removeTag(kSequence);
  EXPECT_EQ(bytesOf(*layer), bytesOf(Tree()));
  auto over = std::make_shared<Tree>(nested(0));
  over->addTag(tooDeep->getTag_rw(kSequence));
  EXPECT_THROW(over->serializeX(sink), Exception);
  EXPECT_TRUE(sink.bytes().empty());
  EXPECT_EQ(textOf(*readText(textOf(*nested(256)))), textOf(*nested(256)));
}

// A sink collecting bytes in memory is not measured before writing: a write that fails deep
// down takes back what it appended. A sink of any other kind is measured first and gets
// nothing.
TEST(TreeLayoutTest, FailedBinaryWritesLeaveTheSinkAsItWas) {
  Quiltra_Serialization::MemorySink sink;
  nested(2)->serializeX(sink);
  const Bytes before = sink.bytes();
  QuiltraTest::expectQuiltraError([&] { nested(300)->serializeX(sink); }, "Tree::serializeX",
                                  "nesting too deep");
  EXPECT_EQ(sink.bytes(), before);

  auto withNullItem = nested(3);
  withNullItem->getTag_rw(kSequence)->sequenceItems()[0]->getTag_rw(kSequence)->addSequenceItem(
      nullptr);
  QuiltraTest::expectQuiltraError([&] { withNullItem->serializeX(sink); }, "Tag::serializeX",
                                  "null sequence item");
  EXPECT_EQ(sink.bytes(), before);
  Message message;
  message.setTags(std::shared_ptr<const Tree>(nested(257)));
  EXPECT_THROW(message.serializeX(sink), Exception);
  EXPECT_EQ(sink.bytes(), before);

  struct CountingSink : Quiltra_Serialization::Sink {
    std::size_t written = 0;
    void writeX(const void*, unsigned int size) override { written += size; }
  } counting;
  QuiltraTest::expectQuiltraError([&] { nested(257)->serializeX(counting); }, "Tree::serializeX",
                                  "nesting too deep");
  EXPECT_EQ(counting.written, 0u);
  nested(256)->serializeX(counting);
  EXPECT_EQ(counting.written, bytesOf(*nested(256)).size());
}

// Counts never reach past the input. The text reader goes on as if zeros followed: the entry or
// mark cut short is kept, one empty one under (0000,0000) stands for the rest.
TEST(TreeLayoutTest, WritesEmptyTreeAndReadsCountsOnlyAsFarAsTheInputGoes) {
  EXPECT_EQ(bytesOf(Tree()), (Bytes{0x02, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(textOf(Tree()), "0000000000000000");
  EXPECT_EQ(textOf(*readText("/?/?/?/? 01000000 20001000")), "000000000100000020001000");
  Bytes bytes = bytesOf(*nested(0));
  bytes[7] = 0x7F;  // 0x7F000001 Tags announced, one there
  QuiltraTest::expectQuiltraError([&] { readBinary(bytes); }, "MemorySource::readX",
                                  "cannot read past end of data");
  const std::string text = textOf(*nested(0)), entry = text.substr(8, text.size() - 16);
  const Tree::TagIdList kept{TagId(0u), kName};
  EXPECT_EQ(*readText("/?/?/?7?" + entry)->tagIds(OwnLayer), kept);
  EXPECT_EQ(*readText("02000000" + entry.substr(0, 12))->tagIds(OwnLayer), kept);
  const auto twice = readText("02000000" + entry + entry.substr(0, 12));  // kName twice
  EXPECT_EQ(twice->getTag(kName)->numberOfValues(), 0u);  // the later entry replaced the earlier
  EXPECT_EQ(textOf(*readText("00000000 7?7?7?7? 2000")), "00000000020000000000000020000000");
}

// Tree::fromStream on a stream with an exception mask once let std::ios_base::failure escape.
// Each text reader gives the same object and state whatever the mask, and leaves the mask as
// it found it: whole input, input cut short, no input, and nesting read as the end.
TEST(TreeLayoutTest, TextReadersBehaveAlikeWhateverTheExceptionMask) {
  using Read = std::function<std::string(std::istream&)>;
  const auto asText = [](const auto& object) {
    std::ostringstream out;
    object.toStream(out);
    return out.str();
  };
  const std::vector<std::pair<Read, std::string>> readers = {
      {[](std::istream& in) {
         std::string text;
         Quiltra_Utils::fromStream(in, text);
         return text;
       },
       "03000000414243"},
      {[](std::istream& in) {
         int number = 0;
         bool flag = false;
         Quiltra_Utils::fromStream(in, number);
         Quiltra_Utils::fromStream(in, flag);
         return std::to_string(number) + std::to_string(flag);
       },
       "/?/?/?/?01"},
      {[&](std::istream& in) {
         Value value;
         value.fromStream(in);
         return asText(value);
       },
       asText(Value(3, reinterpret_cast<const unsigned char*>("ABC")))},
      {[&](std::istream& in) {
         Tag tag;
         tag.fromStream(in);
         return asText(tag);
       },
       tagTextOf(*nested(2))},
      {[&](std::istream& in) {
         Tree tree;
         tree.fromStream(in);
         return asText(tree);
       },
       textOf(*nested(2))},
      {[&](std::istream& in) {
         Tree tree;
         tree.fromStream(in);
         const auto sequence = tree.getTag(kSequence);  // its item holds 256 levels at most
         return sequence && sequence->numberOfSequenceItems() > 0 ? textOf(firstItem(*sequence))
                                                                  : std::string();
       },
       deeper(textOf(*nested(256)), textOf(*nested(1)), textOf(*nested(0)))}};
  const std::ios::iostate masks[] = {std::ios::failbit, std::ios::eofbit,
                                     std::ios::failbit | std::ios::badbit | std::ios::eofbit};
  for (const auto& [read, text] : readers) {
    for (const std::string& input : {text, text.substr(0, text.size() / 2), std::string()}) {
      std::istringstream plain(input);
      const std::string expected = read(plain);
      for (const std::ios::iostate mask : masks) {
        std::istringstream in(input);
        in.exceptions(mask);
        std::string got;
        EXPECT_NO_THROW(got = read(in)) << input.size() << " mask " << mask;
        EXPECT_TRUE(got == expected) << input.size() << " mask " << mask;
        EXPECT_EQ(in.rdstate(), plain.rdstate());
        EXPECT_EQ(in.exceptions(), mask);
      }
    }
  }
}
