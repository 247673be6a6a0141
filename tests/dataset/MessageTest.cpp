#include "support/QuiltraTestSupport.h"
#include "support/TextElement.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include <quiltra/quiltra.h>

using namespace Quiltra;
using TreePtr = std::shared_ptr<Tree>;
using QuiltraTest::textElement;

namespace {

const TagId kCharacterSet(0x0008, 0x0005), kName(0x0010, 0x0010), kId(0x0010, 0x0020);

// A data set naming its character set, with one Latin-1 name.
TreePtr dataSet(const std::string& characterSet) {
  auto tree = std::make_shared<Tree>();
  tree->addTag(textElement(kCharacterSet, CS, characterSet));
  tree->addTag(textElement(kName, PN, "M\xFCller^J\xE9r\xF4me"));
  return tree;
}

std::string nameOf(const Message& message) {
  return message.tags()->getTag(kName)->toString();
}

}  // namespace

TEST(MessageTest, ConstructorsSetCharacterSetAndSyntaxWithoutTree) {
  Message plain;
  EXPECT_EQ(plain.specificCharacterSet(), "ISO_IR 6");
  EXPECT_EQ(plain.syntax(), IMPLICIT_LITTLE_ENDIAN);
  EXPECT_FALSE(plain.tags());
  EXPECT_FALSE(static_cast<const Message&>(plain).tags());
  EXPECT_EQ(plain.specifiedCharacterSet(), "");

  Message given("ISO_IR 192", JPEG_2000);
  EXPECT_EQ(given.syntax(), JPEG_2000);
  EXPECT_EQ(given.specificCharacterSet(), "ISO_IR 192");
}

TEST(MessageTest, SharesTheCallersTreeWritableOrConstant) {
  Message message;
  TreePtr tree = dataSet("ISO_IR 100");
  message.setTags(tree);
  EXPECT_EQ(message.tags(), tree);
  EXPECT_EQ(static_cast<const Message&>(message).tags(), tree);

  message.setTags(std::shared_ptr<const Tree>(tree));
  EXPECT_FALSE(message.tags());
  EXPECT_EQ(static_cast<const Message&>(message).tags(), tree);
}

TEST(MessageTest, LearnsTheCharacterSetOnceFromTheDataSet) {
  TreePtr tree = dataSet("ISO_IR 100");
  Message message("", EXPLICIT_LITTLE_ENDIAN);
  message.setTags(tree);
  EXPECT_EQ(message.specificCharacterSet(), "ISO_IR 100");
  tree->getTag_rw(kCharacterSet)->setValue(std::string("ISO_IR 192"), 0);
  EXPECT_EQ(message.specificCharacterSet(), "ISO_IR 100");
  EXPECT_EQ(message.specifiedCharacterSet(), "ISO_IR 192");
}

TEST(MessageTest, KeepsAskingWhileTheDataSetNamesNoCharacterSet) {
  auto tree = std::make_shared<Tree>();
  Message message("", IMPLICIT_LITTLE_ENDIAN);
  message.setTags(tree);
  EXPECT_EQ(message.specificCharacterSet(), "");
  tree->addTag(textElement(kCharacterSet, CS, "ISO_IR 192"));
  EXPECT_EQ(message.specificCharacterSet(), "ISO_IR 192");
}

TEST(MessageTest, DefaultMessageNeverConsultsItsDataSet) {
  Message message;
  message.setTags(dataSet("ISO_IR 100"));
  EXPECT_EQ(message.specificCharacterSet(), "ISO_IR 6");
  EXPECT_EQ(message.specifiedCharacterSet(), "ISO_IR 100");
}

TEST(MessageTest, SpecifiedCharacterSetSeesParentsAndJoinsValues) {
  auto parent = std::make_shared<Tree>();
  auto multiple = std::make_shared<Tag>(TagInfo(kCharacterSet, "", CS, {1, 9}));
  multiple->addValue(std::string("\\ISO 2022 IR 100"));
  parent->addTag(multiple);
  Message message("", IMPLICIT_LITTLE_ENDIAN);
  message.setTags(std::make_shared<Tree>(parent));
  EXPECT_EQ(message.specifiedCharacterSet(), "\\ISO 2022 IR 100");
}

TEST(MessageTest, SpecifiedCharacterSetIsEmptyWhenTheElementCannotBeRead) {
  auto tree = std::make_shared<Tree>();
  // A binary representation has no text form: the read throws and is swallowed.
  auto binary = std::make_shared<Tag>(TagInfo(kCharacterSet, "", OB, {1, 1}));
  binary->addValue().setData(std::string("ISO_IR 100"));
  tree->addTag(binary);
  Message message("", IMPLICIT_LITTLE_ENDIAN);
  message.setTags(tree);
  EXPECT_EQ(message.specifiedCharacterSet(), "");
  EXPECT_EQ(message.specificCharacterSet(), "");
}

TEST(MessageTest, ConvertsItsTextsAndRecordsTheTargetButLeavesTheElement) {
  Message message("ISO_IR 100", IMPLICIT_LITTLE_ENDIAN);
  message.setTags(dataSet("ISO_IR 100"));
  message.convertToCharacterSet("ISO_IR 192");
  EXPECT_EQ(message.specificCharacterSet(), "ISO_IR 192");
  EXPECT_EQ(nameOf(message), "M\xC3\xBCller^J\xC3\xA9r\xC3\xB4me");
  EXPECT_EQ(message.specifiedCharacterSet(), "ISO_IR 100");

  message.convertToCharacterSet("ISO_IR 100");
  EXPECT_EQ(nameOf(message), "M\xFCller^J\xE9r\xF4me");
}

TEST(MessageTest, ConvertsFromTheRecordedSetWithoutLearningIt) {
  // Empty recorded set: not a known set, so nothing converts, but the name is stored.
  Message message("", IMPLICIT_LITTLE_ENDIAN);
  message.setTags(dataSet("ISO_IR 100"));
  message.convertToCharacterSet("ISO_IR 192");
  EXPECT_EQ(nameOf(message), "M\xFCller^J\xE9r\xF4me");
  EXPECT_EQ(message.specificCharacterSet(), "ISO_IR 192");
}

TEST(MessageTest, ConvertingToTheCurrentSetStoresTheNameOnly) {
  Message message("ISO_IR 192", IMPLICIT_LITTLE_ENDIAN);
  message.setTags(dataSet("ISO_IR 100"));
  message.convertToCharacterSet("ISO_IR 192");
  EXPECT_EQ(nameOf(message), "M\xFCller^J\xE9r\xF4me");  // not valid UTF-8, yet untouched
  EXPECT_EQ(message.specificCharacterSet(), "ISO_IR 192");
}

TEST(MessageTest, ConstantTreeIsNeverConverted) {
  TreePtr tree = dataSet("ISO_IR 100");
  Message message("ISO_IR 100", IMPLICIT_LITTLE_ENDIAN);
  message.setTags(std::shared_ptr<const Tree>(tree));
  message.convertToCharacterSet("ISO_IR 192");
  EXPECT_EQ(message.specificCharacterSet(), "ISO_IR 100");
  EXPECT_EQ(tree->getTag(kName)->toString(), "M\xFCller^J\xE9r\xF4me");
}

TEST(MessageTest, FailedConversionKeepsTheCharacterSet) {
  auto tree = std::make_shared<Tree>();
  // Elements convert in ascending order: kName before kId.
  tree->addTag(textElement(kName, PN, "ok \xC3\xA9"));
  tree->addTag(textElement(kId, LO, "cut \xC3"));
  Message message("ISO_IR 192", IMPLICIT_LITTLE_ENDIAN);
  message.setTags(tree);
  QuiltraTest::expectQuiltraError([&] { message.convertToCharacterSet("ISO_IR 100"); },
                                  "UTF8toLatin1", "source exhausted");
  EXPECT_EQ(message.specificCharacterSet(), "ISO_IR 192");
  EXPECT_EQ(tree->getTag(kName)->toString(), "ok \xE9");  // converted before the failure
  EXPECT_EQ(tree->getTag(kId)->toString(), "cut \xC3");
}

TEST(MessageTest, CopiesOwnTheirTree) {
  Message source("ISO_IR 100", EXPLICIT_BIG_ENDIAN);
  source.setTags(dataSet("ISO_IR 100"));
  Message copy(source);
  EXPECT_EQ(copy.syntax(), EXPLICIT_BIG_ENDIAN);
  EXPECT_EQ(copy.specificCharacterSet(), "ISO_IR 100");
  ASSERT_TRUE(copy.tags());
  EXPECT_NE(copy.tags(), source.tags());
  copy.tags()->removeTag(kName);
  EXPECT_TRUE(source.tags()->hasTag(kName));

  Message assigned;
  assigned = source;
  assigned.tags()->getTag_rw(kName)->setValue(std::string("Other"), 0);
  EXPECT_EQ(nameOf(source), "M\xFCller^J\xE9r\xF4me");
  const Message& same = assigned;
  assigned = same;  // self-assignment changes nothing
  EXPECT_EQ(nameOf(assigned), "Other");
}

TEST(MessageTest, CopyOfAConstantTreeIsWritable) {
  Message source;
  source.setTags(std::shared_ptr<const Tree>(dataSet("ISO_IR 100")));
  Message copy(source);
  EXPECT_TRUE(copy.tags());
}

TEST(MessageTest, AssignmentFromAMessageWithoutTreeKeepsTheTargetsTree) {
  Message target;
  TreePtr tree = dataSet("ISO_IR 100");
  target.setTags(tree);
  target = Message("ISO_IR 192", RLE);
  EXPECT_EQ(target.tags(), tree);
  EXPECT_EQ(target.syntax(), RLE);
  EXPECT_EQ(target.specificCharacterSet(), "ISO_IR 192");
}
