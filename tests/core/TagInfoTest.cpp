#include "support/TestDict.h"

#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

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

// Names are shared between copies, pooled up to a bound: every name must still come back
// as it was given, however long, however many, and a copy must stay independent.
TEST(TagInfoTest, KeepsEveryNameThroughCopiesWhateverItsLengthOrNumber) {
  const std::string names[] = {"",
                               "PatientName",
                               std::string(128, 'n'),
                               std::string(129, 'n'),
                               std::string("A\0B", 3),
                               std::string(5000, 'x')};
  for (const std::string& name : names) {
    const TagInfo info(TagId(0x0010, 0x0010), name, Quiltra::PN, {1, 1});
    TagInfo copy(info);
    EXPECT_TRUE(info.name() == name && copy.name() == name) << name.size();
    copy.setName("Other");
    EXPECT_TRUE(info.name() == name && copy.name() == "Other") << name.size();
    // From a C string: the text up to its zero.
    const TagInfo fromChars(TagId(0x0010, 0x0010), name.c_str(), Quiltra::PN, {1, 1});
    EXPECT_EQ(fromChars.name(), name.substr(0, name.find('\0'))) << name.size();
  }
  EXPECT_EQ(TagInfo(TagId(), static_cast<const char*>(nullptr), Quiltra::LO, {1, 1}).name(), "");
  std::vector<TagInfo> many;  // more distinct names than the pool keeps
  for (int i = 0; i < 40000; ++i)
    many.emplace_back(TagId(), "Name" + std::to_string(i), Quiltra::LO, std::make_pair(1u, 1u));
  for (int i = 0; i < 40000; ++i) ASSERT_EQ(many[i].name(), "Name" + std::to_string(i));
}

TEST(TagInfoTest, GivesTheSameNamesToDescriptionsBuiltOnSeveralThreads) {
  std::vector<std::thread> threads;
  std::atomic<int> wrong{0};
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&wrong, t] {
      for (int i = 0; i < 2000; ++i) {
        const std::string name = "SharedName" + std::to_string((i + t) % 500);
        const TagInfo info(TagId(), name, Quiltra::LO, {1, 1});
        const TagInfo copy = info;
        if (copy.name() != name) ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong.load(), 0);
}
