#include "DemoStorage.h"

#include "../Modules.h"
#include "../StoredFile.h"

#include <filesystem>
#include <utility>

#include <quiltra/quiltra.h>

namespace QuiltraTools {

namespace {

using namespace Quiltra;

constexpr unsigned short kMetaGroup = 0x0002;

// Whether both hold the same elements (values and items), leaving out the meta group that
// a DICOM file adds.
bool sameElements(const Tree& expected, const Tree& actual) {
  bool same = true;
  std::size_t compared = 0;
  expected.forEachTag(AllLayers, [&](const TagId& id, const Tag& tag) {
    if (!same) return;
    const auto other = actual.getTag(id);
    same = other && *other == tag;
    ++compared;
  });
  actual.forEachTag(AllLayers, [&compared](const TagId& id, const Tag&) {
    if (id.groupId() != kMetaGroup) --compared;
  });
  return same && compared == 0;
}

std::string fileSize(const std::string& path) {
  return std::to_string(std::filesystem::file_size(path)) + " bytes";
}

}  // namespace

std::shared_ptr<Message> storeBothForms(const std::shared_ptr<Message>& message,
                                        const std::string& folder, std::ostream& out) {
  const std::string binary = folder + "/study.bin";
  const std::string text = folder + "/study.qtx";
  writeStored(binary, message, StorageForm::Binary);
  writeStored(text, message, StorageForm::Text);
  const auto fromBinary = readStored(binary).message;
  const auto fromText = readStored(text).message;
  const Tree& stored = *std::as_const(*message).tags();
  out << binary << " (" << fileSize(binary) << "): read back "
      << (sameElements(stored, *std::as_const(*fromBinary).tags()) ? "identical" : "DIFFERENT")
      << "\n";
  out << text << " (" << fileSize(text) << "): read back "
      << (sameElements(stored, *std::as_const(*fromText).tags()) ? "identical" : "DIFFERENT")
      << "\n";
  return fromBinary;
}

void storeDicomFile(const std::shared_ptr<Message>& message, const std::string& folder,
                    std::ostream& out) {
  const std::string path = folder + "/study.dcm";
  writeStored(path, message, StorageForm::Dicom);
  const auto read = dicomReader()->readFile(path, nullptr);
  const Tree& tree = *std::as_const(*read).tags();
  out << path << " (" << fileSize(path) << ", " << toString(read->syntax()) << ", "
      << read->specificCharacterSet() << "); its meta information:\n";
  tree.forEachTag(AllLayers, [&out](const TagId& id, const Tag& tag) {
    if (id.groupId() != kMetaGroup) return;
    out << "  " << id.toString() << " " << tag.info().name() << " "
        << (isType(tag.info().vr(), VRC_STRING) ? tag.toString() : "...") << "\n";
  });
  out << "data set read back: "
      << (sameElements(*std::as_const(*message).tags(), tree) ? "identical" : "DIFFERENT") << "\n";
}

}  // namespace QuiltraTools
