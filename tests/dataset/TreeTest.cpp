#include "support/TestDict.h"

#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <type_traits>
#include <utility>

#include <quiltra/quiltra.h>

using namespace Quiltra;

namespace {

const TagId kModality(0x0008, 0x0060), kPatientId(0x0010, 0x0020);
const TagId kPatientName(0x0010, 0x0010), kRows(0x0028, 0x0010);
const TagId kIds[] = {kModality, kPatientId, kPatientName, kRows};

std::shared_ptr<Tag> makeTag(const TagId& id, const std::string& name = "", Vr vr = LO) {
  auto tag = std::make_shared<Tag>(TagInfo(id, name, vr, {1, 1}));
  if (vr != SQ) tag->addValue(std::string("v"));
  return tag;
}

std::shared_ptr<Tree> layer(std::shared_ptr<const Tree> parent, std::initializer_list<TagId> ids,
                            const std::string& name = "") {
  auto tree = std::make_shared<Tree>(parent);
  for (const TagId& id : ids) tree->addTag(makeTag(id, name));
  return tree;
}

// What the lookups see under each selector: M(odality), (patient)I(d), P(atientName), R(ows).
std::string views(const Tree& tree, std::initializer_list<int> selectors = {0, 1, 2}) {
  std::string seen;
  for (int s : selectors) {
    seen += seen.empty() ? "" : " ";
    for (const TagId& id : kIds) seen += tree.getTag(id, TagSelector(s)) ? "MIPR"[&id - kIds] : '-';
  }
  return seen;
}

}  // namespace

// Lookups see through the selected layers, by name through the own dictionary (taken at
// construction); copies and assignment deep-copy the own layer and marks over the same parent.
TEST(TreeTest, LayersShowSelectedViewsAndCopyOverTheSameParent) {
  auto root = layer(nullptr, {kModality, kPatientId});
  auto early = layer(root, {});
  root->setDict(std::make_shared<QuiltraTest::TestDict>());
  auto middle = layer(root, {kPatientName});
  middle->removeTag(kPatientId);
  auto top = layer(middle, {kRows});
  EXPECT_EQ(views(*top), "M-PR --PR ---R");  // AllLayers, ExceptRoot, OwnLayer
  EXPECT_EQ(views(*middle), "M-P- --P- --P-");
  EXPECT_EQ(views(*root), "MI-- ---- MI--");
  EXPECT_EQ(views(*top, {-1, 3}), "---- ----");
  EXPECT_EQ(top->getTag(kModality).get(), root->getTag(kModality).get());  // no copy
  EXPECT_EQ(top->getTag_rw(kModality), nullptr);                           // own layer only
  EXPECT_FALSE(early->hasTag("Modality") || early->getTag("Modality"));
  EXPECT_TRUE(top->hasTag("PatientName") &&
              top->getTag("PatientName") == middle->getTag(kPatientName));
  EXPECT_FALSE(top->hasTag("PatientName", OwnLayer) || top->getTag("PatientName", OwnLayer));
  EXPECT_FALSE(top->hasTag("NoSuchAttribute") || top->getTag("NoSuchAttribute"));  // swallowed
  const long owners = root.use_count();
  EXPECT_EQ(top->root().use_count(), owners + 1);
  EXPECT_EQ(Tree(*root).root(), nullptr);  // a copy is a new object without owners

  Tree assigned(*layer(nullptr, {kRows}));
  assigned = *middle;
  const auto copied = middle->copy();
  for (const Tree* copy : {&assigned, copied.get()}) {
    EXPECT_EQ(copy->parent(), root);
    EXPECT_EQ(copy->getDict(), root->getDict());
    EXPECT_EQ(views(*copy) + " " + std::to_string(copy->tagsSize()), "M-P- --P- --P- 2");
    EXPECT_NE(copy->getTag(kPatientName), middle->getTag(kPatientName));
  }
}

// Placeholders carry the parent's TagInfo and no values; setTag and addTag clear the mark.
TEST(TreeTest, RemoveTagLeavesMarkedPlaceholderOnlyForInheritedIds) {
  auto parent = layer(nullptr, {kModality, kPatientName}, "FromParent");
  auto child = layer(parent, {kModality, kRows}, "FromChild");
  child->removeTags(std::make_shared<Tree::TagIdList>(
      Tree::TagIdList{kModality, kPatientName, kRows, kPatientId}));
  for (const auto& [id, tag] : child->tags()) {
    EXPECT_EQ(tag->info().name() + std::to_string(tag->numberOfValues()), "FromParent0") << id;
  }
  EXPECT_EQ(views(*child) + " " + std::to_string(child->tagsSize()), "---- ---- ---- 2");
  EXPECT_EQ(child->getTag_rw(kModality), nullptr);
  const auto placeholder = child->tags().at(kModality);
  child->removeTag(kModality);  // already marked: nothing changes
  EXPECT_EQ(child->tags().at(kModality), placeholder);
  child->setTag(makeTag(kPatientName));
  child->addTag(kModality, makeTag(kRows));
  EXPECT_EQ(views(*child), "M-P- M-P- M-P-");
  parent->removeTag(kModality);  // a root erases
  EXPECT_EQ(parent->tagsSize(), 1u);
}

// A holder of a constant Tree (a child's parent(), root()) could once change the parent's
// elements through tags(); now only a writable Tree lists writable elements.
template <class T, class = void>
struct ListsTagsThrough : std::false_type {};
template <class T>
struct ListsTagsThrough<T, std::void_t<decltype(std::declval<T&>().tags())>> : std::true_type {};

TEST(TreeTest, ConstantTreeListsOnlyConstantElements) {
  static_assert(ListsTagsThrough<Tree>::value && !ListsTagsThrough<const Tree>::value);
  static_assert(std::is_same_v<decltype(std::declval<const Tree&>().constTags()),
                               std::map<TagId, std::shared_ptr<const Tag>>>);
  auto parent = layer(nullptr, {kModality, kPatientName});
  auto child = layer(parent, {kRows});
  child->removeTag(kModality);
  const Tree::ConstTagMap listed = child->parent()->constTags();
  ASSERT_EQ(listed.size(), 2u);
  EXPECT_EQ(listed.at(kModality), parent->getTag(kModality));  // the stored objects, shared
  const Tree::ConstTagMap own = child->constTags();            // placeholders included
  ASSERT_EQ(own.size(), 2u);
  EXPECT_EQ(own.at(kModality), child->tags().at(kModality));
}

// std::move of a Tree once deep-copied every element and left the source full.
TEST(TreeTest, MovesTakeOverTheContentWithoutCopying) {
  static_assert(std::is_nothrow_move_constructible_v<Tree> &&
                std::is_nothrow_move_assignable_v<Tree>);
  auto parent = layer(nullptr, {kModality, kPatientName});
  parent->setDict(std::make_shared<QuiltraTest::TestDict>());
  Tree source(parent);
  source.addTag(makeTag(kRows));
  source.removeTag(kModality);
  const auto rows = source.getTag(kRows);
  Tree moved(std::move(source));
  EXPECT_EQ(moved.getTag(kRows), rows);
  EXPECT_EQ(views(moved) + " " + std::to_string(moved.tagsSize()), "--PR ---R ---R 2");
  EXPECT_TRUE(moved.hasTag("PatientName"));
  EXPECT_TRUE(source.tagsSize() == 0 && !source.hasParent() && !source.hasDict());
  EXPECT_EQ(views(source), "---- ---- ----");

  // Assigning from a Tree that lives inside the target's own item.
  auto outer = std::make_shared<Tree>();
  outer->addTag(makeTag(kPatientId, "", SQ));
  const auto inner = layer(nullptr, {kRows});
  outer->getTag_rw(kPatientId)->addSequenceItem(inner);
  Tree* innerTree = inner.get();
  const auto innerRows = inner->getTag(kRows);
  *outer = std::move(*innerTree);
  EXPECT_EQ(outer->getTag(kRows), innerRows);
  EXPECT_EQ(views(*outer), "---R ---- ---R");
  moved = std::move(*outer);
  EXPECT_EQ(moved.getTag(kRows), innerRows);
  EXPECT_FALSE(moved.hasParent());
}

TEST(TreeTest, SetDictReachesNestedItemsButNotParent) {
  auto parent = layer(nullptr, {});
  auto tree = layer(parent, {}), item = tree;
  for (int level = 0; level < 2; ++level) {
    item->addTag(makeTag(kRows, "", SQ));
    item->getTag_rw(kRows)->addSequenceItem();  // a null slot is skipped
    item = item->getTag_rw(kRows)->addSequenceItem() = layer(nullptr, {});
  }
  const auto dict = std::make_shared<QuiltraTest::TestDict>();
  tree->setDict(dict);
  EXPECT_EQ(item->getDict(), dict);  // two levels down
  EXPECT_FALSE(parent->hasDict());
}
