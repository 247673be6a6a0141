#include "DemoDictionary.h"

namespace QuiltraTools {

using namespace Quiltra;

DemoDictionary::DemoDictionary() {
  const TagInfo known[] = {
      {TagId(0x0008, 0x0005), "SpecificCharacterSet", CS, {1, 0xFFFFFFFFu}},
      {TagId(0x0008, 0x0020), "StudyDate", DA, {1, 1}},
      {TagId(0x0008, 0x002A), "AcquisitionDateTime", DT, {1, 1}},
      {TagId(0x0008, 0x0060), "Modality", CS, {1, 1}},
      {TagId(0x0010, 0x0010), "PatientName", PN, {1, 1}},
      {TagId(0x0010, 0x0020), "PatientID", LO, {1, 1}},
      {TagId(0x0018, 0x0050), "SliceThickness", DS, {1, 1}},
      {TagId(0x0020, 0x0032), "ImagePositionPatient", DS, {3, 3}},
      {TagId(0x0028, 0x0010), "Rows", US, {1, 1}},
      {TagId(0x0028, 0x0011), "Columns", US, {1, 1}},
      {TagId(0x0040, 0xA730), "ContentSequence", SQ, {1, 1}},
  };
  for (const TagInfo& info : known) {
    _byId[info.id()] = info;
    _byName[info.name()] = info.id();
  }
}

std::string DemoDictionary::syntaxName(TransferSyntax syntax) const {
  return toString(syntax);
}

TagInfo DemoDictionary::tagInfo(const std::string& name) const {
  auto found = _byName.find(name);
  if (found == _byName.end()) throw Exception("DemoDictionary::tagInfo", "unknown name " + name);
  return tagInfo(found->second);
}

TagInfo DemoDictionary::tagInfo(const TagId& id) const {
  auto found = _byId.find(id);
  if (found == _byId.end()) return TagInfo(id, "", UN, {0, 0});
  return found->second;
}

bool DemoDictionary::knowsTagId(const TagId& id) const {
  return _byId.count(id) != 0;
}

bool DemoDictionary::knowsTagName(const std::string& name) const {
  return _byName.count(name) != 0;
}

}  // namespace QuiltraTools
