#include "DemoDump.h"

#include <string>

namespace QuiltraTools {

namespace {

using namespace Quiltra;

std::shared_ptr<Message> messageOver(std::shared_ptr<Tree> tree) {
  auto message = std::make_shared<Message>("ISO_IR 192", EXPLICIT_LITTLE_ENDIAN);
  message->setTags(std::move(tree));
  return message;
}

// A child layer that renames the patient, deletes the patient id and adds a content
// sequence whose item holds a nameless element that the dictionary describes.
std::shared_ptr<Tree> layeredChange(const std::shared_ptr<Tree>& study) {
  auto change = std::make_shared<Tree>(study);
  auto name = std::make_shared<Tag>(TagInfo(TagId(0x0010, 0x0010), *study->getDict()));
  name->addValue(std::string("Anonymous"));
  change->addTag(name);
  change->removeTag(TagId(0x0010, 0x0020));
  auto item = std::make_shared<Tree>();
  auto thickness = std::make_shared<Tag>(TagInfo(TagId(0x0018, 0x0050), "", DS, {1, 1}));
  thickness->addValue(std::string("1.25"));
  item->addTag(thickness);
  auto content = std::make_shared<Tag>(TagInfo(TagId(0x0040, 0xA730), *study->getDict()));
  content->addSequenceItem(item);
  change->addTag(content);
  return change;
}

void showUids(std::ostream& out) {
  out << "\n== Generated UIDs (example texts 1.2.3, 4 and 5)\n";
  try {
    if (!Quiltra_Utils::UIDGenerator::isInitialized()) {
      Quiltra_Utils::UIDGenerator::initialize("1.2.3", "4", "5");
    }
    for (int i = 0; i < 3; ++i) out << Quiltra_Utils::UIDGenerator::uid() << "\n";
  } catch (const Exception& error) {
    out << "no UIDs on this machine: " << error.toString();
  }
}

}  // namespace

void showDumpAndUids(const std::shared_ptr<Tree>& study, std::ostream& out) {
  TextDump dump(study->getDict(), out);
  out << "\n== The data set through TextDump\n";
  dump.write(nullptr, messageOver(study));
  out << "\n== The layered change through TextDump: inherited tags shown, deleted ones not\n";
  dump.write(nullptr, messageOver(layeredChange(study)));
  showUids(out);
}

}  // namespace QuiltraTools
