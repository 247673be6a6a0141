#include "quiltra/io/TextDump.h"

#include <fstream>
#include <utility>

#include <quiltra/core/Exception.h>

namespace Quiltra {

TextDump::TextDump(std::shared_ptr<const Dict> dict, std::ostream& out)
    : Dump(std::move(dict), out) {}

TextDump::~TextDump() = default;

void TextDump::writeFile(const std::string& path, std::shared_ptr<IOParameter> /*selection*/,
                         std::shared_ptr<Message> message) {
  static const char* const kMethod = "TextDump::writeFile";
  std::ofstream file(path, std::ios::out | std::ios::trunc);
  if (!file.is_open()) throw Exception(kMethod, "cannot open file for writing");
  print(file, message);
  file.close();
  if (file.fail()) throw Exception(kMethod, "cannot write to file");
}

std::shared_ptr<Writer> TextDump::createInstance(const std::shared_ptr<const Dict>& dict) const {
  return std::make_shared<TextDump>(dict);
}

}  // namespace Quiltra
