#include "Modules.h"

#include <string>

#include <quiltra/core/Exception.h>
#include <quiltra/io/ModuleDirectoryDelegate.h>

namespace QuiltraTools {

namespace {

using Quiltra::Exception;
using Quiltra_Utils::ModuleDirectoryDelegate;

// A writer from the prototype that the named module registers.
std::shared_ptr<Quiltra::Writer> writerOf(const char* module) {
  const auto dict = standardDictionary();
  ModuleDirectoryDelegate::registerModule(module);
  return Quiltra::Writer::create(dict);
}

}  // namespace

std::shared_ptr<const Quiltra::Dict> standardDictionary() {
  static ModuleDirectoryDelegate modules;
  const auto dict = Quiltra::Dict::singleton(&modules);
  if (!dict) throw Exception("quiltra", "no dictionary module in " + modules.directory());
  return dict;
}

std::shared_ptr<Quiltra::Reader> dicomReader() {
  return Quiltra::Reader::create(standardDictionary());
}

std::shared_ptr<Quiltra::Writer> dicomWriter() {
  return writerOf("dicomfile");
}

std::shared_ptr<Quiltra::Dump> dumpWriter() {
  auto dump = std::dynamic_pointer_cast<Quiltra::Dump>(writerOf("dumpwriter"));
  if (!dump) throw Exception("quiltra", "the dumpwriter module registered no dump");
  return dump;
}

}  // namespace QuiltraTools
