// Re-encodes a DICOM file, for the script that has another toolkit check what this module
// writes; implicit VR files are read with the test files' dictionary. Usage: DicomConvert IN OUT
// implicit-le|explicit-le|explicit-be|deflated|same
#include "DicomFile.h"
#include "DicomTestSupport.h"

#include <iostream>
#include <map>
#include <string>

#include <quiltra/core/Exception.h>

int main(int argc, char** argv) {
  const std::map<std::string, Quiltra::TransferSyntax> syntaxes = {
      {"implicit-le", Quiltra::IMPLICIT_LITTLE_ENDIAN},
      {"explicit-le", Quiltra::EXPLICIT_LITTLE_ENDIAN},
      {"explicit-be", Quiltra::EXPLICIT_BIG_ENDIAN},
      {"deflated", Quiltra::DEFLATED_EXPLICIT_LITTLE_ENDIAN}};
  if (argc != 4 || (syntaxes.count(argv[3]) == 0 && std::string(argv[3]) != "same")) {
    std::cerr << "usage: DicomConvert IN OUT implicit-le|explicit-le|explicit-be|deflated|same\n";
    return 2;
  }
  try {
    auto content = Quiltra_DicomFile::readDicomFile(argv[1], QuiltraTest::sampleOptions());
    const auto syntax = syntaxes.count(argv[3]) ? syntaxes.at(argv[3]) : content.syntax;
    Quiltra_DicomFile::writeDicomFile(*content.tree, syntax, argv[2], {});
  } catch (const Quiltra::Exception& error) {
    std::cerr << error.toString();
    return 1;
  }
  return 0;
}
