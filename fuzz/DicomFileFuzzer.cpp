// Feeds arbitrary bytes to the DICOM file reader, deflated data sets included. Every input
// must end in a data set or a Quiltra::Exception; what reads must write, when its syntax has
// a file encoding, and what is written must read again.
#include "DicomFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include <quiltra/quiltra.h>

namespace {

// Knows a few sequences and texts, so that implicit VR inputs reach the sequence reader.
class FuzzDict : public Quiltra::Dict {
 public:
  std::string syntaxName(Quiltra::TransferSyntax) const override { return {}; }
  Quiltra::TagInfo tagInfo(const std::string&) const override {
    throw Quiltra::Exception("FuzzDict::tagInfo", "unknown name");
  }
  Quiltra::TagInfo tagInfo(const Quiltra::TagId& id) const override {
    return Quiltra::TagInfo(id, "", vrOf(id.rawId()), {1, 1});
  }
  bool knowsTagId(const Quiltra::TagId& id) const override {
    return vrOf(id.rawId()) != Quiltra::UN;
  }
  bool knowsTagName(const std::string&) const override { return false; }

 private:
  static Quiltra::Vr vrOf(std::uint32_t id) {
    switch (id) {
      case 0x00081140:
      case 0x0040A730:
        return Quiltra::SQ;
      case 0x00100010:
        return Quiltra::PN;
      case 0x00280010:
        return Quiltra::US;
      case 0x7FE00010:
        return Quiltra::OW;
      default:
        return Quiltra::UN;
    }
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto dict = std::make_shared<FuzzDict>();
  Quiltra_DicomFile::ReadOptions options;
  options.dict = dict;
  Quiltra_DicomFile::DicomContent content;
  try {
    content = Quiltra_DicomFile::readDicomBytes(data, size, options);
  } catch (const Quiltra::Exception&) {
    return 0;
  }
  std::vector<unsigned char> written;
  try {
    written = Quiltra_DicomFile::writeDicomBytes(*content.tree, content.syntax, {});
  } catch (const Quiltra::Exception&) {
    return 0;  // a syntax without a file encoding, or values a file cannot hold
  }
  try {
    Quiltra_DicomFile::readDicomBytes(written.data(), written.size(), options);
  } catch (const Quiltra::Exception&) {
    std::abort();  // what this module writes, it must read
  }
  return 0;
}
