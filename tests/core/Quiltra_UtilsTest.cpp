#include <cmath>
#include <gtest/gtest.h>
#include <locale>

#include <quiltra/core/Logging.h>
#include <quiltra/core/Quiltra_Utils.h>

namespace {

using namespace Quiltra_Utils;
using Quiltra::Date;
using Quiltra::Time;
using Pieces = std::vector<std::string>;

// Every test here runs under a decimal comma, which no conversion may follow.
struct CommaPunct : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};
const std::locale kHostLocale =
    std::locale::global(std::locale(std::locale::classic(), new CommaPunct));

// The texts of the values, each followed by a blank, so that a table of cases is one check.
template <class... Values>
std::string printAll(const Values&... values) {
  return ((Quiltra_Utils::toString(values) + " ") + ...);
}

template <class Convert>
std::string readEach(Convert convert, std::initializer_list<std::string> texts) {
  std::string results;
  for (const std::string& text : texts) results += printAll(convert(text));
  return results;
}

std::string gLogged;

void recordLog(std::string message, int level) {
  gLogged += toString(level) + message;
}

TEST(Quiltra_UtilsTest, PrintsNumbersAsADefaultStream) {
  EXPECT_EQ(printAll(-2147483647 - 1, 4294967295u, 1234.567, 1234567.0, 123456.0, 0.0, 1e-5, 1e-4),
            "-2147483648 4294967295 1234.57 1.23457e+06 123456 0 1e-05 0.0001 ");
}

TEST(Quiltra_UtilsTest, ReadsNumbersFallingBackToZeroAndSaturating) {
  EXPECT_EQ(readEach(toInt, {"12abc", "abc", " \t\n-17", "+8", "- 5", "2147483648", "-2147483649"}),
            "12 0 -17 8 0 2147483647 -2147483648 ");
  // The signed conversion's 32 bits: 4294967295 saturates at the signed limit first.
  EXPECT_EQ(readEach(toUInt, {"-1", "4294967295"}), "4294967295 2147483647 ");
  EXPECT_EQ(readEach(toDouble, {"1.5e3", " -.25x", "+7.", "3e+", "1,5", "0x10", "inf", ".", "1e400",
                                "-1e99999999999999999999", "1e-400"}),
            "1500 -0.25 7 3 1 0 0 0 inf -inf 0 ");
  // As a stream reads: "-" negates an unsigned value, "0x" is taken, out of range gives 0.
  EXPECT_EQ(
      readEach(hexToUInt, {"0008", "7fe0", "  10zz", "zz", "FFFFFFFF", "100000000", "-1", "0x1F"}),
      "8 32736 16 0 4294967295 0 4294967295 31 ");
  EXPECT_EQ(readEach(hexToInt, {"7FFFFFFF", "80000000", "-80000000", "-80000001"}),
            "2147483647 0 -2147483648 0 ");
}

TEST(Quiltra_UtilsTest, WritesDatesAndTimesZeroPaddedAndNeverCut) {
  EXPECT_EQ(printAll(Date(2023, 5, 7), Date(), Date(99, 5, 7), Date(65535, 255, 100)),
            "20230507 00000000 00990507 65535255100 ");
  EXPECT_EQ(printAll(Time(9, 5, 3, 0), Time(9, 5, 3, 500), Time(9, 5, 3, 1), Time(100, 255, 60, 0),
                     std::make_pair(Date(2023, 5, 17), Time(10, 30, 15, 250))),
            "090503 090503.5 090503.001 10025560 20230517103015.25 ");
  Time micro;  // exactly one microsecond is the smallest fraction written
  micro.fraction = 0.000001;
  EXPECT_EQ(toString(micro), "000000.000001");
  Time odd;  // fractions outside [0, 1) stay defined
  odd.fraction = std::nan("");
  const std::string nanText = toString(odd);
  odd.fraction = 1e30;
  EXPECT_EQ(nanText + " " + toString(odd), "000000 000000.18446744073709551615");
}

TEST(Quiltra_UtilsTest, ReadsDatesAndTimesFromTheirDigitsAlignedOnTheRight) {
  EXPECT_EQ(digitsOnly("(0010,0020)x7F", false) + "|" + digitsOnly("-a.bG:f9x", true) + "|" +
                beforeFractionPart("1.2.3") + "|" + afterFractionPart("1.2.3") + "|" +
                afterFractionPart("12"),
            "001000207|abf9|1.2|3|");
  EXPECT_EQ(readEach(toDate, {"1999.12.31", "20231399", "0517", "abc", "99999999999"}),
            "19991231 20231399 00000517 00000000 181403647 ");
  // Written back in whole microseconds, cut towards zero; k divisions by 10.0 put .123456
  // just below itself.
  EXPECT_EQ(readEach(toTime, {"10:30:15", "1230", "", ".05", "1.2.5", "1234567", ".123456",
                              ".9999999", ".0000009"}),
            "103015 001230 000000 000000.05 000012.5 1234567 000000.123455 000000.999999 000000 ");
  // Up to nine fraction digits count, below the microseconds written; the tenth does not.
  EXPECT_DOUBLE_EQ(toTime(".0000009").fraction, 9e-07);
  EXPECT_DOUBLE_EQ(toTime(".000000009").fraction, 9e-09);
  EXPECT_EQ(toTime(".0000000009").fraction, 0.0);
  // A DT text loses its UTC offset; the time starts after eight characters.
  EXPECT_EQ(readEach(toDateTime, {"20230517103015.25-0500", "20230517+01", "2023", "2023051710"}),
            "20230517103015.25 20230517000000 00002023000000 20230517000010 ");
}

TEST(Quiltra_UtilsTest, ConvertsVrCodesLenientlyAndLogsNegativeValues) {
  EXPECT_EQ(readEach(toVr, {"OB", "UT", "ob", "O", "OBX", "", "  "}), "OB UT UN UN UN UN UN ");
  setLoggingHandler(&recordLog);
  EXPECT_EQ(printAll(Quiltra::UN, static_cast<Quiltra::Vr>(28), static_cast<Quiltra::Vr>(-3)),
            "UN UN UN ");
  setLoggingHandler(nullptr);
  const std::string prefix =  // level 0, then the text naming the line of the check
      "0Number of vr values must have changed, because '-3' is a valid vr. Update this function "
      "(inQuiltra_Utils:";
  const int line = toInt(gLogged.substr(std::min(prefix.size(), gLogged.size())));
  EXPECT_EQ(gLogged, prefix + toString(line) + ")\n");
}

TEST(Quiltra_UtilsTest, SplitsAtEverySeparator) {
  EXPECT_EQ(split("a,,b,", ',', false), (Pieces{"a", "", "b", ""}));
  EXPECT_EQ(split("a,,b,", ',', true), (Pieces{"a", "b"}));
  EXPECT_EQ(split(",", ',', false), (Pieces{"", ""}));
  EXPECT_EQ(split("", ',', false), (Pieces{""}));
  EXPECT_EQ(split("", ',', true), Pieces{});
  EXPECT_EQ(split("a\\b", '\\', false), (Pieces{"a", "b"}));
}

}  // namespace
