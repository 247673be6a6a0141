#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <quiltra/quiltra.h>

using namespace Quiltra_Unicode;
using QuiltraTest::expectQuiltraError;

namespace {

std::string bytes(const std::string& hexPairs) {
  const std::vector<unsigned char> raw = QuiltraTest::hex(hexPairs);
  return std::string(raw.begin(), raw.end());
}

// UTF-8 of a code point, written out independently of the library.
std::string utf8Of(unsigned int code) {
  std::string out;
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
  return out;
}

std::string allLatin1Bytes() {
  std::string all;
  for (unsigned int b = 0; b < 256; ++b) all += static_cast<char>(b);
  return all;
}

void expectExhausted(const std::string& utf8) {
  expectQuiltraError([&] { UTF8toLatin1(utf8); }, "UTF8toLatin1", "source exhausted");
}

}  // namespace

TEST(Quiltra_UnicodeTest, NamesTheThreeCharacterSets) {
  EXPECT_EQ(defaultCharacterSet(), "ISO_IR 6");
  EXPECT_EQ(isoLatin1CharacterSet(), "ISO_IR 100");
  EXPECT_EQ(UTF8CharacterSet(), "ISO_IR 192");
  EXPECT_EQ(&defaultCharacterSet(), &defaultCharacterSet());
}

TEST(Quiltra_UnicodeTest, EveryLatin1ByteBecomesItsCodePointInUTF8) {
  for (unsigned int b = 0; b < 256; ++b) {
    const std::string latin1(1, static_cast<char>(b));
    EXPECT_EQ(latin1ToUTF8(latin1), utf8Of(b)) << "byte " << b;
    EXPECT_EQ(defaultToUTF8(latin1), utf8Of(b)) << "byte " << b;
    EXPECT_EQ(UTF8toLatin1(utf8Of(b)), latin1) << "byte " << b;
  }
  const std::string all = allLatin1Bytes();
  EXPECT_EQ(latin1ToUTF8(all).size(), 128u + 2 * 128u);
  EXPECT_EQ(UTF8toLatin1(latin1ToUTF8(all)), all);
  EXPECT_EQ(latin1ToUTF8(bytes("63 61 66 E9")), bytes("63 61 66 C3 A9"));
  EXPECT_EQ(UTF8toLatin1(bytes("63 61 66 C3 A9")), bytes("63 61 66 E9"));
  EXPECT_EQ(latin1ToUTF8(""), "");
  EXPECT_EQ(UTF8toLatin1(""), "");
}

TEST(Quiltra_UnicodeTest, LongTextsConvertAcrossWordBoundaries) {
  // ASCII runs longer than the eight-byte scan, with accents at every offset.
  for (std::size_t at = 0; at < 40; ++at) {
    std::string latin1(40, 'a');
    latin1[at] = '\xE9';
    std::string utf8 = latin1ToUTF8(latin1);
    EXPECT_EQ(utf8, std::string(at, 'a') + "\xC3\xA9" + std::string(39 - at, 'a'));
    EXPECT_EQ(UTF8toLatin1(utf8), latin1);
  }
}

TEST(Quiltra_UnicodeTest, CodePointsAboveFFBecomeOneQuestionMark) {
  for (unsigned int code = 0; code <= 0x10FFFF; ++code) {
    if (code >= 0xD800 && code <= 0xDFFF) continue;
    const std::string expected(1, code <= 0xFF ? static_cast<char>(code) : '?');
    ASSERT_EQ(UTF8toLatin1(utf8Of(code)), expected) << "code point " << code;
  }
  EXPECT_EQ(UTF8toLatin1(bytes("E2 82 AC")), "?");
  EXPECT_EQ(UTF8toLatin1(bytes("F0 9F 98 80")), "?");
  EXPECT_EQ(UTF8toLatin1("x" + utf8Of(0x20AC) + "y" + utf8Of(0x1F600) + "z"), "x?y?z");
}

TEST(Quiltra_UnicodeTest, KeepsMalformedUTF8ByTheTable) {
  // Continuation bytes met as lead bytes are copied.
  EXPECT_EQ(UTF8toLatin1(bytes("A9")), bytes("A9"));
  EXPECT_EQ(UTF8toLatin1(bytes("41 80 BF 42")), bytes("41 80 BF 42"));
  // Continuation bytes are not checked: C3 41 assembles to 0x81.
  EXPECT_EQ(UTF8toLatin1(bytes("C3 41")), bytes("81"));
  // Overlong forms are accepted.
  EXPECT_EQ(UTF8toLatin1(bytes("C0 80")), bytes("00"));
  EXPECT_EQ(UTF8toLatin1(bytes("C1 BF")), bytes("7F"));
  EXPECT_EQ(UTF8toLatin1(bytes("E0 83 A9")), bytes("E9"));
  // Lead bytes F8..FF give "?" and consume nothing: what follows is read again.
  EXPECT_EQ(UTF8toLatin1(bytes("F8 41 42 43 44")), "?ABCD");
  EXPECT_EQ(UTF8toLatin1(bytes("FC 41 42 43 44 45")), "?ABCDE");
  EXPECT_EQ(UTF8toLatin1(bytes("FF C3 A9 41 42 43")), bytes("3F E9 41 42 43"));
  EXPECT_EQ(UTF8toLatin1(bytes("FB FB 41 42 43 44 45")), "??ABCDE");
}

TEST(Quiltra_UnicodeTest, TruncatedUTF8IsSourceExhausted) {
  expectExhausted(bytes("C3"));
  expectExhausted(bytes("63 61 66 C3"));
  expectExhausted(bytes("E2 82"));
  expectExhausted(bytes("E2"));
  expectExhausted(bytes("F0 9F 98"));
  // The 4- and 5-trail lead bytes also need their count of following bytes.
  expectExhausted(bytes("F8 41 42 43"));
  expectExhausted(bytes("FC 41 42 43 44"));
  expectExhausted(bytes("41 42 43 44 45 46 47 48 49 FF"));
}

TEST(Quiltra_UnicodeTest, ConvertsByNamedSetOrThrows) {
  const std::string latin1 = "J\xE9r\xF4me", utf8 = "J\xC3\xA9r\xC3\xB4me";
  EXPECT_EQ(toLatin1("ISO_IR 6", latin1), latin1);
  EXPECT_EQ(toLatin1("ISO_IR 100", latin1), latin1);
  EXPECT_EQ(toLatin1("ISO_IR 192", utf8), latin1);
  EXPECT_EQ(toDefault("ISO_IR 192", utf8), latin1);
  EXPECT_EQ(toDefault("ISO_IR 100", latin1), latin1);
  EXPECT_EQ(toUTF8("ISO_IR 6", latin1), utf8);
  EXPECT_EQ(toUTF8("ISO_IR 100", latin1), utf8);
  EXPECT_EQ(toUTF8("ISO_IR 192", latin1), latin1);

  expectQuiltraError([] { toLatin1("ISO 2022 IR 100", "x"); }, "toLatin1",
                     "UNSUPPORTED CHARACTERSET ISO 2022 IR 100");
  expectQuiltraError([] { toDefault("ISO_IR 144", "x"); }, "toLatin1",
                     "UNSUPPORTED CHARACTERSET ISO_IR 144");
  expectQuiltraError([] { toUTF8("", "x"); }, "toUTF8", "UNSUPPORTED CHARACTERSET ");
  // Whole names only, case-sensitive, nothing trimmed.
  expectQuiltraError([] { toUTF8("iso_ir 100", "x"); }, "toUTF8",
                     "UNSUPPORTED CHARACTERSET iso_ir 100");
  expectQuiltraError([] { toLatin1("ISO_IR 192 ", "x"); }, "toLatin1",
                     "UNSUPPORTED CHARACTERSET ISO_IR 192 ");
  expectQuiltraError([] { toLatin1("ISO_IR 192", "\xC3"); }, "UTF8toLatin1", "source exhausted");
}

TEST(Quiltra_UnicodeTest, ConvertCharacterSetTestsItsCasesInOrder) {
  struct Case {
    const char* from;
    const char* to;
    bool converts;
    const char* result;
  };
  const Case cases[] = {
      {"ISO_IR 100", "ISO_IR 100", false, "caf\xE9"},
      {"ISO_IR 192", "ISO_IR 192", false, "caf\xE9"},
      {"ISO_IR 6", "ISO_IR 100", false, "caf\xE9"},
      {"ISO_IR 100", "ISO_IR 6", false, "caf\xE9"},
      {"ISO_IR 100", "ISO_IR 192", true, "caf\xC3\xA9"},
      {"ISO_IR 6", "ISO_IR 192", true, "caf\xC3\xA9"},
      {"ISO_IR 192", "ISO_IR 144", false, "caf\xE9"},
      {"ISO_IR 100", "ISO_IR 144", false, "caf\xE9"},
      {"ISO_IR 144", "ISO_IR 192", false, "caf\xE9"},
      {"", "ISO_IR 192", false, "caf\xE9"},
      {"ISO_IR 100 ", "ISO_IR 192", false, "caf\xE9"},
  };
  for (const Case& c : cases) {
    std::string text = "caf\xE9";
    EXPECT_EQ(convertCharacterSet(c.from, c.to, text), c.converts) << c.from << " -> " << c.to;
    EXPECT_EQ(text, c.result) << c.from << " -> " << c.to;
  }
  for (const char* to : {"ISO_IR 6", "ISO_IR 100"}) {
    std::string text = "caf\xC3\xA9";
    EXPECT_TRUE(convertCharacterSet("ISO_IR 192", to, text));
    EXPECT_EQ(text, "caf\xE9");
  }
  // ASCII converts to itself, and still counts as converted.
  std::string ascii = "plain";
  EXPECT_TRUE(convertCharacterSet("ISO_IR 192", "ISO_IR 6", ascii));
  EXPECT_EQ(ascii, "plain");
}

TEST(Quiltra_UnicodeTest, ConvertCharacterSetLeavesTheTextOnFailure) {
  std::string text = "caf\xC3\xA9 and a cut \xE2\x82";
  const std::string before = text;
  expectQuiltraError([&] { convertCharacterSet("ISO_IR 192", "ISO_IR 100", text); }, "UTF8toLatin1",
                     "source exhausted");
  EXPECT_EQ(text, before);
}
