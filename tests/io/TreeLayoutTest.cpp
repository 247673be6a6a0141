#include "support/QuiltraTestSupport.h"
#include "support/TestDict.h"

#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Vr.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>
#include <quiltra/io/MemorySink.h>
#include <quiltra/io/MemorySource.h>
#include <quiltra/io/StreamPrimitives.h>

using Quiltra::AllLayers;
using Quiltra::OwnLayer;
using Quiltra::Tag;
using Quiltra::TagId;
using Quiltra::TagInfo;
using Quiltra::Tree;
using Bytes = std::vector<unsigned char>;

namespace {

const TagId kSequence(0x0040, 0xA730);
const TagId kName(0x0010, 0x0010);
const TagId kId(0x0010, 0x0020);
const TagId kModality(0x0008, 0x0060);

std::shared_ptr<Tag> textTag(TagId id, const std::string& text, Quiltra::Vr vr = Quiltra::LO) {
  auto tag = std::make_shared<Tag>(TagInfo(id, "Text", vr, {1, 3}));
  tag->addValue(text);
  return tag;
}

std::shared_ptr<Tag> sequenceOf(TagId id, const std::vector<std::shared_ptr<Tree>>& items) {
  auto tag = std::make_shared<Tag>(TagInfo(id, "Sequence", Quiltra::SQ, {1, 1}));
  for (const auto& item : items) tag->addSequenceItem(item);
  return tag;
}

// Two items; the first holds a sequence whose item holds another sequence.
std::shared_ptr<Tag> nestedSequence(TagId id, const std::string& label) {
  auto innermost = std::make_shared<Tree>();
  innermost->addTag(textTag(TagId(0x0008, 0x0104), label + " innermost"));
  auto inner = std::make_shared<Tree>();
  inner->addTag(textTag(TagId(0x0008, 0x0100), label + " inner"));
  inner->addTag(sequenceOf(kSequence, {innermost}));
  auto first = std::make_shared<Tree>();
  first->addTag(sequenceOf(kSequence, {inner}));
  auto second = std::make_shared<Tree>();
  second->addTag(textTag(TagId(0x0028, 0x0010), "512", Quiltra::US));
  return sequenceOf(id, {first, second});
}

// A root, a middle layer and a top layer: each overrides, hides and adds elements.
struct Chain {
  std::shared_ptr<Tree> root = std::make_shared<Tree>();
  std::shared_ptr<Tree> middle = std::make_shared<Tree>(root);
  std::shared_ptr<Tree> top = std::make_shared<Tree>(middle);
};

Chain makeChain() {
  Chain chain;
  chain.root->addTag(textTag(kName, "Root^Name"));
  chain.root->addTag(textTag(kId, "ID-1"));
  chain.root->addTag(textTag(kModality, "MR", Quiltra::CS));
  chain.root->addTag(nestedSequence(kSequence, "root"));
  chain.middle->addTag(textTag(kId, "ID-2\\ID-3"));
  chain.middle->removeTag(kModality);
  chain.middle->addTag(nestedSequence(TagId(0x0029, 0x1000), "middle"));
  chain.top->removeTag(kName);
  chain.top->removeTag(TagId(0x0029, 0x1000));
  chain.top->addTag(textTag(TagId(0x0020, 0x0013), "7", Quiltra::IS));
  chain.top->addTag(nestedSequence(kSequence, "top"));
  // An id above the signed range, and raw bytes of every high nibble.
  chain.top->addTag(textTag(TagId(0xFFFE, 0xE0DD), "last"));
  auto pixels = std::make_shared<Tag>(TagInfo(TagId(0x7FE0, 0x0010), "", Quiltra::OB, {1, 1}));
  const unsigned char bytes[] = {0x00, 0x7F, 0x80, 0xE9, 0xFF};
  pixels->addValue().setData(sizeof bytes, bytes);
  chain.top->addTag(pixels);
  return chain;
}

// top holds a chain of `levels` nested sequence items below it.
std::shared_ptr<Tree> nestedItems(int levels) {
  auto tree = std::make_shared<Tree>();
  tree->addTag(textTag(kName, "deepest"));
  for (int level = 0; level < levels; ++level) {
    auto outer = std::make_shared<Tree>();
    outer->addTag(sequenceOf(kSequence, {tree}));
    tree = outer;
  }
  return tree;
}

Bytes bytesOf(const Tree& tree) {
  Quiltra_Serialization::MemorySink sink;
  tree.serializeX(sink);
  return sink.bytes();
}

void readBinaryInto(Tree& tree, const Bytes& bytes) {
  Quiltra_Serialization::MemorySource source(bytes);
  tree.deserializeX(source);
}

std::shared_ptr<Tree> readBinary(const Bytes& bytes) {
  auto tree = std::make_shared<Tree>();
  readBinaryInto(*tree, bytes);
  return tree;
}

std::string textOf(const Tree& tree) {
  std::ostringstream out;
  tree.toStream(out);
  return out.str();
}

std::shared_ptr<Tree> readText(const std::string& text) {
  auto tree = std::make_shared<Tree>();
  std::istringstream in(text);
  tree->fromStream(in);
  return tree;
}

// The text of one entry: key, then the Tag.
std::string entryText(TagId key, const std::shared_ptr<Tag>& tag) {
  Tree tree;
  tree.addTag(key, tag);
  const std::string text = textOf(tree);
  return text.substr(8, text.size() - 16);
}

// The text form of a layer's own entries and marks, assembled from its public view (a
// mark is an own entry that the OwnLayer view hides), since a layer with a parent cannot
// be written itself.
std::string ownLayerText(const Tree& layer) {
  std::ostringstream out;
  Quiltra_Utils::toStream(out, static_cast<int>(layer.tagsSize()));
  std::vector<unsigned int> marks;
  for (const auto& entry : layer.tags()) {
    Quiltra_Utils::toStream(out, entry.first.rawId());
    entry.second->toStream(out);
    if (!layer.hasTag(entry.first, OwnLayer)) marks.push_back(entry.first.rawId());
  }
  Quiltra_Utils::toStream(out, static_cast<int>(marks.size()));
  for (unsigned int raw : marks) TagId(raw).toStream(out);
  return out.str();
}

void expectSameTag(const Tag& expected, const Tag& actual) {
  EXPECT_TRUE(actual.isEqual(expected, 0.0)) << expected.info().id().toString();
  EXPECT_EQ(actual.info().name(), expected.info().name());
  EXPECT_EQ(actual.info().vr(), expected.info().vr());
  EXPECT_EQ(actual.info().multiplicity(), expected.info().multiplicity());
}

void expectSameOwnLayer(const Tree& expected, const Tree& actual) {
  ASSERT_EQ(actual.tagsSize(), expected.tagsSize());
  for (const auto& entry : expected.tags()) {
    const auto found = actual.tags().find(entry.first);
    ASSERT_NE(found, actual.tags().end()) << entry.first.toString();
    expectSameTag(*entry.second, *found->second);
    EXPECT_EQ(actual.hasTag(entry.first, OwnLayer), expected.hasTag(entry.first, OwnLayer));
  }
}

}  // namespace

TEST(TreeLayoutTest, WritesEmptyTreeInBothForms) {
  const Tree tree;
  EXPECT_EQ(textOf(tree),
            "00000000"
            "00000000");
  EXPECT_EQ(bytesOf(tree), (Bytes{0x02, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(readText("0000000000000000")->tagsSize(), 0u);
  EXPECT_EQ(readBinary(bytesOf(tree))->tagsSize(), 0u);
}

TEST(TreeLayoutTest, WritesMarksAscendingAfterTheEntries) {
  const std::string text =
      "00000000"
      "02000000"
      "20001000"
      "05000800";
  EXPECT_EQ(textOf(*readText(text)),
            "00000000"
            "02000000"
            "05000800"
            "20001000");
  // A negative count means no entries; the marks after it are still read.
  EXPECT_EQ(textOf(*readText("/?/?/?/?"
                             "01000000"
                             "20001000")),
            "00000000"
            "01000000"
            "20001000");
}

TEST(TreeLayoutTest, RefusesTextOfTreeWithParentBeforeWriting) {
  auto parent = std::make_shared<Tree>();
  parent->addTag(textTag(kName, "P"));
  Tree child(parent);
  child.addTag(textTag(kId, "Q"));
  std::ostringstream out;
  QuiltraTest::expectQuiltraError([&] { child.toStream(out); }, "Tree::toStream",
                                  "cannot stream tree with parents");
  EXPECT_EQ(out.str(), "");

  const auto copy = readText(textOf(*child.mergedCopy(AllLayers)));
  EXPECT_EQ(*copy->tagIds(OwnLayer), (std::vector<TagId>{kName, kId}));
}

TEST(TreeLayoutTest, KeysTextEntriesByMapKeyAndBinaryTagsByTheirOwnId) {
  Tree tree;
  tree.addTag(kName, textTag(kId, "first"));
  tree.addTag(kId, textTag(kId, "second"));

  const auto text = readText(textOf(tree));
  EXPECT_EQ(text->getTag(kName)->toString(), "first");
  EXPECT_EQ(text->getTag(kId)->toString(), "second");
  // Two entries with one id: the later one replaces the earlier, in both forms.
  const auto binary = readBinary(bytesOf(tree));
  ASSERT_EQ(binary->tagsSize(), 1u);
  EXPECT_EQ(binary->getTag(kId)->toString(), "second");
  const auto twice = readText("02000000" + entryText(kId, textTag(kId, "first")) +
                              entryText(kId, textTag(kId, "second")) + "00000000");
  ASSERT_EQ(twice->tagsSize(), 1u);
  EXPECT_EQ(twice->getTag(kId)->toString(), "second");
}

TEST(TreeLayoutTest, WritesBinaryOfLayeredTreeAsItsFlatView) {
  auto parent = std::make_shared<Tree>();
  parent->addTag(textTag(kName, "P"));
  parent->addTag(textTag(kModality, "R", Quiltra::CS));
  auto child = std::make_shared<Tree>(parent);
  child->addTag(textTag(kId, "Q"));
  child->removeTag(kModality);

  const Bytes bytes = bytesOf(*child);
  ASSERT_GE(bytes.size(), 8u);
  EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 8), (Bytes{0x02, 0, 0, 0, 0x02, 0, 0, 0}));
  EXPECT_EQ(bytes, bytesOf(*child->mergedCopy(AllLayers)));
  const auto read = readBinary(bytes);
  EXPECT_FALSE(read->hasParent());
  EXPECT_EQ(*read->tagIds(OwnLayer), (std::vector<TagId>{kName, kId}));
  EXPECT_EQ(read->tagsSize(), 2u);
}

TEST(TreeLayoutTest, ReadingReplacesContentDropsParentAndMarksKeepsDict) {
  const Chain chain = makeChain();
  std::shared_ptr<const Quiltra::Dict> dict = std::make_shared<QuiltraTest::TestDict>();
  chain.middle->setDict(dict);
  Tree source;
  source.addTag(textTag(kName, "New^Name"));

  for (bool binary : {false, true}) {
    Tree target(chain.middle);
    target.addTag(textTag(kId, "old"));
    target.removeTag(kName);  // a mark on an id the stream holds
    if (binary) {
      readBinaryInto(target, bytesOf(source));
    } else {
      std::istringstream in(textOf(source));
      target.fromStream(in);
    }
    EXPECT_FALSE(target.hasParent());
    EXPECT_EQ(target.getDict(), dict);
    EXPECT_EQ(*target.tagIds(AllLayers), (std::vector<TagId>{kName}));
    EXPECT_EQ(target.tagsSize(), 1u);
    ASSERT_TRUE(target.hasTag(kName, OwnLayer));
    EXPECT_EQ(target.getTag(kName, OwnLayer)->toString(), "New^Name");
  }
}

TEST(TreeLayoutTest, RoundTripsEveryLayerOfAChainThroughText) {
  const Chain chain = makeChain();
  EXPECT_EQ(textOf(*chain.root), ownLayerText(*chain.root));
  for (const auto& layer : {chain.root, chain.middle, chain.top}) {
    const std::string reference = ownLayerText(*layer);
    const auto read = readText(reference);
    EXPECT_FALSE(read->hasParent());
    expectSameOwnLayer(*layer, *read);
    EXPECT_EQ(textOf(*read), reference);
  }
}

TEST(TreeLayoutTest, RoundTripsChainThroughBinaryAsItsFlatView) {
  const Chain chain = makeChain();
  const auto flat = chain.top->mergedCopy(AllLayers);
  const auto read = readBinary(bytesOf(*chain.top));
  EXPECT_FALSE(read->hasParent());
  ASSERT_EQ(*read->tagIds(OwnLayer), *chain.top->tagIds(AllLayers));
  EXPECT_EQ(read->tagsSize(), flat->tagsSize());
  const auto ids = flat->tagIds(OwnLayer);
  for (const TagId& id : *ids) {
    expectSameTag(*flat->getTag(id), *read->getTag(id));
  }
  EXPECT_EQ(bytesOf(*read), bytesOf(*flat));
}

TEST(TreeLayoutTest, RefusesNestingDeeperThan256InBothForms) {
  const auto tooDeep = nestedItems(257);
  QuiltraTest::expectQuiltraError([&] { readBinary(bytesOf(*tooDeep)); }, "Tree::deserializeX",
                                  "nesting too deep");
  std::istringstream in(textOf(*tooDeep));
  Tree text;
  text.fromStream(in);
  EXPECT_TRUE(in.fail());
  EXPECT_TRUE(text.hasTag(kSequence));

  // The refusals above must not have left the depth counted.
  const auto deepest = nestedItems(256);
  const auto binary = readBinary(bytesOf(*deepest));
  expectSameTag(*deepest->getTag(kSequence), *binary->getTag(kSequence));
  std::istringstream deepText(textOf(*deepest));
  Tree fromText;
  fromText.fromStream(deepText);
  EXPECT_FALSE(deepText.fail());
  EXPECT_EQ(textOf(fromText), textOf(*deepest));
}

TEST(TreeLayoutTest, EndsForgedCountsAtTheEndOfShortInput) {
  QuiltraTest::expectQuiltraError(
      [] {
        readBinary(Bytes{0x02, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF});
      },
      "MemorySource::readX", "cannot read past end of data");
  Tree single;
  single.addTag(textTag(kName, "only"));
  Bytes forged = bytesOf(single);
  forged[7] = 0x7F;
  QuiltraTest::expectQuiltraError([&] { readBinary(forged); }, "MemorySource::readX",
                                  "cannot read past end of data");

  const auto forgedEntries = readText("/?/?/?7?" + entryText(kName, textTag(kName, "only")));
  EXPECT_EQ(forgedEntries->getTag(kName, OwnLayer)->toString(), "only");
  EXPECT_EQ(forgedEntries->tagsSize(), 2u);  // the entry being read at the end is kept
  const auto forgedMarks = readText(
      "00000000"
      "/?/?/?7?");
  EXPECT_EQ(forgedMarks->tagsSize(), 0u);
  EXPECT_LE(textOf(*forgedMarks).size(), 24u);
}

TEST(TreeLayoutTest, FailsCleanlyOnEveryTruncation) {
  const Chain chain = makeChain();
  const Bytes bytes = bytesOf(*chain.top);
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    Tree tree;
    const Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
    if (!QuiltraTest::expectQuiltraError([&] { readBinaryInto(tree, cut); }, "MemorySource::readX",
                                         "cannot read past end of data")) {
      FAIL() << "binary cut at " << size;
    }
  }
  const std::string text = ownLayerText(*chain.top);
  for (std::size_t size = 0; size < text.size(); ++size) {
    const auto tree = readText(text.substr(0, size));
    ASSERT_LE(tree->tagsSize(), chain.top->tagsSize()) << "text cut at " << size;
  }
}
