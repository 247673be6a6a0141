#ifndef QUILTRA_TESTS_MULTIFRAME_GRIDFIXTURES_H_
#define QUILTRA_TESTS_MULTIFRAME_GRIDFIXTURES_H_

#include <memory>
#include <string>
#include <vector>

#include <quiltra/quiltra.h>

// A small vocabulary for the structured multi-frame tests.
namespace GridFixtures {

using Position = std::vector<unsigned int>;

const Quiltra::TagId kModality(0x0008, 0x0060);
const Quiltra::TagId kSopClass(0x0008, 0x0016);
const Quiltra::TagId kSliceThickness(0x0018, 0x0050);
const Quiltra::TagId kImagePosition(0x0020, 0x0032);
const Quiltra::TagId kPixelSpacing(0x0028, 0x0030);

// An element of the view's block with slot ss: (0041,ss00 | offset).
inline Quiltra::TagId blockId(unsigned short slot, unsigned short offset) {
  return Quiltra::TagId(0x0041, static_cast<unsigned short>(slot << 8 | offset));
}
inline Quiltra::TagId creatorId(unsigned short slot) {
  return Quiltra::TagId(0x0041, slot);
}

// A text element with the given values (split at backslashes), LO unless told.
inline std::shared_ptr<Quiltra::Tag> text(const Quiltra::TagId& id, const std::string& value,
                                          Quiltra::Vr vr = Quiltra::LO) {
  auto tag = std::make_shared<Quiltra::Tag>(Quiltra::TagInfo(id, "", vr, {1, 1}));
  tag->addValue(value);
  return tag;
}

// A DS element with one value.
inline std::shared_ptr<Quiltra::Tag> decimal(const Quiltra::TagId& id, double value) {
  auto tag = std::make_shared<Quiltra::Tag>(Quiltra::TagInfo(id, "", Quiltra::DS, {1, 1}));
  tag->addValue(value);
  return tag;
}

// A sequence element with the given items.
inline std::shared_ptr<Quiltra::Tag> sequence(
    const Quiltra::TagId& id, const std::vector<std::shared_ptr<Quiltra::Tree>>& items) {
  auto tag = std::make_shared<Quiltra::Tag>(Quiltra::TagInfo(id, "", Quiltra::SQ, {1, 1}));
  for (const auto& item : items) tag->addSequenceItem(item);
  return tag;
}

// A data set holding the given elements themselves.
inline std::shared_ptr<Quiltra::Tree> treeOf(
    const std::vector<std::shared_ptr<Quiltra::Tag>>& tags) {
  auto tree = std::make_shared<Quiltra::Tree>();
  for (const auto& tag : tags) tree->addTag(tag);
  return tree;
}

// A read-only view of tree.
inline Quiltra::StructuredMF readOnly(std::shared_ptr<const Quiltra::Tree> tree) {
  return Quiltra::StructuredMF(std::move(tree));
}

// The values of a found element as text, or "-" when there is none.
inline std::string show(const std::shared_ptr<const Quiltra::Tag>& tag) {
  return tag ? tag->toString() : "-";
}

// The ids a data set shows, as "(gggg,eeee) ..." in ascending order.
inline std::string idsOf(const Quiltra::Tree& tree,
                         Quiltra::TagSelector selector = Quiltra::AllLayers) {
  std::string listed;
  const auto ids = tree.tagIds(selector);
  for (const Quiltra::TagId& id : *ids) {
    listed += (listed.empty() ? "" : " ") + id.toString();
  }
  return listed;
}

// Item index of sequence element id of tree (through all layers); empty when absent.
inline std::shared_ptr<const Quiltra::Tree> item(const Quiltra::Tree& tree,
                                                 const Quiltra::TagId& id, unsigned int index) {
  const auto tag = tree.getTag(id, Quiltra::AllLayers);
  if (!tag || index >= tag->numberOfSequenceItems()) return nullptr;
  return tag->sequenceItems()[index];
}

}  // namespace GridFixtures

#endif  // QUILTRA_TESTS_MULTIFRAME_GRIDFIXTURES_H_
