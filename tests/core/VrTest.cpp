#include "support/QuiltraTestSupport.h"

#include <quiltra/core/Multiplicity.h>
#include <quiltra/core/TransferSyntax.h>
#include <quiltra/core/Vr.h>

namespace {

using namespace Quiltra;

TEST(VrTest, ConvertsEachTextToItsCodeAndBackAndRejectsOthers) {
  std::string texts;
  for (int code = -1; code <= 28; ++code) texts += toString(static_cast<Vr>(code)) + " ";
  EXPECT_EQ(texts,
            "UN AE AS CS DA DS DT IS LO LT PN SH ST TM UT UI SS US AT SL UL FL FD OB OW OL OF SQ "
            "UN UN ");
  for (int code = 0; code < 28; ++code) EXPECT_EQ(toVr(toString(static_cast<Vr>(code))), code);
  EXPECT_TRUE(isValidVrStr("UN"));
  for (const std::string text : {"", "ob", "Ob", " OB", "OB ", "O", "OBX"}) {
    QuiltraTest::expectQuiltraError([&] { toVr(text); }, "toVr",
                                    "cannot convert to vr vrstr was " + text);
    EXPECT_FALSE(isValidVrStr(text));
  }
}

TEST(VrTest, ClassifiesRepresentationsByValueType) {
  std::string members;  // per VRCType, then one past the last: the members in code order
  for (int type = 0; type <= 13; ++type) {
    for (int code = -1; code <= 40; ++code) {
      const Vr vr = static_cast<Vr>(code);
      if (isType(vr, static_cast<VRCType>(type))) members += toString(vr) + " ";
    }
    members += "| ";
  }
  EXPECT_EQ(members,
            "AE AS CS DA DS DT IS LO LT PN SH ST TM UT UI | DA DT | DT | DT TM | "
            "DS IS SS US AT SL UL FL OF | DS IS SS US AT SL UL FL FD OF | SQ | IS SS US SL | "
            "US AT UL | SS | US | OB OW UN | AT | | ");
}

TEST(VrTest, PrintsTransferSyntaxesAndMultiplicities) {
  std::string names;
  for (int code = 0; code <= 32; ++code) names += toString(TransferSyntax(code)) + " ";
  EXPECT_EQ(names,
            "INVALID_TRANSFER_SYNTAX IMPLICIT_LITTLE_ENDIAN EXPLICIT_LITTLE_ENDIAN "
            "EXPLICIT_BIG_ENDIAN IMPLICIT_BIG_ENDIAN DEFLATED_EXPLICIT_LITTLE_ENDIAN RLE "
            "JPEG_BASELINE JPEG_EXTENDED_2_4 JPEG_EXTENDED_3_5 JPEG_SPEC_NON_HIER_6_8 "
            "JPEG_SPEC_NON_HIER_7_9 JPEG_FULL_PROG_NON_HIER_10_12 JPEG_FULL_PROG_NON_HIER_11_13 "
            "JPEG_LOSSLESS_NON_HIER_14 JPEG_LOSSLESS_NON_HIER_15 JPEG_EXTENDED_HIER_16_18 "
            "JPEG_EXTENDED_HIER_17_19 JPEG_SPEC_HIER_20_22 JPEG_SPEC_HIER_21_23 "
            "JPEG_FULL_PROG_HIER_24_26 JPEG_FULL_PROG_HIER_25_27 JPEG_LOSSLESS_HIER_28 "
            "JPEG_LOSSLESS_HIER_29 JPEG_LOSSLESS_HIER_14 JPEG_2000_LOSSLESS_ONLY JPEG_2000 v "
            "JPEG_LS_LOSSY MPEG2_MPML JPEG_2000_MC_LOSSLESS_ONLY JPEG_2000_MC "
            "INVALID_TRANSFER_SYNTAX ");
  EXPECT_EQ(toString(TransferSyntax(-1)), "INVALID_TRANSFER_SYNTAX");
  EXPECT_EQ(toString(Multiplicity(1, 3)) + " " + toString(Multiplicity(0, 4294967295u)),
            "1-3 0-4294967295");
}

}  // namespace
