#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include <quiltra/core/Multiplicity.h>
#include <quiltra/core/TransferSyntax.h>
#include <quiltra/core/Vr.h>

namespace {

using namespace Quiltra;

const std::vector<std::string> kVrTexts = {
    "AE", "AS", "CS", "DA", "DS", "DT", "IS", "LO", "LT", "PN", "SH", "ST", "TM", "UT",
    "UI", "SS", "US", "AT", "SL", "UL", "FL", "FD", "OB", "OW", "OL", "OF", "SQ", "UN"};

TEST(VrTest, ConvertsEachTextToItsCodeAndBack) {
  for (int code = 0; code < 28; ++code) {
    const std::string& text = kVrTexts[static_cast<std::size_t>(code)];
    EXPECT_EQ(toVr(text), code) << text;
    EXPECT_TRUE(isValidVrStr(text)) << text;
    EXPECT_EQ(toString(static_cast<Vr>(code)), text);
  }
}

TEST(VrTest, PrintsUnForEveryValueOutsideTheNamedCodes) {
  for (int value : {27, 28, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_EQ(toString(static_cast<Vr>(value)), "UN") << value;
  }
}

TEST(VrTest, RejectsTextsThatAreNotExactlyACode) {
  const std::vector<std::string> texts = {"",    "ob", "Ob",  " OB",
                                          "OB ", "O",  "OBX", std::string("OB\0", 3)};
  for (const std::string& text : texts) {
    QuiltraTest::expectQuiltraError([&] { toVr(text); }, "toVr",
                                    "cannot convert to vr vrstr was " + text);
    EXPECT_FALSE(isValidVrStr(text));
  }
}

TEST(VrTest, ClassifiesRepresentationsByValueType) {
  // The expected members of each type, as a string of the codes' texts.
  const std::vector<std::string> members = {
      "AE AS CS DA DS DT IS LO LT PN SH ST TM UT UI",  // VRC_STRING
      "DA DT",                                         // VRC_DATE
      "DT",                                            // VRC_DATETIME
      "TM DT",                                         // VRC_TIME
      "FL OF DS IS SL SS US UL AT",                    // VRC_FLOAT
      "FD FL OF DS IS SL SS US UL AT",                 // VRC_DOUBLE
      "SQ",                                            // VRC_SEQUENCE
      "IS SL SS US",                                   // VRC_INT
      "UL US AT",                                      // VRC_UINT
      "SS",                                            // VRC_SHORT
      "US",                                            // VRC_USHORT
      "UN OW OB",                                      // VRC_BINARY
      "AT",                                            // VRC_TAG
  };
  for (int type = 0; type < 13; ++type) {
    for (int code = 0; code < 28; ++code) {
      const std::string& text = kVrTexts[static_cast<std::size_t>(code)];
      const bool expected = members[static_cast<std::size_t>(type)].find(text) != std::string::npos;
      EXPECT_EQ(isType(static_cast<Vr>(code), static_cast<VRCType>(type)), expected)
          << text << " as type " << type;
    }
  }
}

TEST(VrTest, AnswersFalseForValuesOutsideEitherEnumeration) {
  const int outside[] = {
      -1, 13, 28, 31, 32, 64, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
  for (int value : outside) {
    for (int other = 0; other < 13; ++other) {
      EXPECT_FALSE(isType(static_cast<Vr>(other), static_cast<VRCType>(value))) << value;
      if (value >= 28 || value < 0) {
        EXPECT_FALSE(isType(static_cast<Vr>(value), static_cast<VRCType>(other))) << value;
      }
    }
  }
}

TEST(VrTest, NamesTransferSyntaxesByCode) {
  EXPECT_EQ(toString(IMPLICIT_LITTLE_ENDIAN), "IMPLICIT_LITTLE_ENDIAN");
  EXPECT_EQ(toString(DEFLATED_EXPLICIT_LITTLE_ENDIAN), "DEFLATED_EXPLICIT_LITTLE_ENDIAN");
  EXPECT_EQ(toString(static_cast<TransferSyntax>(18)), "JPEG_SPEC_HIER_20_22");
  EXPECT_EQ(toString(static_cast<TransferSyntax>(24)), "JPEG_LOSSLESS_HIER_14");
  EXPECT_EQ(toString(JPEG_2000), "JPEG_2000");
  EXPECT_EQ(toString(JPEG_LS_LOSSLESS), "v");
  EXPECT_EQ(toString(static_cast<TransferSyntax>(28)), "JPEG_LS_LOSSY");
  EXPECT_EQ(toString(static_cast<TransferSyntax>(31)), "JPEG_2000_MC");
  for (int code : {0, 32, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_EQ(toString(static_cast<TransferSyntax>(code)), "INVALID_TRANSFER_SYNTAX") << code;
  }
}

TEST(VrTest, PrintsMultiplicityAsMinimumDashMaximum) {
  EXPECT_EQ(toString(Multiplicity(1, 3)), "1-3");
  EXPECT_EQ(toString(Multiplicity(0, 0)), "0-0");
  EXPECT_EQ(toString(Multiplicity(2, 4294967295u)), "2-4294967295");
}

}  // namespace
