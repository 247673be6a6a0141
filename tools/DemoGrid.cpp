#include "DemoGrid.h"

#include <memory>
#include <string>

#include <quiltra/quiltra.h>

namespace QuiltraTools {

namespace {

using namespace Quiltra;

std::shared_ptr<Tag> element(const TagId& id, const std::string& name, Vr vr,
                             const std::string& value) {
  auto tag = std::make_shared<Tag>(TagInfo(id, name, vr, {1, 1}));
  tag->addValue(value);
  return tag;
}

// One line per element, sequence items indented below their element.
void printTree(const Tree& tree, std::ostream& out, const std::string& indent) {
  const auto ids = tree.tagIds(OwnLayer);
  for (const TagId& id : *ids) {
    const auto tag = tree.getTag(id, OwnLayer);
    out << indent << id.toString() << " " << toString(tag->info().vr()) << " "
        << tag->info().name();
    if (!tag->isSequence()) {
      out << " = " << tag->toString() << "\n";
      continue;
    }
    out << ", " << tag->numberOfSequenceItems() << " items\n";
    for (unsigned int i = 0; i < tag->numberOfSequenceItems(); ++i) {
      const auto& item = tag->sequenceItems()[i];
      out << indent << "  item " << i << (item && item->tagsSize() > 0 ? "" : " (empty)") << "\n";
      if (item) printTree(*item, out, indent + "    ");
    }
  }
}

}  // namespace

void showGrid(std::ostream& out) {
  out << "\n== A 3 x 2 grid of frames in one data set, before and after normalisation\n";
  auto series = std::make_shared<Tree>();
  StructuredMF grid(series, 3, 2, 1);
  series->addTag(element(TagId(0x0008, 0x0060), "Modality", CS, "MR"));
  for (unsigned int j = 0; j < 2; ++j) {
    for (unsigned int i = 0; i < 3; ++i) {
      if (i == 2 && j == 1) continue;  // one position stays empty
      grid.setFrameIndexForGridPosition(i + 3 * j, i, j, 0);
      grid.setTagForGridPosition(element(TagId(0x0018, 0x0050), "SliceThickness", DS, "2.5"), i, j,
                                 0);
      grid.setTagForGridPosition(
          element(TagId(0x0020, 0x0032), "ImagePositionPatient", DS,
                  "0\\" + std::to_string(i * 10) + "\\" + std::to_string(j * 5)),
          i, j, 0);
    }
  }
  printTree(*series, out, "");
  grid.normalizeTagStructure(0.0, true);
  out << "-- normalised: the equal slice thickness moved to the top level\n";
  printTree(*series, out, "");
  out << "-- position [1, 1] extracted with the shared tags (frame index "
      << grid.frameIndexForGridPosition(1, 1, 0) << ")\n";
  printTree(*grid.extractTagTreeForGridPosition(1, 1, 0, StructuredMF::MergedWithShared), out, "");
}

}  // namespace QuiltraTools
