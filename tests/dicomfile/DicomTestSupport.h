#ifndef QUILTRA_TESTS_DICOMFILE_DICOMTESTSUPPORT_H_
#define QUILTRA_TESTS_DICOMFILE_DICOMTESTSUPPORT_H_

#include "DicomFile.h"

#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/dataset/Dict.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace QuiltraTest {

// The attributes of tests/data/dicom/sample.dump (private ones excepted), so that implicit VR
// files read with the representations the explicit ones carry.
class SampleDict : public Quiltra::Dict {
 public:
  SampleDict() {
    using Quiltra::Vr;
    const std::pair<unsigned, Vr> entries[] = {
        {0x00020000, Quiltra::UL}, {0x00020001, Quiltra::OB}, {0x00020002, Quiltra::UI},
        {0x00020003, Quiltra::UI}, {0x00020010, Quiltra::UI}, {0x00020012, Quiltra::UI},
        {0x00020013, Quiltra::SH}, {0x00080005, Quiltra::CS}, {0x00080008, Quiltra::CS},
        {0x00080016, Quiltra::UI}, {0x00080018, Quiltra::UI}, {0x00080020, Quiltra::DA},
        {0x00080030, Quiltra::TM}, {0x00080060, Quiltra::CS}, {0x00081030, Quiltra::LO},
        {0x00081140, Quiltra::SQ}, {0x00081150, Quiltra::UI}, {0x00081155, Quiltra::UI},
        {0x00082112, Quiltra::SQ}, {0x00100010, Quiltra::PN}, {0x00100020, Quiltra::LO},
        {0x00101030, Quiltra::DS}, {0x00180050, Quiltra::DS}, {0x00181063, Quiltra::DS},
        {0x00189087, Quiltra::FD}, {0x00189219, Quiltra::SS}, {0x0020000D, Quiltra::UI},
        {0x0020000E, Quiltra::UI}, {0x00200013, Quiltra::IS}, {0x00200032, Quiltra::DS},
        {0x00204000, Quiltra::LT}, {0x00209057, Quiltra::UL}, {0x00209241, Quiltra::FL},
        {0x00280002, Quiltra::US}, {0x00280004, Quiltra::CS}, {0x00280009, Quiltra::AT},
        {0x00280010, Quiltra::US}, {0x00280011, Quiltra::US}, {0x00280030, Quiltra::DS},
        {0x00280100, Quiltra::US}, {0x00280101, Quiltra::US}, {0x00280102, Quiltra::US},
        {0x00280103, Quiltra::US}, {0x00281052, Quiltra::DS}, {0x00281053, Quiltra::DS},
        {0x00281101, Quiltra::SS}, {0x0040A010, Quiltra::CS}, {0x0040A040, Quiltra::CS},
        {0x0040A161, Quiltra::FD}, {0x0040A162, Quiltra::SL}, {0x0040A300, Quiltra::SQ},
        {0x0040A30A, Quiltra::DS}, {0x0040A730, Quiltra::SQ}, {0x7FE00010, Quiltra::OW}};
    for (const auto& entry : entries) {
      const Quiltra::TagId id(entry.first);
      _byId[id] = Quiltra::TagInfo(id, "Name" + id.toString(), entry.second, {1, 1});
    }
  }
  std::string syntaxName(Quiltra::TransferSyntax) const override { return "syntax"; }
  Quiltra::TagInfo tagInfo(const std::string& name) const override {
    throw Quiltra::Exception("SampleDict::tagInfo", "unknown name " + name);
  }
  Quiltra::TagInfo tagInfo(const Quiltra::TagId& id) const override {
    auto found = _byId.find(id);
    if (found == _byId.end()) throw Quiltra::Exception("SampleDict::tagInfo", "unknown tag");
    return found->second;
  }
  bool knowsTagId(const Quiltra::TagId& id) const override { return _byId.count(id) != 0; }
  bool knowsTagName(const std::string&) const override { return false; }

 private:
  std::map<Quiltra::TagId, Quiltra::TagInfo> _byId;
};

inline std::string dicomTestFile(const std::string& name) {
  return std::string(QUILTRA_DICOM_TEST_FILES) + "/" + name;
}

inline std::vector<unsigned char> fileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), {});
}

inline Quiltra_DicomFile::ReadOptions sampleOptions() {
  Quiltra_DicomFile::ReadOptions options;
  options.dict = std::make_shared<SampleDict>();
  return options;
}

inline Quiltra_DicomFile::DicomContent readSample(const std::string& name) {
  return Quiltra_DicomFile::readDicomFile(dicomTestFile(name), sampleOptions());
}

inline Quiltra_DicomFile::DicomContent readBytes(
    const std::vector<unsigned char>& bytes,
    const Quiltra_DicomFile::ReadOptions& options = sampleOptions()) {
  return Quiltra_DicomFile::readDicomBytes(bytes.data(), bytes.size(), options);
}

// The raw bytes of value index of element id.
inline std::vector<unsigned char> valueBytes(const Quiltra::Tree& tree, unsigned id,
                                             unsigned index = 0) {
  auto tag = tree.getTag(Quiltra::TagId(id));
  if (!tag || index >= tag->numberOfValues()) return {};
  const Quiltra::Value& value = tag->getValue(index);
  return std::vector<unsigned char>(value.data(), value.data() + value.size());
}

// Where the data set starts in a file with preamble and meta group (after the group length).
inline std::size_t dataSetOffset(const std::vector<unsigned char>& file) {
  const std::size_t groupLength =
      file[140] | file[141] << 8 | file[142] << 16 | static_cast<std::size_t>(file[143]) << 24;
  return 144 + groupLength;
}

}  // namespace QuiltraTest

#endif  // QUILTRA_TESTS_DICOMFILE_DICOMTESTSUPPORT_H_
