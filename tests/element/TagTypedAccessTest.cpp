#include "support/QuiltraTestSupport.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/DateTime.h>
#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Value.h>
#include <quiltra/core/Vr.h>
#include <quiltra/element/Tag.h>

namespace {

using Quiltra::Date;
using Quiltra::Tag;
using Quiltra::Time;
using QuiltraTest::expectQuiltraError;
using Bytes = std::vector<unsigned char>;

const char kRange[] = "Tag::rangeChecking";
const char kType[] = "Tag::typeChecking";
const char kOutOfRange[] = "index out of range";
const char kIllegal[] = "illegal type";

Tag tagOf(Quiltra::Vr vr) {
  return Tag(Quiltra::TagInfo(Quiltra::TagId(0x00100020u), "Sample", vr, {1, 1}));
}

// An element holding one raw value of exactly these bytes (a buffer of exactly that size,
// so the sanitizer sees any read past it).
Tag rawTag(Quiltra::Vr vr, const Bytes& bytes) {
  Tag tag = tagOf(vr);
  tag.addValue().setData(static_cast<unsigned int>(bytes.size()), bytes.data());
  return tag;
}

Bytes bytesAt(const Tag& tag, unsigned int index) {
  const Quiltra::Value& value = tag.getValue(index);
  return Bytes(value.data(), value.data() + value.size());
}

Bytes textBytes(const std::string& text) {
  Bytes bytes(text.begin(), text.end());
  bytes.push_back(0);
  return bytes;
}

TEST(TagTypedAccessTest, ReadersCheckTypeOrRangeFirstAsEachRequires) {
  const Tag cs = tagOf(Quiltra::CS);  // no values, and no reader but toString accepts CS
  expectQuiltraError([&] { cs.toInt(0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.toUInt(0); }, kRange, kOutOfRange);
  expectQuiltraError([&] { cs.toShort(0); }, kRange, kOutOfRange);
  expectQuiltraError([&] { cs.toUShort(0); }, kRange, kOutOfRange);
  expectQuiltraError([&] { cs.toFloat(0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.toDouble(0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.toDate(0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.toTime(0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.toDateTime(0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.toString(0); }, kRange, kOutOfRange);

  // With a value in place the type checks behind the range checks show.
  const Tag ss = rawTag(Quiltra::SS, {1, 0});
  expectQuiltraError([&] { ss.toUInt(0); }, kType, kIllegal);
  expectQuiltraError([&] { ss.toUShort(0); }, kType, kIllegal);
  expectQuiltraError([&] { rawTag(Quiltra::US, {1, 0}).toShort(0); }, kType, kIllegal);
  expectQuiltraError([&] { rawTag(Quiltra::FD, {1, 0}).toFloat(0); }, kType, kIllegal);
  expectQuiltraError([&] { rawTag(Quiltra::TM, {0}).toDate(0); }, kType, kIllegal);
  expectQuiltraError([&] { rawTag(Quiltra::DA, {0}).toTime(0); }, kType, kIllegal);
  expectQuiltraError([&] { rawTag(Quiltra::TM, {0}).toDateTime(0); }, kType, kIllegal);
  expectQuiltraError([&] { ss.toInt(1); }, kRange, kOutOfRange);
}

TEST(TagTypedAccessTest, WritersCheckTypeOrRangeFirstAsEachRequires) {
  Tag cs = tagOf(Quiltra::CS);
  expectQuiltraError([&] { cs.setValue(1, 0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.setValue(1u, 0); }, kRange, kOutOfRange);
  expectQuiltraError([&] { cs.setValue(short{1}, 0); }, kRange, kOutOfRange);
  expectQuiltraError([&] { cs.setValue(static_cast<unsigned short>(1), 0); }, kRange, kOutOfRange);
  expectQuiltraError([&] { cs.setValue(1.0f, 0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.setValue(1.0, 0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.setValue(Date(2000, 1, 1), 0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.setValue(Time(1, 2, 3, 0), 0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.setValue(std::make_pair(Date(), Time()), 0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.setValue(std::string("x"), 0); }, kRange, kOutOfRange);
  expectQuiltraError([&] { tagOf(Quiltra::OB).setValue(std::string("x"), 0); }, kRange,
                     kOutOfRange);

  Tag ss = rawTag(Quiltra::SS, {1, 0});
  expectQuiltraError([&] { ss.setValue(1u, 0); }, kType, kIllegal);
  expectQuiltraError([&] { ss.setValue(static_cast<unsigned short>(1), 0); }, kType, kIllegal);
  expectQuiltraError([&] { rawTag(Quiltra::US, {1, 0}).setValue(short{1}, 0); }, kType, kIllegal);
  expectQuiltraError([&] { rawTag(Quiltra::DA, {0}).setValue(Time(), 0); }, kType, kIllegal);
  expectQuiltraError([&] { rawTag(Quiltra::TM, {0}).setValue(Date(), 0); }, kType, kIllegal);
  expectQuiltraError([&] { ss.setValue(1, 1); }, kRange, kOutOfRange);
  EXPECT_EQ(bytesAt(ss, 0), (Bytes{1, 0}));  // failed writes change nothing
}

TEST(TagTypedAccessTest, AppendersCheckTypeBeforeAppending) {
  Tag cs = tagOf(Quiltra::CS);
  expectQuiltraError([&] { cs.addValue(1); }, kType, kIllegal);
  expectQuiltraError([&] { cs.addValue(1u); }, kType, kIllegal);
  expectQuiltraError([&] { cs.addValue(short{1}); }, kType, kIllegal);
  expectQuiltraError([&] { cs.addValue(static_cast<unsigned short>(1)); }, kType, kIllegal);
  expectQuiltraError([&] { cs.addValue(1.0f); }, kType, kIllegal);
  expectQuiltraError([&] { cs.addValue(1.0); }, kType, kIllegal);
  expectQuiltraError([&] { cs.addValue(Date()); }, kType, kIllegal);
  expectQuiltraError([&] { cs.addValue(Time()); }, kType, kIllegal);
  expectQuiltraError([&] { cs.addValue(std::make_pair(Date(), Time())); }, kType, kIllegal);
  EXPECT_EQ(cs.numberOfValues(), 0u);
}

TEST(TagTypedAccessTest, RejectsNullValuesInEveryReader) {
  Tag ss = tagOf(Quiltra::SS);
  ss.addValue();
  expectQuiltraError([&] { ss.toInt(0); }, "nullChecking", "");
  expectQuiltraError([&] { ss.toShort(0); }, "nullChecking", "");
  expectQuiltraError([&] { ss.toFloat(0); }, "nullChecking", "");
  expectQuiltraError([&] { ss.toDouble(0); }, "nullChecking", "");
  expectQuiltraError([&] { ss.toString(0); }, "nullChecking", "");
  Tag dt = tagOf(Quiltra::DT);
  dt.addValue();
  expectQuiltraError([&] { dt.toDate(0); }, "nullChecking", "");
  expectQuiltraError([&] { dt.toTime(0); }, "nullChecking", "");
  expectQuiltraError([&] { dt.toDateTime(0); }, "nullChecking", "");
  Tag us = tagOf(Quiltra::US);
  us.addValue();
  expectQuiltraError([&] { us.toUInt(0); }, "nullChecking", "");
  expectQuiltraError([&] { us.toUShort(0); }, "nullChecking", "");
}

TEST(TagTypedAccessTest, WidensSixteenBitValuesBySignedness) {
  const Tag ss = rawTag(Quiltra::SS, {0xFF, 0xFF});
  EXPECT_EQ(ss.toInt(0), -1);
  EXPECT_EQ(ss.toShort(0), -1);
  EXPECT_EQ(ss.toFloat(0), -1.0f);
  EXPECT_EQ(ss.toString(0), "-1");
  const Tag us = rawTag(Quiltra::US, {0xFF, 0xFF});
  EXPECT_EQ(us.toInt(0), 65535);
  EXPECT_EQ(us.toUInt(0), 65535u);
  EXPECT_EQ(us.toUShort(0), 65535);
  EXPECT_EQ(us.toDouble(0), 65535.0);
  EXPECT_EQ(us.toString(0), "65535");
}

TEST(TagTypedAccessTest, WritesIntegersLittleEndianThroughTheNarrowerWriters) {
  Tag ss = tagOf(Quiltra::SS);
  ss.addValue(70000);  // keeps the low 16 bits
  EXPECT_EQ(bytesAt(ss, 0), (Bytes{0x70, 0x11}));
  EXPECT_EQ(ss.toShort(0), 4464);
  ss.addValue(short{-2});
  EXPECT_EQ(bytesAt(ss, 1), (Bytes{0xFE, 0xFF}));

  Tag us = tagOf(Quiltra::US);
  us.addValue(-1);
  us.addValue(0x12345u);
  us.addValue(static_cast<unsigned short>(0xABCD));
  EXPECT_EQ(bytesAt(us, 0), (Bytes{0xFF, 0xFF}));
  EXPECT_EQ(bytesAt(us, 1), (Bytes{0x45, 0x23}));
  EXPECT_EQ(bytesAt(us, 2), (Bytes{0xCD, 0xAB}));

  Tag sl = tagOf(Quiltra::SL);
  sl.addValue(-2);
  EXPECT_EQ(bytesAt(sl, 0), (Bytes{0xFE, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(sl.toInt(0), -2);
  EXPECT_EQ(sl.toString(0), "-2");

  Tag ul = tagOf(Quiltra::UL);
  ul.addValue(4294967295u);
  ul.addValue(0x01020304u);
  EXPECT_EQ(bytesAt(ul, 0), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(bytesAt(ul, 1), (Bytes{0x04, 0x03, 0x02, 0x01}));
  EXPECT_EQ(ul.toUInt(0), 4294967295u);
  EXPECT_EQ(ul.toString(0), "4294967295");
  EXPECT_EQ(ul.toDouble(0), 4294967296.0);  // single precision on the way
}

TEST(TagTypedAccessTest, WritesIntegersAsTextOnIs) {
  Tag is = tagOf(Quiltra::IS);
  is.addValue(-42);
  EXPECT_EQ(bytesAt(is, 0), textBytes("-42"));
  EXPECT_EQ(is.toInt(0), -42);
  EXPECT_EQ(is.toFloat(0), -42.0f);
  is.addValue(std::string("1\\2\\3"));
  EXPECT_EQ(is.numberOfValues(), 4u);
  EXPECT_EQ(is.toString(), "-42\\1\\2\\3");
  EXPECT_EQ(is.toInt(3), 3);
}

TEST(TagTypedAccessTest, TruncatesFloatsTowardZeroOnIntegerRepresentations) {
  Tag sl = tagOf(Quiltra::SL);
  sl.addValue(2.5f);
  sl.addValue(-2.5f);
  sl.addValue(1e20f);  // beyond int: the nearest limit
  sl.addValue(std::numeric_limits<float>::quiet_NaN());
  EXPECT_EQ(sl.toInt(0), 2);
  EXPECT_EQ(sl.toInt(1), -2);
  EXPECT_EQ(sl.toInt(2), 2147483647);
  EXPECT_EQ(sl.toInt(3), 0);

  Tag ul = tagOf(Quiltra::UL);
  ul.addValue(-1.0f);  // low 32 bits of the 64-bit truncation
  ul.addValue(4294967296.0f);
  EXPECT_EQ(ul.toUInt(0), 4294967295u);
  EXPECT_EQ(ul.toUInt(1), 0u);

  Tag us = tagOf(Quiltra::US);  // takes the int branch, then the low 16 bits
  us.addValue(70000.9f);
  EXPECT_EQ(us.toUShort(0), 4464);
}

TEST(TagTypedAccessTest, WritesFloatsByRepresentation) {
  Tag fl = tagOf(Quiltra::FL);
  fl.addValue(1.5f);
  fl.addValue(3.0);  // double rounded to float
  EXPECT_EQ(bytesAt(fl, 0), (Bytes{0x00, 0x00, 0xC0, 0x3F}));
  EXPECT_EQ(bytesAt(fl, 1), (Bytes{0x00, 0x00, 0x40, 0x40}));
  EXPECT_EQ(fl.toDouble(1), 3.0);
  fl.setValue(0.1, 0);
  EXPECT_EQ(fl.toFloat(0), 0.1f);
  EXPECT_EQ(fl.toString(0), "0.1");

  Tag fd = tagOf(Quiltra::FD);
  fd.addValue(0.1);
  fd.addValue(1234.5678);
  EXPECT_EQ(bytesAt(fd, 0), (Bytes{0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xB9, 0x3F}));
  EXPECT_EQ(fd.toDouble(0), 0.1);
  EXPECT_EQ(fd.toString(1), "1234.57");  // six significant digits
  expectQuiltraError([&] { fd.addValue(1.0f); }, kType, kIllegal);

  Tag ds = tagOf(Quiltra::DS);
  ds.addValue(2.5f);
  ds.addValue(3.14159265358979);
  EXPECT_EQ(bytesAt(ds, 0), textBytes("2.5"));
  EXPECT_EQ(ds.toString(1), "3.14159");
}

TEST(TagTypedAccessTest, ReadsDsAndOtherFloatClassesWithSinglePrecision) {
  Tag ds = tagOf(Quiltra::DS);
  ds.addValue(std::string("3.14159265358979\\1e3"));
  EXPECT_EQ(ds.toDouble(0), 3.1415927410125732);
  EXPECT_EQ(ds.toFloat(1), 1000.0f);
  Tag sl = tagOf(Quiltra::SL);
  sl.addValue(16777217);
  EXPECT_EQ(sl.toDouble(0), 16777216.0);
  EXPECT_EQ(sl.toInt(0), 16777217);
}

TEST(TagTypedAccessTest, RejectsOfAsFloatAndAtAsUnsignedWrite) {
  Tag of = tagOf(Quiltra::OF);
  expectQuiltraError([&] { of.addValue(1.0f); }, "Tag::setValue float", "UNIMPLEMENTED");
  expectQuiltraError([&] { of.addValue(1.0); }, "Tag::setValue float", "UNIMPLEMENTED");
  EXPECT_EQ(of.numberOfValues(), 2u);  // the appended values stay, empty
  EXPECT_TRUE(of.isNull(1));
  const Tag rawOf = rawTag(Quiltra::OF, {0, 0, 0x80, 0x3F});
  expectQuiltraError([&] { rawOf.toFloat(0); }, "to_Float", "UNIMPLEMENTED");
  expectQuiltraError([&] { rawOf.toDouble(0); }, "to_Float", "UNIMPLEMENTED");

  Tag at = tagOf(Quiltra::AT);
  expectQuiltraError([&] { at.addValue(8u); }, "Tag::setValue unsigned int", "UNEXPECTED VR");
  // The float writer hands AT on to the unsigned writer, whose failure shows.
  expectQuiltraError([&] { at.addValue(1.0f); }, "Tag::setValue unsigned int", "UNEXPECTED VR");
  expectQuiltraError([&] { at.addValue(1.0); }, "Tag::setValue unsigned int", "UNEXPECTED VR");
  EXPECT_EQ(at.numberOfValues(), 3u);
}

TEST(TagTypedAccessTest, ReadsAndWritesAttributeTagsGroupFirst) {
  Tag at = tagOf(Quiltra::AT);
  at.addValue(std::string("(0008,0016)"));
  EXPECT_EQ(bytesAt(at, 0), (Bytes{0x08, 0x00, 0x16, 0x00}));
  EXPECT_EQ(at.toString(0), "(0008,0016)");
  EXPECT_EQ(at.toUInt(0), 0x00160008u);
  EXPECT_EQ(at.toFloat(0), static_cast<float>(0x00160008u));
  at.setValue(std::string(" ( 7FE0 , 10 )"), 0);
  EXPECT_EQ(at.toString(0), "(7fe0,0010)");
}

TEST(TagTypedAccessTest, ScansAttributeTagTextsUpToTheFirstMismatch) {
  const std::vector<std::pair<std::string, unsigned int>> cases = {
      {"(10,20", 0x00200010u},         // closing parenthesis not needed
      {"(0x10,-1)", 0xFFFF0010u},      // prefix and sign as a hexadecimal scan takes them
      {"(12345,ABCDE)", 0xBCDE2345u},  // low 16 bits of a wide number
      {"(0008;0016)", 0x00000008u},    // stops at the wrong separator
      {"(0008,zz)", 0x00000008u},
      {"0008,0016", 0u},  // no opening parenthesis: nothing read
      {"", 0u},
  };
  for (const auto& [text, expected] : cases) {
    Tag at = tagOf(Quiltra::AT);
    at.addValue(text);
    EXPECT_EQ(at.toUInt(0), expected) << text;
  }
}

TEST(TagTypedAccessTest, ParsesNumberTextsLeniently) {
  Tag ss = tagOf(Quiltra::SS);
  ss.addValue(std::string(" \t-12abc\\70000\\x\\+7"));
  EXPECT_EQ(ss.toShort(0), -12);
  EXPECT_EQ(ss.toShort(1), 4464);
  EXPECT_EQ(ss.toShort(2), 0);
  EXPECT_EQ(ss.toShort(3), 7);

  // Numbers wrap modulo 2^32, so UL takes its whole range from text.
  Tag ul = tagOf(Quiltra::UL);
  ul.addValue(std::string("4294967295\\-1\\4294967296"));
  EXPECT_EQ(ul.toUInt(0), 4294967295u);
  EXPECT_EQ(ul.toUInt(1), 4294967295u);
  EXPECT_EQ(ul.toUInt(2), 0u);
  Tag sl = tagOf(Quiltra::SL);
  sl.addValue(std::string("2147483648\\-2147483648\\ 99"));
  EXPECT_EQ(sl.toInt(0), -2147483647 - 1);
  EXPECT_EQ(sl.toInt(1), -2147483647 - 1);
  EXPECT_EQ(sl.toInt(2), 99);
  Tag us = tagOf(Quiltra::US);
  us.addValue(std::string("65535"));
  EXPECT_EQ(us.toUShort(0), 65535);

  Tag fl = tagOf(Quiltra::FL);
  fl.addValue(std::string(" 1.5e1xyz\\abc"));
  EXPECT_EQ(fl.toFloat(0), 15.0f);
  EXPECT_EQ(fl.toFloat(1), 0.0f);
  Tag fd = tagOf(Quiltra::FD);
  fd.addValue(std::string("-0.25"));
  EXPECT_EQ(fd.toDouble(0), -0.25);
}

TEST(TagTypedAccessTest, RejectsTextOnRepresentationsWithoutATextForm) {
  for (Quiltra::Vr vr : {Quiltra::OB, Quiltra::OW, Quiltra::UN}) {
    Tag tag = rawTag(vr, {1, 2});
    expectQuiltraError([&] { tag.toString(0); }, "Tag::toString",
                       "VR of UN,OB,OW,SQ are not supported for strings");
    expectQuiltraError([&] { tag.addValue(std::string("a")); }, "Tag::addValue",
                       "VR of UN,OB,OW,SQ are not supported for strings");
    expectQuiltraError([&] { tag.setValue(std::string("a"), 0); }, "Tag::setValue",
                       "unsupported type for string write access");
    EXPECT_EQ(tag.numberOfValues(), 1u);  // nothing appended
  }
  expectQuiltraError([&] { tagOf(Quiltra::OB).toString(0); }, "Tag::toString",
                     "VR of UN,OB,OW,SQ are not supported for strings");
  expectQuiltraError([&] { tagOf(Quiltra::SQ).toString(0); }, kRange, kOutOfRange);

  for (Quiltra::Vr vr : {Quiltra::OL, Quiltra::OF, Quiltra::SQ}) {
    Tag tag = rawTag(vr, {1, 2, 3, 4});
    expectQuiltraError([&] { tag.toString(0); }, "to_String", "unsupported vr");
    expectQuiltraError([&] { tag.addValue(std::string("a\\b")); }, "Tag::setValue",
                       "unsupported type for string write access");
    EXPECT_EQ(tag.numberOfValues(), 2u);  // the first piece's value stays, empty
    EXPECT_TRUE(tag.isNull(1));
  }
}

TEST(TagTypedAccessTest, SplitsTextsAtBackslashesExceptFreeText) {
  Tag cs = tagOf(Quiltra::CS);
  cs.addValue(std::string("A\\\\B"));
  ASSERT_EQ(cs.numberOfValues(), 3u);
  EXPECT_EQ(bytesAt(cs, 1), Bytes{0});  // an empty text, not a null value
  EXPECT_EQ(cs.toString(), "A\\\\B");
  cs.addValue(std::string());
  EXPECT_EQ(cs.numberOfValues(), 4u);
  cs.setValue(std::string("x\\y"), 0);  // a write never splits
  EXPECT_EQ(cs.toString(0), "x\\y");

  for (Quiltra::Vr vr : {Quiltra::LT, Quiltra::ST, Quiltra::UT}) {
    Tag text = tagOf(vr);
    text.addValue(std::string("1\\2\\3"));
    ASSERT_EQ(text.numberOfValues(), 1u);
    EXPECT_EQ(text.toString(0), "1\\2\\3");
  }
}

TEST(TagTypedAccessTest, JoinsAllValuesWithEmptyPiecesForNullValues) {
  Tag is = tagOf(Quiltra::IS);
  EXPECT_EQ(is.toString(), "");
  is.addValue(1);
  is.addValue();
  is.addValue(3);
  EXPECT_EQ(is.toString(), "1\\\\3");
  Tag ob = tagOf(Quiltra::OB);  // null values are never read, whatever the representation
  ob.addValue();
  ob.addValue();
  EXPECT_EQ(ob.toString(), "\\");
}

TEST(TagTypedAccessTest, WritesDatesAndTimesAsText) {
  Tag da = tagOf(Quiltra::DA);
  da.addValue(Date(2023, 5, 7));
  EXPECT_EQ(bytesAt(da, 0), textBytes("20230507"));
  EXPECT_EQ(da.toDate(0), Date(2023, 5, 7));

  Tag tm = tagOf(Quiltra::TM);
  tm.addValue(Time(9, 5, 3, 500));
  EXPECT_EQ(tm.toString(0), "090503.5");
  EXPECT_EQ(tm.toTime(0), Time(9, 5, 3, 500));

  Tag dt = tagOf(Quiltra::DT);
  dt.addValue(std::make_pair(Date(2023, 5, 17), Time(10, 30, 15, 250)));
  EXPECT_EQ(dt.toString(0), "20230517103015.25");
  EXPECT_EQ(dt.toDate(0), Date(2023, 5, 17));
  EXPECT_EQ(dt.toTime(0), Time(10, 30, 15, 250));
  EXPECT_EQ(dt.toDateTime(0).first, Date(2023, 5, 17));
}

TEST(TagTypedAccessTest, ReplacesOneHalfOfADateTime) {
  Tag dt = tagOf(Quiltra::DT);
  dt.addValue(std::string("20230517103015.25"));
  dt.setValue(Date(1999, 12, 31), 0);
  EXPECT_EQ(dt.toString(0), "19991231103015.25");
  dt.setValue(Time(8, 0, 1, 0), 0);
  EXPECT_EQ(dt.toString(0), "19991231080001");

  // A new value is empty, so the current pair cannot be read.
  expectQuiltraError([&] { dt.addValue(Date(2000, 1, 1)); }, "nullChecking", "");
  expectQuiltraError([&] { dt.addValue(Time(1, 0, 0, 0)); }, "nullChecking", "");
  EXPECT_EQ(dt.numberOfValues(), 3u);
  EXPECT_TRUE(dt.isNull(2));
}

TEST(TagTypedAccessTest, ReadsMissingBytesOfShortValuesAsZero) {
  EXPECT_EQ(rawTag(Quiltra::SS, {0xFF}).toShort(0), 255);
  EXPECT_EQ(rawTag(Quiltra::SS, {0xFF}).toInt(0), 255);
  EXPECT_EQ(rawTag(Quiltra::US, {0x34}).toUShort(0), 0x34);
  EXPECT_EQ(rawTag(Quiltra::SL, {0xFF, 0xFF, 0xFF}).toInt(0), 0x00FFFFFF);
  EXPECT_EQ(rawTag(Quiltra::UL, {0x01}).toString(0), "1");
  EXPECT_EQ(rawTag(Quiltra::FL, {0x00, 0x00, 0x80}).toFloat(0), std::numeric_limits<float>::min());
  const std::uint64_t bits = 0x00F0000000000000u;
  double expected;
  std::memcpy(&expected, &bits, sizeof expected);
  EXPECT_EQ(rawTag(Quiltra::FD, {0, 0, 0, 0, 0, 0, 0xF0}).toDouble(0), expected);
  const Tag at = rawTag(Quiltra::AT, {0x08, 0x00});
  EXPECT_EQ(at.toUInt(0), 8u);
  EXPECT_EQ(at.toString(0), "(0008,0000)");
}

TEST(TagTypedAccessTest, ReadsTextUpToTheFirstZeroOrTheEnd) {
  EXPECT_EQ(rawTag(Quiltra::CS, {'A', 'B'}).toString(0), "AB");
  EXPECT_EQ(rawTag(Quiltra::CS, {'A', 0, 'B'}).toString(0), "A");
  EXPECT_EQ(rawTag(Quiltra::IS, {'4', '2'}).toInt(0), 42);
  EXPECT_EQ(rawTag(Quiltra::DS, {'2', '.', '5'}).toFloat(0), 2.5f);
  EXPECT_EQ(rawTag(Quiltra::DA, {'2', '0', '2', '3', '0', '5', '0', '7'}).toDate(0),
            Date(2023, 5, 7));
}

}  // namespace
