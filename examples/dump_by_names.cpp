// A minimal host: loads the standard dictionary through the module loader, builds a data
// set by attribute names and prints it with the text dump.
#include <iostream>
#include <memory>
#include <string>
#include <utility>

#include <quiltra/quiltra.h>

int main() {
  using namespace Quiltra;
  try {
    // The modules installed beside the library: the dictionary among them.
    Quiltra_Utils::ModuleDirectoryDelegate modules;
    const std::shared_ptr<const Dict> dict = Dict::singleton(&modules);
    if (!dict) {
      std::cerr << "no dictionary module in " << modules.directory() << "\n";
      return 1;
    }

    auto study = std::make_shared<Tree>();
    study->setDict(dict);
    const std::pair<const char*, const char*> attributes[] = {{"PatientName", "Doe^Jane"},
                                                              {"PatientID", "QA-0042"},
                                                              {"Modality", "MR"},
                                                              {"Rows", "512"},
                                                              {"ImageType", "ORIGINAL\\PRIMARY"},
                                                              {"PixelSpacing", "0.5\\0.5"}};
    for (const auto& [name, text] : attributes) {
      // The dictionary gives each element its tag, representation and multiplicity.
      auto element = std::make_shared<Tag>(TagInfo(dict->tagId(name), *dict));
      element->addValue(std::string(text));  // split at backslashes; US parsed to binary
      study->addTag(element);
    }

    auto message = std::make_shared<Message>("ISO_IR 192", EXPLICIT_LITTLE_ENDIAN);
    message->setTags(study);
    TextDump(dict).write(nullptr, message);  // to standard output
  } catch (const Exception& error) {
    std::cerr << error.toString();
    return 1;
  }
  return 0;
}
