#include "support/QuiltraTestSupport.h"

#include <functional>
#include <gtest/gtest.h>
#include <initializer_list>

#include <quiltra/element/Tag.h>

namespace Quiltra {
namespace {

using QuiltraTest::expectQuiltraError;
using Bytes = std::vector<unsigned char>;
using Call = std::function<void(Tag&)>;

const char kNotForStrings[] = "VR of UN,OB,OW,SQ are not supported for strings";
const char kNoStringWrite[] = "unsupported type for string write access";

// An element holding one raw value per byte string, each in a buffer of exactly that size.
Tag tagOf(Vr vr, std::initializer_list<Bytes> values = {}) {
  Tag tag(TagInfo(TagId(0x0010, 0x0020), "Sample", vr, {1, 1}));
  for (const Bytes& bytes : values) {
    tag.addValue().setData(static_cast<unsigned int>(bytes.size()), bytes.data());
  }
  return tag;
}
Bytes bytesAt(const Tag& tag, unsigned int index) {
  return Bytes(tag.getValue(index).data(), tag.getValue(index).data() + tag.getValueSize(index));
}
Bytes text(const std::string& characters) {
  return Bytes(characters.c_str(), characters.c_str() + characters.size() + 1);
}

template <class T>
Bytes written(Vr vr, T value) {
  Tag tag = tagOf(vr);
  tag.addValue(value);
  return bytesAt(tag, 0);
}

void expectType(const std::function<void()>& call) {
  expectQuiltraError(call, "Tag::typeChecking", "illegal type");
}
void expectRange(const std::function<void()>& call) {
  expectQuiltraError(call, "Tag::rangeChecking", "index out of range");
}

// Reader, writer and appender of one value type, on an element that fits none of them (CS)
// without and with a value, and on one that fits them without values and with a null one.
template <class T>
void expectChecks(T value, Vr fitting, bool rangeFirst, const Call& read) {
  Tag empty = tagOf(CS);
  Tag filled = tagOf(CS, {text("1")});
  Tag fits = tagOf(fitting);
  for (const Call& call : {read, Call([=](Tag& t) { t.setValue(value, 0); })}) {
    (rangeFirst ? expectRange : expectType)([&] { call(empty); });
    expectType([&] { call(filled); });
    expectRange([&] { call(fits); });
  }
  expectType([&] { empty.addValue(value); });
  EXPECT_TRUE(empty.numberOfValues() == 0u && bytesAt(filled, 0) == text("1"));  // unchanged
  fits.addValue();
  expectQuiltraError([&] { read(fits); }, "nullChecking", "");
}

TEST(TagTypedAccessTest, ChecksTypeRangeAndNullInTheOrderOfEachAccessor) {
  expectChecks(1, SS, false, [](Tag& t) { t.toInt(0); });
  expectChecks(1u, US, true, [](Tag& t) { t.toUInt(0); });
  expectChecks(short{1}, SS, true, [](Tag& t) { t.toShort(0); });
  expectChecks(static_cast<unsigned short>(1), US, true, [](Tag& t) { t.toUShort(0); });
  expectChecks(1.0f, FL, false, [](Tag& t) { t.toFloat(0); });
  expectChecks(1.0, FD, false, [](Tag& t) { t.toDouble(0); });
  expectChecks(Date(), DA, false, [](Tag& t) { t.toDate(0); });
  expectChecks(Time(), TM, false, [](Tag& t) { t.toTime(0); });
  expectChecks(std::make_pair(Date(), Time()), DT, false, [](Tag& t) { t.toDateTime(0); });
  expectRange([] { tagOf(CS).toString(0); });
  expectQuiltraError([] { tagOf(CS, {{}}).toString(0); }, "nullChecking", "");
  expectRange([] { tagOf(OB).setValue(std::string("x"), 0); });
}

TEST(TagTypedAccessTest, WritesEachRepresentationsByteLayout) {
  EXPECT_EQ(written(SS, 70000), (Bytes{0x70, 0x11}));  // the low 16 bits
  EXPECT_EQ(written(SS, std::string(" \t-12abc")), (Bytes{0xF4, 0xFF}));
  EXPECT_EQ(written(US, 70000.9f), (Bytes{0x70, 0x11}));  // the int branch, truncated
  EXPECT_EQ(written(SL, 2.5f), (Bytes{2, 0, 0, 0}));
  EXPECT_EQ(written(SL, -2.5f), (Bytes{0xFE, 0xFF, 0xFF, 0xFF}));
  // Saturated from exactly 2^31 up; the float just below converts exactly.
  EXPECT_EQ(written(SL, 2147483648.0f), (Bytes{0xFF, 0xFF, 0xFF, 0x7F}));
  EXPECT_EQ(written(SL, 2147483520.0f), (Bytes{0x80, 0xFF, 0xFF, 0x7F}));
  EXPECT_EQ(written(SL, -2147483648.0f), (Bytes{0, 0, 0, 0x80}));
  EXPECT_EQ(written(UL, 0x01020304u), (Bytes{4, 3, 2, 1}));
  EXPECT_EQ(written(UL, -1.0f), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));  // the 64-bit truncation
  EXPECT_EQ(written(UL, 3e9f), (Bytes{0, 0x5E, 0xD0, 0xB2}));
  EXPECT_EQ(written(FL, 3.0), (Bytes{0, 0, 0x40, 0x40}));
  EXPECT_EQ(written(FL, std::string(" 1.5e1xyz")), (Bytes{0, 0, 0x70, 0x41}));
  EXPECT_EQ(written(FD, 0.1), (Bytes{0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xB9, 0x3F}));
  EXPECT_EQ(written(FD, std::string("-0.25")), (Bytes{0, 0, 0, 0, 0, 0, 0xD0, 0xBF}));
  EXPECT_EQ(written(IS, -42), text("-42"));
  EXPECT_EQ(written(DS, 3.14159265358979), text("3.14159"));
  EXPECT_EQ(written(DA, Date(2023, 5, 7)), text("20230507"));
  EXPECT_EQ(written(TM, Time(9, 5, 3, 500)), text("090503.5"));
  EXPECT_EQ(written(DT, std::pair(Date(2023, 5, 7), Time(1, 2, 3, 0))), text("20230507010203"));
  EXPECT_EQ(written(AT, std::string(" ( 7FE0 , 10 )")), (Bytes{0xE0, 0x7F, 0x10, 0}));
  EXPECT_EQ(written(AT, std::string("(10,20")), (Bytes{0x10, 0, 0x20, 0}));  // unclosed
  EXPECT_EQ(written(AT, std::string("(8;16)")), (Bytes{8, 0, 0, 0}));        // stops at a mismatch
  EXPECT_EQ(written(AT, std::string("(-10,+20)")), (Bytes{0xF0, 0xFF, 0x20, 0}));  // signs, as %hx
}

TEST(TagTypedAccessTest, ReadsBySignednessWithSinglePrecisionAndGroupFirst) {
  EXPECT_EQ(tagOf(SS, {{0xFF, 0xFF}}).toInt(0), -1);
  EXPECT_EQ(tagOf(US, {{0xFF, 0xFF}}).toInt(0), 65535);
  EXPECT_EQ(tagOf(SS, {{0xFF, 0xFF}}).toString(0), "-1");
  EXPECT_EQ(tagOf(DS, {text("3.14159265358979")}).toDouble(0), 3.1415927410125732);
  EXPECT_EQ(tagOf(FD, {{0xAD, 0xFA, 0x5C, 0x6D, 0x45, 0x4A, 0x93, 0x40}}).toString(0), "1234.57");
  EXPECT_EQ(tagOf(SS, {{0xFF}}).toShort(0), 255);  // missing bytes read as zero
  EXPECT_EQ(tagOf(AT, {{0x08, 0, 0x16, 0}}).toString(0), "(0008,0016)");  // group first
}

TEST(TagTypedAccessTest, RejectsWhatARepresentationCannotHoldAndKeepsTheAppendedValue) {
  Tag of = tagOf(OF);
  expectQuiltraError([&] { of.addValue(1.0); }, "Tag::setValue float", "UNIMPLEMENTED");
  Tag at = tagOf(AT);
  expectQuiltraError([&] { at.addValue(8u); }, "Tag::setValue unsigned int", "UNEXPECTED VR");
  expectQuiltraError([&] { at.addValue(1.0f); }, "Tag::setValue unsigned int", "UNEXPECTED VR");
  Tag sq = tagOf(SQ);
  expectQuiltraError([&] { sq.addValue(std::string("a\\b")); }, "Tag::setValue", kNoStringWrite);
  Tag dt = tagOf(DT);  // a new value is empty, so the current pair cannot be read
  expectQuiltraError([&] { dt.addValue(Date(2000, 1, 1)); }, "nullChecking", "");
  expectQuiltraError([&] { dt.addValue(Time(1, 0, 0, 0)); }, "nullChecking", "");
  for (const Tag* tag : {&of, &at, &sq, &dt}) EXPECT_TRUE(tag->isNull(tag->numberOfValues() - 1));
  expectQuiltraError([] { tagOf(OF, {{1}}).toFloat(0); }, "to_Float", "UNIMPLEMENTED");
  Tag un = tagOf(UN, {{1, 2}});
  expectQuiltraError([&] { un.toString(0); }, "Tag::toString", kNotForStrings);
  expectQuiltraError([&] { un.addValue(std::string("a")); }, "Tag::addValue", kNotForStrings);
  expectQuiltraError([&] { un.setValue(std::string("a"), 0); }, "Tag::setValue", kNoStringWrite);
  EXPECT_EQ(un.numberOfValues(), 1u);
  expectQuiltraError([] { tagOf(OB).toString(0); }, "Tag::toString", kNotForStrings);
  expectRange([] { tagOf(SQ).toString(0); });
  for (Vr vr : {OL, OF, SQ}) {
    const Tag tag = tagOf(vr, {{1, 2, 3, 4}});
    expectQuiltraError([&] { tag.toString(0); }, "to_String", "unsupported vr");
  }
}

TEST(TagTypedAccessTest, SplitsAddedTextsExceptFreeTextAndJoinsThemBack) {
  Tag cs = tagOf(CS);
  cs.addValue(std::string("A\\\\B"));
  cs.addValue(std::string());
  cs.addValue();
  EXPECT_EQ(bytesAt(cs, 1), text(""));  // an empty text, not a null value
  EXPECT_EQ(cs.toString(), "A\\\\B\\\\");
  cs.setValue(std::string("x\\y"), 0);  // a write never splits
  EXPECT_EQ(cs.toString(0), "x\\y");
  for (Vr vr : {LT, ST, UT}) EXPECT_EQ(written(vr, std::string("1\\2")), text("1\\2"));
  EXPECT_EQ(tagOf(OB, {{}, {}}).toString(), "\\");  // null values are never read
  Tag us = tagOf(US);  // numbers are parsed piece by piece, each from its own text
  us.addValue(std::string("7\\65535\\12"));
  ASSERT_EQ(us.numberOfValues(), 3u);
  EXPECT_EQ(us.toUShort(0) + us.toUShort(1) + us.toUShort(2), 7 + 65535 + 12);
  Tag lo = tagOf(LO);  // a long piece between short ones, and one cut at a zero
  lo.addValue(std::string("a\\a longer piece than sixteen bytes\\b") + std::string(1, '\0') + "c");
  EXPECT_EQ(lo.toString(1), "a longer piece than sixteen bytes");
  EXPECT_EQ(bytesAt(lo, 2), Bytes({'b', 0, 0, 0}));
}

TEST(TagTypedAccessTest, ReplacesEitherHalfOfADateTime) {
  Tag dt = tagOf(DT, {text("20230517103015.25")});
  dt.setValue(Date(1999, 12, 31), 0);
  EXPECT_EQ(dt.toTime(0), Time(10, 30, 15, 250));
  dt.setValue(Time(8, 0, 1, 0), 0);
  EXPECT_EQ(dt.toDate(0), Date(1999, 12, 31));
  EXPECT_EQ(dt.toString(0), "19991231080001");
}

}  // namespace
}  // namespace Quiltra
