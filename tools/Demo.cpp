#include "Demo.h"

#include "DemoCharset.h"
#include "DemoDictionary.h"
#include "DemoDump.h"
#include "DemoGrid.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include <quiltra/quiltra.h>

namespace QuiltraTools {

namespace {

using namespace Quiltra;

void heading(std::ostream& out, const std::string& title) {
  out << "\n== " << title << "\n";
}

std::shared_ptr<Tag> element(const Dict& dict, const std::string& name) {
  return std::make_shared<Tag>(TagInfo(dict.tagId(name), dict));
}

void showErrors(std::ostream& out) {
  heading(out, "Errors carry the operation, the reason and the cause");
  try {
    toVr("XX");
  } catch (const Exception& error) {
    out << Exception(error, "Demo::readHeader", "bad representation").toString();
  }
}

void showRepresentations(std::ostream& out) {
  heading(out, "Value representations and conversions");
  out << "toVr(\"DS\") = " << toVr("DS") << ", DS reads as double: " << isType(DS, VRC_DOUBLE)
      << ", as int: " << isType(DS, VRC_INT) << "\n";
  out << "transfer syntax 2 = " << toString(EXPLICIT_LITTLE_ENDIAN) << "\n";
  const auto dateTime = Quiltra_Utils::toDateTime("20231117093015.25+0100");
  out << "20231117093015.25+0100 -> " << Quiltra_Utils::toString(dateTime) << "\n";
  out << "hexToUInt(\"7fe0\") = " << Quiltra_Utils::hexToUInt("7fe0")
      << ", toString(1234.567) = " << Quiltra_Utils::toString(1234.567) << "\n";
}

std::shared_ptr<Tree> buildStudy(const Dict& dict, std::ostream& out) {
  heading(out, "A data set built from dictionary descriptions");
  auto study = std::make_shared<Tree>();
  auto name = element(dict, "PatientName");
  name->addValue(std::string("Doe^Jane"));
  study->addTag(name);
  auto id = element(dict, "PatientID");
  id->addValue(std::string("QA-0042"));
  study->addTag(id);
  auto rows = element(dict, "Rows");
  rows->addValue(static_cast<unsigned short>(512));
  study->addTag(rows);
  auto position = element(dict, "ImagePositionPatient");
  position->addValue(std::string("-125.5\\-98.25\\42"));
  study->addTag(position);
  for (const auto& entry : study->tags()) {
    const TagInfo& info = entry.second->info();
    out << info.id().toString() << " " << toString(info.vr()) << " " << info.name() << " = "
        << entry.second->toString() << "\n";
  }
  out << "ImagePositionPatient z as double: " << position->toDouble(2) << "\n";
  return study;
}

void showLayers(const std::shared_ptr<Tree>& study, std::ostream& out) {
  heading(out, "A change layered over the data set, the original untouched");
  auto change = std::make_shared<Tree>(study);
  change->setDict(study->getDict());
  auto name = study->getTag("PatientName", AllLayers)->copy();
  name->setValue(std::string("Anonymous"), 0);
  change->addTag(name);
  change->removeTag(TagId(0x0010, 0x0020));
  out << "change sees PatientName = " << change->getTag("PatientName", AllLayers)->toString()
      << ", PatientID present: " << change->hasTag("PatientID", AllLayers) << "\n";
  out << "original keeps PatientName = " << study->getTag("PatientName", AllLayers)->toString()
      << ", PatientID present: " << study->hasTag("PatientID", AllLayers) << "\n";
  const auto flat = change->mergedCopy(AllLayers);
  out << "merged copy holds " << flat->tagsSize() << " elements, no parent: " << !flat->hasParent()
      << "\n";
}

void showPrivateBlock(const std::shared_ptr<Tree>& study, std::ostream& out) {
  heading(out, "Private blocks");
  const unsigned short slot = study->getPrivateSlot(0x0029, "Quiltra demo");
  auto note = std::make_shared<Tag>(
      TagInfo(TagId(0x0029, static_cast<unsigned short>(slot << 8 | 0x01)), "", LO, {1, 1}));
  note->addValue(std::string("kept by the demo"));
  study->addTag(note);
  out << "slot 0x" << std::hex << slot << std::dec << "; creator of "
      << note->info().id().toString() << " is \"" << study->getPrivateCreator(note->info().id())
      << "\"\n";
}

void showStorage(const std::shared_ptr<Tree>& study, std::ostream& out) {
  heading(out, "Storage: binary file and text stream");
  const std::string path = (std::filesystem::temp_directory_path() / "quiltra-demo.bin").string();
  {
    Quiltra_Serialization::FileSink sink(path);
    study->serializeX(sink);
  }
  Tree fromFile;
  {
    Quiltra_Serialization::FileSource source(path);
    fromFile.deserializeX(source);
  }
  std::remove(path.c_str());
  bool same = fromFile.tagsSize() == study->tagsSize();
  for (const auto& entry : study->tags()) {
    same = same && *fromFile.getTag(entry.first, OwnLayer) == *entry.second;
  }
  out << "binary file round trip: " << (same ? "identical" : "DIFFERENT") << "\n";
  std::ostringstream text;
  study->getTag(TagId(0x0028, 0x0010), AllLayers)->toStream(text);
  out << "Rows as text stream: " << text.str() << "\n";
}

}  // namespace

int runDemo(std::ostream& out) {
  out << "Quiltra: DICOM-style data sets in memory\n";
  try {
    showErrors(out);
    showRepresentations(out);
    DemoLoader loader;
    const auto dict = Dict::singleton(&loader);
    auto study = buildStudy(*dict, out);
    study->setDict(dict);
    showLayers(study, out);
    showPrivateBlock(study, out);
    showStorage(study, out);
    showDumpAndUids(study, out);
    showGrid(out);
    showCharacterSets(out);
  } catch (const Exception& error) {
    out << "demo failed: " << error.toString();
    return 1;
  }
  return 0;
}

}  // namespace QuiltraTools
