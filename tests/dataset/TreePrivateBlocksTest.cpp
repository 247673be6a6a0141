#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>

#include <quiltra/quiltra.h>

using namespace Quiltra;

namespace {

constexpr unsigned short kGroup = 0x0029;

// Stores text elements, or for the text "" OB elements whose text cannot be read.
void put(Tree& tree, std::initializer_list<unsigned short> elements, const std::string& text,
         unsigned short group = kGroup) {
  for (unsigned short element : elements) {
    auto tag =
        std::make_shared<Tag>(TagInfo(TagId(group, element), "", text.empty() ? OB : LO, {1, 1}));
    if (text.empty()) tag->addValue().setData(1, reinterpret_cast<const unsigned char*>("X"));
    if (!text.empty()) tag->addValue(text);
    tree.addTag(tag);
  }
}

}  // namespace

// Only (gggg,0010)..(gggg,00FF) of the AllLayers view count; unreadable texts are skipped.
TEST(TreePrivateBlocksTest, FindsCreatorOrAllocatesLowestFreeSlot) {
  auto parent = std::make_shared<Tree>();
  put(*parent, {0x0010}, "A");
  Tree tree(parent);
  put(tree, {0x000F, 0x0100}, "Z");
  put(tree, {0x0011}, "");
  put(tree, {0x0014, 0x0013}, "B");
  put(tree, {0x00FF}, "P\\Q");
  put(tree, {0x0012}, "Z", 0x0027);
  put(tree, {0x0010}, "E", 0x0028);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "A", false), 0x0010);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "B", false), 0x0013);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "P\\Q", false), 0x00FF);
  EXPECT_EQ(tree.findPrivateSlot(0x0028, "E", false), 0x0010);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "b", false) + tree.findPrivateSlot(kGroup, "Z", false), 0);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "Z", true), 0x0012);
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "A"), 0x0010);
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "C"), 0x0012);
  const auto creator = tree.getTag(TagId(kGroup, 0x0012), OwnLayer);
  const TagInfo& info = creator->info();
  EXPECT_TRUE(info.id() == TagId(kGroup, 0x0012) && info.name() == "PrivateCreator" &&
              info.vr() == LO && info.multiplicity() == std::make_pair(1u, 1u));
  EXPECT_EQ(creator->toString() + std::to_string(creator->numberOfValues()), "C1");
  EXPECT_EQ(tree.tagsSize(), 9u);

  // A full group gives 0 and stays as it is.
  for (unsigned short e = 0x0010; e <= 0x00FF; ++e) {
    if (!tree.hasTag(TagId(kGroup, e))) put(tree, {e}, "full");
  }
  const unsigned int size = tree.tagsSize();
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "new") + tree.findPrivateSlot(kGroup, "new", true), 0);
  EXPECT_EQ(tree.tagsSize(), size);
  tree.removeTag(TagId(kGroup, 0x00FF));
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "new"), 0x00FF);
}

TEST(TreePrivateBlocksTest, NamesAndRemovesBlocksOfTheView) {
  auto parent = std::make_shared<Tree>();
  put(*parent, {0x0010, 0x1000, 0x10FF, 0x1100}, "A");
  Tree tree(parent);
  put(tree, {0x000F, 0x0FFF}, "Z");
  put(tree, {0x0011}, "");
  put(tree, {0x0013}, "P\\Q");
  put(tree, {0x00FF}, "F");
  put(tree, {0x0010, 0x1001}, "E", 0x0028);
  tree.addTag(std::make_shared<Tag>(TagInfo(TagId(kGroup, 0x0014), "", LO, {1, 1})));  // empty
  const std::pair<unsigned short, const char*> cases[] = {
      {0x1000, "A"}, {0x10FF, "A"}, {0x0010, "A"}, {0x1300, "P\\Q"}, {0xFFFF, "F"},
      {0x00FF, "F"}, {0x0FFF, ""},  {0x000F, ""},  {0x1201, ""},     {0x1400, ""}};
  for (const auto& [e, text] : cases) EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, e)), text);
  EXPECT_EQ(tree.getPrivateCreator(TagId(0x0028, 0x1001)), "");  // an even group
  QuiltraTest::expectQuiltraError([&] { tree.getPrivateCreator(TagId(kGroup, 0x1101)); },
                                  "Tag::toString",
                                  "VR of UN,OB,OW,SQ are not supported for strings");

  // Slots out of range remove nothing; the parent keeps what this layer's views lose.
  const std::size_t size = tree.tagIds(AllLayers)->size();
  for (unsigned short slot : {0x000F, 0x0100, 0x0010}) tree.removePrivateTags(kGroup, slot);
  EXPECT_EQ(tree.tagIds(AllLayers)->size(), size - 3);
  for (unsigned short e : {0x0010, 0x1000, 0x10FF}) EXPECT_FALSE(tree.hasTag(TagId(kGroup, e)));
  EXPECT_EQ(parent->tagsSize(), 4u);
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "C"), 0x0010);  // free again in this layer
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x1000)), "C");
}
