#include "support/QuiltraTestSupport.h"
#include "support/TestDict.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

#include <quiltra/core/TagInfo.h>

using Quiltra::TagId;
using Quiltra::TagInfo;

namespace {

// Records the order of the three questions and fails on none of them.
class RecordingDict : public QuiltraTest::TestDict {
 public:
  mutable std::string calls;
  Quiltra::Vr vr(const TagId&) const override {
    calls += "v";
    return Quiltra::OB;
  }
  std::pair<unsigned int, unsigned int> multiplicity(const TagId&) const override {
    calls += "m";
    return {2, 5};
  }
  std::string name(const TagId&) const override {
    calls += "n";
    return "Recorded";
  }
};

}  // namespace

TEST(TagInfoTest, DefaultDescribesZeroTagAsUnknown) {
  const TagInfo info;
  EXPECT_EQ(info.id(), TagId());
  EXPECT_EQ(info.name(), "");
  EXPECT_EQ(info.vr(), Quiltra::UN);
  EXPECT_EQ(info.multiplicity(), std::make_pair(0u, 0u));
  EXPECT_FALSE(info.isCodedString());
}

TEST(TagInfoTest, CodesOnlyCharacterSetTexts) {
  TagInfo info;
  for (int code = 0; code <= Quiltra::UN; ++code) {
    const auto vr = static_cast<Quiltra::Vr>(code);
    info.setVr(vr);
    const bool coded = vr == Quiltra::LO || vr == Quiltra::LT || vr == Quiltra::PN ||
                       vr == Quiltra::SH || vr == Quiltra::ST || vr == Quiltra::UT;
    EXPECT_EQ(info.isCodedString(), coded) << "vr " << code;
  }
  EXPECT_TRUE(TagInfo(TagId(), "", static_cast<Quiltra::Vr>(13), {1, 1}).isCodedString());
  EXPECT_FALSE(TagInfo(TagId(), "", static_cast<Quiltra::Vr>(14), {1, 1}).isCodedString());
}

TEST(TagInfoTest, FillsFromDictionary) {
  const QuiltraTest::TestDict dict;
  const TagInfo name(TagId(0x0010, 0x0010), dict);
  EXPECT_EQ(name.id(), TagId(0x0010, 0x0010));
  EXPECT_EQ(name.name(), "PatientName");
  EXPECT_EQ(name.vr(), Quiltra::PN);
  EXPECT_EQ(name.multiplicity(), std::make_pair(1u, 1u));
}

TEST(TagInfoTest, AsksNameThenVrThenMultiplicity) {
  const RecordingDict dict;
  const TagInfo info(TagId(0x0009, 0x0001), dict);
  EXPECT_EQ(dict.calls, "nvm");
  EXPECT_EQ(info.name(), "Recorded");
  EXPECT_EQ(info.vr(), Quiltra::OB);
  EXPECT_EQ(info.multiplicity(), std::make_pair(2u, 5u));
}

TEST(TagInfoTest, PassesDictionaryFailureThrough) {
  const QuiltraTest::TestDict dict;
  QuiltraTest::expectQuiltraError([&] { TagInfo info(TagId(0x0009, 0x0010), dict); },
                                  "TestDict::tagInfo", "unknown tag");
}

TEST(TagInfoTest, CopyIsIndependent) {
  const TagInfo source(TagId(0x0010, 0x0020), "PatientID", Quiltra::LO, {1, 1});
  TagInfo copy(source);
  copy.setName("Other");
  EXPECT_EQ(source.name(), "PatientID");
  TagInfo assigned;
  assigned = copy;
  EXPECT_EQ(assigned.name(), "Other");
  EXPECT_EQ(assigned.vr(), Quiltra::LO);
  EXPECT_EQ(assigned.multiplicity(), std::make_pair(1u, 1u));
}
