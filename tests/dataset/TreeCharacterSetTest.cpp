#include "support/QuiltraTestSupport.h"
#include "support/TextElement.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/quiltra.h>

using namespace Quiltra;
using TreePtr = std::shared_ptr<Tree>;
using QuiltraTest::textElement;

namespace {

const std::string kLatin1 = "J\xE9r\xF4me", kUTF8 = "J\xC3\xA9r\xC3\xB4me";
const TagId kCharacterSet(0x0008, 0x0005), kName(0x0010, 0x0010), kComment(0x0010, 0x4000),
    kSequence(0x0040, 0xA730), kInner(0x0040, 0xA731);

std::shared_ptr<Tag> sequenceOf(const TagId& id, std::vector<TreePtr> items) {
  auto tag = std::make_shared<Tag>(TagInfo(id, "", SQ, {1, 1}));
  for (const TreePtr& item : items) tag->addSequenceItem(item);
  return tag;
}

std::string textAt(const Tree& tree, const TagId& id) {
  return tree.getTag(id)->toString();
}

// A PN element whose one value holds bytes in a buffer with spare capacity.
std::shared_ptr<Tag> storedAs(const std::vector<unsigned char>& bytes, unsigned int spare) {
  auto tag = std::make_shared<Tag>(TagInfo(kName, "", PN, {1, 1}));
  Value& value = tag->addValue();
  value.setSize(static_cast<unsigned int>(bytes.size()) + spare);
  value.setData(static_cast<unsigned int>(bytes.size()), bytes.data());
  return tag;
}

// What reading the text, converting it and storing it back does to the value.
void plainRoad(Tag& tag, const std::string& from, const std::string& to) {
  std::string text = tag.toString(0);
  if (Quiltra_Unicode::convertCharacterSet(from, to, text)) tag.setValue(text, 0);
}

void expectSameStoredValue(const Value& actual, const Value& expected) {
  EXPECT_EQ(actual.size(), expected.size());
  EXPECT_EQ(actual.capacity(), expected.capacity());
  ASSERT_EQ(actual.size() == 0, expected.size() == 0);
  if (actual.size() != 0) {
    EXPECT_EQ(std::memcmp(actual.data(), expected.data(), actual.size()), 0);
  }
}

}  // namespace

TEST(TreeCharacterSetTest, ConvertsTheCodedStringRepresentationsOnly) {
  const Vr converted[] = {LO, LT, PN, SH, ST, UT};
  const Vr untouched[] = {AE, AS, CS, DA, DS, DT, IS, TM, UI};
  Tree tree;
  unsigned short number = 0x1000;
  for (Vr vr : converted) tree.addTag(textElement(TagId(0x0011, number++), vr, kLatin1));
  for (Vr vr : untouched) tree.addTag(textElement(TagId(0x0013, number++), vr, kLatin1));
  auto binary = std::make_shared<Tag>(TagInfo(TagId(0x0015, 0x0010), "", OB, {1, 1}));
  binary->addValue().setData(kLatin1);
  tree.addTag(binary);

  tree.convertCharacterSet("ISO_IR 100", "ISO_IR 192");
  for (const auto& [id, tag] : tree.tags()) {
    const std::string expected = id.groupId() == 0x0011 ? kUTF8 + '\0' : kLatin1 + '\0';
    const Value& value = tag->getValue(0);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(value.data()), value.size()), expected)
        << id.toString() << " " << toString(tag->info().vr());
  }
}

TEST(TreeCharacterSetTest, ConvertsEveryValueButNullOnes) {
  Tree tree;
  auto name = std::make_shared<Tag>(TagInfo(kName, "", PN, {1, 3}));
  name->addValue(std::string("Dur\xE9"));
  name->addValue();  // null entry at index 1
  name->addValue(std::string("Gr\xFCn"));
  tree.addTag(name);
  tree.convertCharacterSet("ISO_IR 6", "ISO_IR 192");
  EXPECT_EQ(name->toString(0), "Dur\xC3\xA9");
  EXPECT_TRUE(name->isNull(1));
  EXPECT_EQ(name->toString(2), "Gr\xC3\xBCn");
  EXPECT_EQ(name->toString(), "Dur\xC3\xA9\\\\Gr\xC3\xBCn");
}

TEST(TreeCharacterSetTest, ConvertsNestedItemsOfTheOwnLayerOnly) {
  auto deepest = std::make_shared<Tree>();
  deepest->addTag(textElement(kComment, LT, kLatin1));
  deepest->addTag(textElement(kName, CS, kLatin1));
  auto middle = std::make_shared<Tree>();
  middle->addTag(sequenceOf(kInner, {deepest}));
  middle->addTag(textElement(kName, SH, kLatin1));
  auto parent = std::make_shared<Tree>();
  parent->addTag(textElement(kComment, LO, kLatin1));
  parent->addTag(textElement(TagId(0x0010, 0x0020), LO, kLatin1));
  auto child = std::make_shared<Tree>(parent);
  auto outer = sequenceOf(kSequence, {middle});
  outer->addSequenceItem();  // a null slot between two items
  outer->addSequenceItem(std::make_shared<Tree>());
  child->addTag(outer);
  child->addTag(textElement(kName, PN, kLatin1));
  child->removeTag(kComment);  // an own placeholder over the parent's element

  child->convertCharacterSet("ISO_IR 100", "ISO_IR 192");
  EXPECT_EQ(textAt(*child, kName), kUTF8);
  EXPECT_EQ(textAt(*middle, kName), kUTF8);
  EXPECT_EQ(textAt(*deepest, kComment), kUTF8);
  EXPECT_EQ(textAt(*deepest, kName), kLatin1);  // CS
  EXPECT_EQ(textAt(*parent, kComment), kLatin1);
  EXPECT_EQ(textAt(*child, TagId(0x0010, 0x0020)), kLatin1);  // inherited
  EXPECT_FALSE(child->hasTag(kComment));
  EXPECT_TRUE(child->getTag(kComment, OwnLayer) == nullptr);
  EXPECT_TRUE(outer->isSequenceItemNull(1));

  child->convertCharacterSet("ISO_IR 192", "ISO_IR 100");
  EXPECT_EQ(textAt(*deepest, kComment), kLatin1);
  EXPECT_EQ(textAt(*child, kName), kLatin1);
}

TEST(TreeCharacterSetTest, NeverRewritesTheSpecificCharacterSet) {
  Tree tree;
  tree.addTag(textElement(kCharacterSet, CS, "ISO_IR 100"));
  tree.convertCharacterSet("ISO_IR 100", "ISO_IR 192");
  EXPECT_EQ(textAt(tree, kCharacterSet), "ISO_IR 100");
  // Not even when it is given a coded-string representation and non-ASCII text.
  Tree odd;
  odd.addTag(textElement(kCharacterSet, LO, kLatin1));
  odd.convertCharacterSet("ISO_IR 100", "ISO_IR 192");
  EXPECT_EQ(textAt(odd, kCharacterSet), kLatin1);
}

TEST(TreeCharacterSetTest, ChangesSharedElementsInPlace) {
  auto shared = textElement(kName, PN, kLatin1);
  Tree first, second;
  first.addTag(shared);
  second.addTag(shared);
  first.convertCharacterSet("ISO_IR 100", "ISO_IR 192");
  EXPECT_EQ(textAt(second, kName), kUTF8);
}

TEST(TreeCharacterSetTest, LeavesTextsAloneWithoutAConversion) {
  Tree tree;
  tree.addTag(textElement(kName, PN, kLatin1));
  tree.convertCharacterSet("ISO_IR 100", "ISO_IR 100");
  tree.convertCharacterSet("ISO_IR 6", "ISO_IR 100");
  tree.convertCharacterSet("ISO_IR 144", "ISO_IR 192");
  tree.convertCharacterSet("ISO_IR 100", "");
  EXPECT_EQ(textAt(tree, kName), kLatin1);
}

TEST(TreeCharacterSetTest, StoresValuesExactlyAsReadConvertAndStoreWould) {
  const std::vector<std::vector<unsigned char>> raw = {
      {'a', 'b', 0},                               // ASCII text
      {'a', 'b'},                                  // no terminator
      {'a', 0, 'b', 0},                            // bytes after the terminator
      {0xE9, 0},                                   // Latin-1 / truncated UTF-8
      {'c', 0xC3, 0xA9, 0},                        // UTF-8
      {'x', 0xC0, 0x80, 'y', 0xC3, 0xA9, 'z', 0},  // decodes to an embedded zero
      {0xC3, 0xA9},                                // UTF-8 without terminator
      {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x41, 0},
  };
  const std::pair<const char*, const char*> directions[] = {{"ISO_IR 100", "ISO_IR 192"},
                                                            {"ISO_IR 192", "ISO_IR 6"}};
  for (const auto& bytes : raw) {
    for (const auto& direction : directions) {
      const std::string from = direction.first, to = direction.second;
      for (unsigned int spare : {0u, 64u}) {
        SCOPED_TRACE(std::string(from) + " -> " + to + ", " + std::to_string(bytes.size()) +
                     " bytes, spare " + std::to_string(spare));
        auto tag = storedAs(bytes, spare);
        auto expected = storedAs(bytes, spare);
        Tree tree;
        tree.addTag(tag);
        bool throws = false;
        try {
          plainRoad(*expected, from, to);
        } catch (const Exception&) {
          throws = true;
        }
        if (throws) {
          QuiltraTest::expectQuiltraError([&] { tree.convertCharacterSet(from, to); },
                                          "UTF8toLatin1", "source exhausted");
          expectSameStoredValue(tag->getValue(0), storedAs(bytes, spare)->getValue(0));
          continue;
        }
        tree.convertCharacterSet(from, to);
        expectSameStoredValue(tag->getValue(0), expected->getValue(0));
      }
    }
  }
}
