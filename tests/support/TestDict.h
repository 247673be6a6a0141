#ifndef QUILTRA_TESTS_SUPPORT_TESTDICT_H_
#define QUILTRA_TESTS_SUPPORT_TESTDICT_H_

#include <map>
#include <memory>
#include <string>

#include <quiltra/core/Exception.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/dataset/Dict.h>

namespace QuiltraTest {

// A small concrete dictionary for tests: a handful of attributes, and Exception for
// anything else ("TestDict::tagInfo", "unknown tag" / "unknown name").
class TestDict : public Quiltra::Dict {
 public:
  TestDict() {
    using Quiltra::TagId;
    add(TagId(0x0008, 0x0005), "SpecificCharacterSet", Quiltra::CS, {1, 0xFFFFFFFFu});
    add(TagId(0x0008, 0x0020), "StudyDate", Quiltra::DA, {1, 1});
    add(TagId(0x0008, 0x0030), "StudyTime", Quiltra::TM, {1, 1});
    add(TagId(0x0008, 0x0060), "Modality", Quiltra::CS, {1, 1});
    add(TagId(0x0010, 0x0010), "PatientName", Quiltra::PN, {1, 1});
    add(TagId(0x0010, 0x0020), "PatientID", Quiltra::LO, {1, 1});
    add(TagId(0x0018, 0x0050), "SliceThickness", Quiltra::DS, {1, 1});
    add(TagId(0x0020, 0x0013), "InstanceNumber", Quiltra::IS, {1, 1});
    add(TagId(0x0028, 0x0010), "Rows", Quiltra::US, {1, 1});
    add(TagId(0x0028, 0x0011), "Columns", Quiltra::US, {1, 1});
    add(TagId(0x0040, 0xA730), "ContentSequence", Quiltra::SQ, {1, 1});
  }

  std::string syntaxName(Quiltra::TransferSyntax syntax) const override {
    return "Syntax " + std::to_string(static_cast<int>(syntax));
  }
  Quiltra::TagInfo tagInfo(const std::string& name) const override {
    auto found = _byName.find(name);
    if (found == _byName.end()) throw Quiltra::Exception("TestDict::tagInfo", "unknown name");
    return found->second;
  }
  Quiltra::TagInfo tagInfo(const Quiltra::TagId& id) const override {
    auto found = _byId.find(id);
    if (found == _byId.end()) throw Quiltra::Exception("TestDict::tagInfo", "unknown tag");
    return found->second;
  }
  bool knowsTagId(const Quiltra::TagId& id) const override { return _byId.count(id) != 0; }
  bool knowsTagName(const std::string& name) const override { return _byName.count(name) != 0; }

  // Makes dict the process-wide dictionary (setSingleton is reachable from derived classes).
  static void install(std::shared_ptr<const Quiltra::Dict> dict) { setSingleton(std::move(dict)); }

 private:
  void add(const Quiltra::TagId& id, const std::string& name, Quiltra::Vr vr,
           std::pair<unsigned int, unsigned int> multiplicity) {
    Quiltra::TagInfo info(id, name, vr, multiplicity);
    _byId[id] = info;
    _byName[name] = info;
  }

  std::map<Quiltra::TagId, Quiltra::TagInfo> _byId;
  std::map<std::string, Quiltra::TagInfo> _byName;
};

}  // namespace QuiltraTest

#endif  // QUILTRA_TESTS_SUPPORT_TESTDICT_H_
