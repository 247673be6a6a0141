#include "DicomFileIO.h"

#include "DicomFile.h"

#include <utility>

#include <quiltra/core/Exception.h>
#include <quiltra/dataset/Message.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/io/IOParameter.h>
#include <quiltra/services/Quiltra_Unicode.h>

namespace Quiltra_DicomFile {

namespace {
ElementFilter filterOf(const std::shared_ptr<Quiltra::IOParameter>& selection) {
  if (!selection) return {};
  return [selection](const Quiltra::TagInfo& info) { return selection->process(info); };
}
}  // namespace

std::shared_ptr<Quiltra::Message> DicomFileReader::readFile(
    const std::string& path, std::shared_ptr<Quiltra::IOParameter> selection) {
  ReadOptions options;
  options.dict = dict();
  options.filter = filterOf(selection);
  DicomContent content = readDicomFile(path, options);
  auto message = std::make_shared<Quiltra::Message>(std::string(), content.syntax);
  message->setTags(content.tree);
  if (message->specificCharacterSet().empty()) {
    auto withDefault =
        std::make_shared<Quiltra::Message>(Quiltra_Unicode::defaultCharacterSet(), content.syntax);
    withDefault->setTags(content.tree);
    return withDefault;
  }
  return message;
}

std::shared_ptr<Quiltra::Reader> DicomFileReader::createInstance(
    const std::shared_ptr<const Quiltra::Dict>& dict) const {
  return std::make_shared<DicomFileReader>(dict);
}

void DicomFileReader::registerPrototype() {
  setPrototype(std::make_shared<DicomFileReader>());
}

void DicomFileWriter::writeFile(const std::string& path,
                                std::shared_ptr<Quiltra::IOParameter> selection,
                                std::shared_ptr<Quiltra::Message> message) {
  if (!message || !std::as_const(*message).tags()) {
    throw Quiltra::Exception("DicomFile::write", "no data set to write");
  }
  WriteOptions options;
  options.filter = filterOf(selection);
  writeDicomFile(*std::as_const(*message).tags(), message->syntax(), path, options);
}

std::shared_ptr<Quiltra::Writer> DicomFileWriter::createInstance(
    const std::shared_ptr<const Quiltra::Dict>& dict) const {
  return std::make_shared<DicomFileWriter>(dict);
}

void DicomFileWriter::registerPrototype() {
  setPrototype(std::make_shared<DicomFileWriter>());
}

}  // namespace Quiltra_DicomFile
