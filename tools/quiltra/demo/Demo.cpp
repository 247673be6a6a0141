// The steps of the tour, in the order a host meets them: the dictionary module, a data set
// built by names, a layered change, the multi-frame grid normalised, character sets, the
// two storage forms, the dump, a DICOM file, and the smaller services.
#include "Demo.h"

#include "../Modules.h"
#include "DemoStorage.h"
#include "DemoStudy.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include <quiltra/quiltra.h>

namespace QuiltraTools {

namespace {

using namespace Quiltra;

void heading(const std::string& title) {
  std::cout << "\n== " << title << "\n";
}

void showDictionary(const Dict& dict) {
  heading("The standard dictionary, loaded as a module");
  std::cout << "modules loaded from " << Quiltra_Utils::ModuleDirectoryDelegate().directory()
            << ":";
  for (const std::string& name : Quiltra_Utils::ModuleDirectoryDelegate::loadedModules()) {
    std::cout << " " << name;
  }
  std::cout << "\n";
  for (const TagId& id : {TagId(0x0010, 0x0010), TagId(0x6002, 0x3000), dict.tagId("PixelData")}) {
    const TagInfo info = dict.tagInfo(id);
    std::cout << id.toString() << " " << info.name() << " " << toString(info.vr()) << " VM "
              << toString(info.multiplicity()) << "\n";
  }
}

// Converts the texts from Latin-1 to UTF-8 and names the new set in (0008,0005), which the
// conversion leaves to the caller.
void convertToUtf8(Message& message) {
  heading("Its texts converted from Latin-1 to UTF-8");
  std::cout << "character set learnt from (0008,0005): " << message.specificCharacterSet() << "\n";
  message.convertToCharacterSet(Quiltra_Unicode::UTF8CharacterSet());
  message.tags()
      ->getTag_rw(TagId(0x0008, 0x0005))
      ->setValue(Quiltra_Unicode::UTF8CharacterSet(), 0);
  std::cout << "now " << message.specificCharacterSet() << ": PatientName '"
            << message.tags()->getTag("PatientName")->toString() << "', StudyDescription '"
            << message.tags()->getTag("StudyDescription")->toString() << "'\n";
}

void showErrorsAndUids() {
  heading("Errors name the operation and the reason; causes chain");
  try {
    toVr("XX");
  } catch (const Exception& error) {
    std::cout << Exception(error, "Demo::readHeader", "bad representation").toString();
  }
  heading("Generated UIDs (example parts 1.2.3, 4 and 5)");
  try {
    if (!Quiltra_Utils::UIDGenerator::isInitialized()) {
      Quiltra_Utils::UIDGenerator::initialize("1.2.3", "4", "5");
    }
    for (int i = 0; i < 2; ++i) std::cout << Quiltra_Utils::UIDGenerator::uid() << "\n";
  } catch (const Exception& error) {
    std::cout << "no UIDs on this machine: " << error.toString();
  }
}

}  // namespace

void runDemo(const std::string& folder) {
  std::filesystem::create_directories(folder);
  std::cout << "Quiltra: DICOM-style data sets in memory\n";
  const auto dict = standardDictionary();
  showDictionary(*dict);

  heading("An enhanced multi-frame data set, built by attribute names");
  const auto study = buildStudy(dict, std::cout);

  heading("A change layered over it, the study untouched");
  const auto change = layerChange(study, std::cout);

  heading("The flat result, its grid normalised: equal per-frame values become shared");
  const auto flat = change->mergedCopy(AllLayers);
  flat->setDict(dict);
  normaliseGrid(flat, std::cout);

  auto message = std::make_shared<Message>("", EXPLICIT_LITTLE_ENDIAN);
  message->setTags(flat);
  convertToUtf8(*message);

  heading("Stored in both storage forms and read back");
  const auto readBack = storeBothForms(message, folder, std::cout);

  heading("What was read back, through the dump writer module");
  dumpWriter()->write(nullptr, readBack);

  heading("Written as a DICOM file and read back through the DICOM file module");
  storeDicomFile(message, folder, std::cout);

  showErrorsAndUids();
  std::cout << "\nThe stored files are in " << folder << "; print them with quiltra dump.\n";
}

}  // namespace QuiltraTools
