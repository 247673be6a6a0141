#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/Logging.h>
#include <quiltra/core/Quiltra_Utils.h>

namespace {

using namespace Quiltra_Utils;
using Quiltra::Date;
using Quiltra::Time;

std::vector<std::string> gLogged;

void recordLog(std::string message, int level) {
  EXPECT_EQ(level, 0);
  gLogged.push_back(std::move(message));
}

std::string streamed(double value) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << value;
  return out.str();
}

TEST(Quiltra_UtilsTest, PrintsIntegers) {
  EXPECT_EQ(toString(0), "0");
  EXPECT_EQ(toString(-42), "-42");
  EXPECT_EQ(toString(std::numeric_limits<int>::min()), "-2147483648");
  EXPECT_EQ(toString(4294967295u), "4294967295");
}

TEST(Quiltra_UtilsTest, PrintsDoublesAsADefaultStream) {
  const double values[] = {0.0,     0.5,  1234.567, 1e-5,      1e-4,      0.0001234, 123456,
                           1234567, -2.5, -1e10,    0.1 + 0.2, 1.0 / 3.0, 1e300,     5e-324};
  for (double value : values) EXPECT_EQ(toString(value), streamed(value)) << value;
  EXPECT_EQ(toString(0.5), "0.5");
  EXPECT_EQ(toString(1234.567), "1234.57");
  EXPECT_EQ(toString(123456.0), "123456");
  EXPECT_EQ(toString(1234567.0), "1.23457e+06");
  EXPECT_EQ(toString(0.1 + 0.2), "0.3");
}

TEST(Quiltra_UtilsTest, ReadsDecimalIntegersLikeStrtol) {
  EXPECT_EQ(toInt("12abc"), 12);
  EXPECT_EQ(toInt("abc"), 0);
  EXPECT_EQ(toInt(""), 0);
  EXPECT_EQ(toInt(" \t\n-17"), -17);
  EXPECT_EQ(toInt("+8"), 8);
  EXPECT_EQ(toInt("-"), 0);
  EXPECT_EQ(toInt("- 5"), 0);
  EXPECT_EQ(toInt("1 2"), 1);
  EXPECT_EQ(toInt("0x1F"), 0);
  EXPECT_EQ(toUInt("-1"), 4294967295u);
}

TEST(Quiltra_UtilsTest, SaturatesAtThe32BitLimits) {
  EXPECT_EQ(toInt("2147483647"), 2147483647);
  EXPECT_EQ(toInt("2147483648"), 2147483647);
  EXPECT_EQ(toInt("-2147483648"), std::numeric_limits<int>::min());
  EXPECT_EQ(toInt("-2147483649"), std::numeric_limits<int>::min());
  EXPECT_EQ(toInt("99999999999999999999999999999"), 2147483647);
  EXPECT_EQ(toInt("-99999999999999999999999999999"), std::numeric_limits<int>::min());
  EXPECT_EQ(toUInt("4294967295"), 2147483647u);
  EXPECT_EQ(toUInt("-2147483648"), 2147483648u);
}

TEST(Quiltra_UtilsTest, ReadsPlainDecimalFloatingPointOnly) {
  EXPECT_EQ(toDouble("1.5e3"), 1500.0);
  EXPECT_EQ(toDouble("  -0.25xyz"), -0.25);
  EXPECT_EQ(toDouble("+.5"), 0.5);
  EXPECT_EQ(toDouble("7."), 7.0);
  EXPECT_EQ(toDouble("2E-2"), 0.02);
  EXPECT_EQ(toDouble("3e"), 3.0);
  EXPECT_EQ(toDouble("3e+"), 3.0);
  EXPECT_EQ(toDouble("1,5"), 1.0);
  EXPECT_EQ(toDouble("0x10"), 0.0);
  EXPECT_EQ(toDouble("1p3"), 1.0);
  EXPECT_EQ(toDouble("inf"), 0.0);
  EXPECT_EQ(toDouble("nan"), 0.0);
  EXPECT_EQ(toDouble("."), 0.0);
  EXPECT_EQ(toDouble("-"), 0.0);
  EXPECT_EQ(toDouble(""), 0.0);
}

// A decimal comma and grouped thousands, as many hosts' locales have.
struct CommaPunct : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(Quiltra_UtilsTest, KeepsThePointWhateverTheGlobalLocale) {
  const std::locale previous =
      std::locale::global(std::locale(std::locale::classic(), new CommaPunct));
  EXPECT_EQ(toString(1.5), "1.5");
  EXPECT_EQ(toString(123456.0), "123456");
  EXPECT_EQ(toDouble("1.5"), 1.5);
  EXPECT_EQ(hexToUInt("1000"), 4096u);
  std::locale::global(previous);
}

TEST(Quiltra_UtilsTest, SaturatesOutOfRangeDoubles) {
  EXPECT_EQ(toDouble("1e400"), HUGE_VAL);
  EXPECT_EQ(toDouble("-1e99999999999999999999"), -HUGE_VAL);
  EXPECT_EQ(toDouble("1" + std::string(400, '0')), HUGE_VAL);
  EXPECT_EQ(toDouble("1e-400"), 0.0);
  EXPECT_EQ(toDouble("0." + std::string(400, '0') + "1"), 0.0);
  EXPECT_EQ(toDouble("0e999999"), 0.0);
}

TEST(Quiltra_UtilsTest, ReadsHexadecimalAsAStreamDoes) {
  EXPECT_EQ(hexToUInt("0008"), 8u);
  EXPECT_EQ(hexToUInt("7FE0"), 32736u);
  EXPECT_EQ(hexToUInt("7fe0"), 32736u);
  EXPECT_EQ(hexToUInt("  10zz"), 16u);
  EXPECT_EQ(hexToUInt("zz"), 0u);
  EXPECT_EQ(hexToUInt(""), 0u);
  EXPECT_EQ(hexToUInt("FFFFFFFF"), 4294967295u);
  EXPECT_EQ(hexToUInt("100000000"), 0u);
  EXPECT_EQ(hexToUInt("-1"), 4294967295u);  // the stream negates unsigned values
  EXPECT_EQ(hexToUInt("0x1F"), 31u);        // and takes a base prefix
  EXPECT_EQ(hexToInt("7FFFFFFF"), 2147483647);
  EXPECT_EQ(hexToInt("80000000"), 0);
  EXPECT_EQ(hexToInt("FFFFFFFF"), 0);
  EXPECT_EQ(hexToInt("-80000000"), std::numeric_limits<int>::min());
  EXPECT_EQ(hexToInt("-80000001"), 0);
  EXPECT_EQ(hexToInt("-1"), -1);
}

TEST(Quiltra_UtilsTest, SplitsTextIntoDigitsAndFractionParts) {
  EXPECT_EQ(digitsOnly("(0010,0020)", false), "00100020");
  EXPECT_EQ(digitsOnly("7FE0x", true), "7FE0");
  EXPECT_EQ(digitsOnly("7FE0x", false), "70");
  EXPECT_EQ(digitsOnly("-a.bG:f9", true), "abf9");
  EXPECT_EQ(beforeFractionPart("1.2.3"), "1.2");
  EXPECT_EQ(afterFractionPart("1.2.3"), "3");
  EXPECT_EQ(beforeFractionPart("123"), "123");
  EXPECT_EQ(afterFractionPart("123"), "");
  EXPECT_EQ(afterFractionPart("123."), "");
  EXPECT_EQ(beforeFractionPart(".5"), "");
}

TEST(Quiltra_UtilsTest, PrintsDatesZeroPaddedAndNeverCut) {
  EXPECT_EQ(toString(Date(2023, 5, 7)), "20230507");
  EXPECT_EQ(toString(Date()), "00000000");
  EXPECT_EQ(toString(Date(99, 5, 7)), "00990507");
  EXPECT_EQ(toString(Date(65535, 255, 100)), "65535255100");
  EXPECT_EQ(toString(Date(70000, 13, 0)), "44641300");  // year cut to 16 bits on construction
}

TEST(Quiltra_UtilsTest, PrintsTimesWithMicrosecondsWithoutTrailingZeros) {
  EXPECT_EQ(toString(Time(9, 5, 3, 0)), "090503");
  EXPECT_EQ(toString(Time(9, 5, 3, 500)), "090503.5");
  EXPECT_EQ(toString(Time(9, 5, 3, 1)), "090503.001");
  EXPECT_EQ(toString(Time(10, 30, 0, 0)), "103000");
  EXPECT_EQ(toString(Time(100, 255, 60, 0)), "10025560");
  Time time;
  const std::pair<double, const char*> fractions[] = {
      {0.05, "000000.05"},     {0.123456, "000000.123456"}, {0.9999999, "000000.999999"},
      {0.0000009, "000000"},   {0.000001, "000000.000001"}, {-0.5, "000000"},
      {std::nan(""), "000000"}};
  for (const auto& [fraction, text] : fractions) {
    time.fraction = fraction;
    EXPECT_EQ(toString(time), text) << fraction;
  }
  time.fraction = 1e30;  // outside the record's rule: capped, never undefined
  EXPECT_EQ(toString(time), "000000.18446744073709551615");
}

TEST(Quiltra_UtilsTest, ReadsDatesFromTheirDigits) {
  const std::pair<const char*, Date> dates[] = {{"1999.12.31", Date(1999, 12, 31)},
                                                {"2023-05-17", Date(2023, 5, 17)},
                                                {"20231399", Date(2023, 13, 99)},
                                                {"0517", Date(0, 5, 17)},
                                                {"", Date()},
                                                {"abc", Date()},
                                                {"99999999999", Date(214748, 36, 47)}};
  for (const auto& [text, date] : dates) EXPECT_EQ(toDate(text), date) << text;
}

TEST(Quiltra_UtilsTest, ReadsTimesAlignedOnTheRight) {
  EXPECT_EQ(toTime("090503.5"), Time(9, 5, 3, 500));
  EXPECT_EQ(toString(toTime("090503.5")), "090503.5");
  EXPECT_DOUBLE_EQ(toTime("090503.123456").fraction, 0.123456);
  // Six divisions by 10.0 land just below 0.123456, and the writer cuts towards zero.
  EXPECT_EQ(toString(toTime("090503.123456")), "090503.123455");
  EXPECT_EQ(toTime("10:30:15"), Time(10, 30, 15, 0));
  EXPECT_EQ(toTime("1230"), Time(0, 12, 30, 0));
  EXPECT_EQ(toTime(""), Time());
  EXPECT_EQ(toTime(".5"), Time(0, 0, 0, 500));
  EXPECT_EQ(toTime("12.05").fraction, 0.05);
  EXPECT_EQ(toTime("1.2.5"), Time(0, 0, 12, 500));
}

TEST(Quiltra_UtilsTest, KeepsOverlongTimeTextsInBounds) {
  EXPECT_EQ(toTime("1234567"), Time(123, 45, 67, 0));
  EXPECT_EQ(toTime("99999999999"), Time(214748 % 256, 36, 47, 0));
  EXPECT_DOUBLE_EQ(toTime("0.1234567891234").fraction, 0.123456789);
  EXPECT_LT(toTime("0." + std::string(1000, '9')).fraction, 1.0);
}

TEST(Quiltra_UtilsTest, WritesAndReadsDateTimes) {
  const std::pair<Date, Time> dateTime(Date(2023, 5, 17), Time(10, 30, 15, 250));
  EXPECT_EQ(toString(dateTime), "20230517103015.25");
  EXPECT_EQ(toDateTime("20230517103015.25"), dateTime);
  EXPECT_EQ(toDateTime("20230517103015.25+0100"), dateTime);
  EXPECT_EQ(toDateTime("20230517103015.25-0500"), dateTime);
  EXPECT_EQ(toDateTime("20230517"), std::make_pair(Date(2023, 5, 17), Time()));
  EXPECT_EQ(toDateTime("20230517+0100"), std::make_pair(Date(2023, 5, 17), Time()));
  EXPECT_EQ(toDateTime("2023"), std::make_pair(Date(0, 20, 23), Time()));
  EXPECT_EQ(toDateTime("2023051710"), std::make_pair(Date(2023, 5, 17), Time(0, 0, 10, 0)));
  EXPECT_EQ(toDateTime(""), std::make_pair(Date(), Time()));
}

TEST(Quiltra_UtilsTest, ConvertsVrCodesLeniently) {
  EXPECT_EQ(toVr("OB"), Quiltra::OB);
  EXPECT_EQ(toVr("UI"), Quiltra::UI);
  for (const char* text : {"ob", "O", "OBX", "", "UN", "  "}) EXPECT_EQ(toVr(text), Quiltra::UN);
  EXPECT_EQ(Quiltra_Utils::toString(Quiltra::UT), "UT");
  EXPECT_EQ(Quiltra_Utils::toString(Quiltra::UN), "UN");
}

TEST(Quiltra_UtilsTest, LogsOnlyNegativeVrValues) {
  gLogged.clear();
  setLoggingHandler(&recordLog);
  EXPECT_EQ(Quiltra_Utils::toString(static_cast<Quiltra::Vr>(28)), "UN");
  EXPECT_TRUE(gLogged.empty());
  EXPECT_EQ(Quiltra_Utils::toString(static_cast<Quiltra::Vr>(-3)), "UN");
  setLoggingHandler(nullptr);
  ASSERT_EQ(gLogged.size(), 1u);
  const std::string prefix =
      "Number of vr values must have changed, because '-3' is a valid vr. Update this function "
      "(inQuiltra_Utils:";
  const std::string& message = gLogged[0];
  ASSERT_EQ(message.compare(0, prefix.size(), prefix), 0) << message;
  const std::string rest = message.substr(prefix.size());
  ASSERT_GE(rest.size(), 3u);
  EXPECT_EQ(rest.substr(rest.size() - 2), ")\n");
  EXPECT_EQ(rest.find_first_not_of("0123456789"), rest.size() - 2) << rest;
}

TEST(Quiltra_UtilsTest, SplitsAtEverySeparator) {
  using Pieces = std::vector<std::string>;
  EXPECT_EQ(split("a,,b", ',', false), (Pieces{"a", "", "b"}));
  EXPECT_EQ(split("a,,b", ',', true), (Pieces{"a", "b"}));
  EXPECT_EQ(split("a,", ',', false), (Pieces{"a", ""}));
  EXPECT_EQ(split("a,", ',', true), (Pieces{"a"}));
  EXPECT_EQ(split("", ',', false), (Pieces{""}));
  EXPECT_EQ(split("", ',', true), Pieces{});
  EXPECT_EQ(split(",", ',', false), (Pieces{"", ""}));
  EXPECT_EQ(split("a\\b\\c", '\\', false), (Pieces{"a", "b", "c"}));
  EXPECT_EQ(split("abc", ',', true), (Pieces{"abc"}));
}

}  // namespace
