#include "support/TestDict.h"

#include <gtest/gtest.h>
#include <utility>

#include <quiltra/core/TagInfo.h>

using Quiltra::TagId;
using Quiltra::TagInfo;

TEST(TagInfoTest, DefaultsToZeroTagUnknownAndCodesOnlyCharacterSetTexts) {
  TagInfo info;
  EXPECT_TRUE(info.id() == TagId() && info.name().empty() && info.vr() == Quiltra::UN);
  EXPECT_EQ(info.multiplicity(), std::make_pair(0u, 0u));
  for (int code = 0; code <= 27; ++code) {  // LO 7, LT 8, PN 9, SH 10, ST 11, UT 13
    info.setVr(static_cast<Quiltra::Vr>(code));
    EXPECT_EQ(info.isCodedString(), (code >= 7 && code <= 11) || code == 13) << code;
  }
}

TEST(TagInfoTest, FillsFromDictionary) {
  const TagInfo info(TagId(0x0008, 0x0005), QuiltraTest::TestDict());
  EXPECT_TRUE(info.id() == TagId(0x0008, 0x0005) && info.name() == "SpecificCharacterSet");
  EXPECT_TRUE(info.vr() == Quiltra::CS && info.multiplicity() == std::make_pair(1u, 0xFFFFFFFFu));
}

// Filling asks the dictionary for the name, then the representation, then the multiplicity.
TEST(TagInfoTest, AsksDictionaryNameThenVrThenMultiplicity) {
  struct RecordingDict : QuiltraTest::TestDict {
    mutable std::string asked;
    std::string name(const TagId& id) const override {
      return asked += "name ", TestDict::name(id);
    }
    Quiltra::Vr vr(const TagId& id) const override { return asked += "vr ", TestDict::vr(id); }
    std::pair<unsigned int, unsigned int> multiplicity(const TagId& id) const override {
      asked += "multiplicity";
      return TestDict::multiplicity(id);
    }
  } dict;
  TagInfo(TagId(0x0010, 0x0010), dict);
  EXPECT_EQ(dict.asked, "name vr multiplicity");
}
