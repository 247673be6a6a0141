// Text forms read and written here:
//   DA  YYYYMMDD            digits only count, aligned on the right ("2023-05-17" reads alike)
//   TM  HHMMSS[.F...]       whole digits aligned on the right, up to nine fraction digits read,
//                           six (microseconds) written, trailing zeros dropped
//   DT  DA text + TM text   a trailing UTC offset ("+" or "-" and digits) is ignored on reading
// Numbers use "." as the decimal point and no group separators, whatever the locale.
#include "quiltra/core/Quiltra_Utils.h"

#include "core/TextScan.h"
#include "core/VrTable.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>
#include <string_view>

#include <quiltra/core/Logging.h>

namespace Quiltra_Utils {

namespace {

// Named in the log message of toString(Vr), together with the line of the check.
constexpr const char* kSourceName = "Quiltra_Utils";

// Nine digits still fit 32 bits and reach three places below the microseconds written.
constexpr std::size_t kMaxFractionDigits = 9;
constexpr std::size_t kDateLength = 8;
// Caps a decimal exponent while it is read; far beyond any double's range.
constexpr long long kExponentCap = 1000000000;

bool isHexLetter(char c) {
  return (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

using Quiltra::isDigit;
using Quiltra::skipBlanks;
using Quiltra::skipDigits;
using Quiltra::skipSign;

// A number zero-padded on the left to width; a wider number is written in full.
void appendPadded(std::string& out, std::uint64_t value, std::size_t width) {
  const std::string digits = std::to_string(value);
  if (digits.size() < width) out.append(width - digits.size(), '0');
  out += digits;
}

// The extent of a decimal floating-point number: sign, digits, optional "." and digits,
// optional exponent. scale is the rough decimal exponent of the value, used only to tell an
// overflow from an underflow.
struct DecimalScan {
  std::size_t begin = 0;
  std::size_t end = 0;  // == begin when no number is there
  long long scale = 0;
};

// Reads "e", an optional sign and at least one digit at pos; moves pos past them.
long long scanExponent(std::string_view text, std::size_t& pos) {
  if (pos >= text.size() || (text[pos] != 'e' && text[pos] != 'E')) return 0;
  const bool negative = Quiltra::isMinusAt(text, pos + 1);
  const std::size_t digits = skipSign(text, pos + 1);
  const std::size_t end = skipDigits(text, digits);
  if (end == digits) return 0;
  long long exponent = 0;
  for (std::size_t i = digits; i < end; ++i) {
    exponent = std::min(kExponentCap, exponent * 10 + (text[i] - '0'));
  }
  pos = end;
  return negative ? -exponent : exponent;
}

// Decimal places up to the first significant digit: the count of whole digits from the
// first non-zero one, or minus the zeros after the point when the whole part is zero.
long long leadingPlaces(std::string_view whole, std::string_view fraction) {
  const std::size_t wholeZeros = std::min(whole.find_first_not_of('0'), whole.size());
  if (wholeZeros < whole.size()) return static_cast<long long>(whole.size() - wholeZeros);
  return -static_cast<long long>(std::min(fraction.find_first_not_of('0'), fraction.size()));
}

DecimalScan scanDecimal(std::string_view text) {
  DecimalScan scan;
  scan.begin = scan.end = skipBlanks(text, 0);
  const std::size_t wholeBegin = skipSign(text, scan.begin);
  const std::size_t wholeEnd = skipDigits(text, wholeBegin);
  const bool hasPoint = wholeEnd < text.size() && text[wholeEnd] == '.';
  const std::size_t fracBegin = hasPoint ? wholeEnd + 1 : wholeEnd;
  const std::size_t fracEnd = skipDigits(text, fracBegin);
  if (wholeEnd == wholeBegin && fracEnd == fracBegin) return scan;  // no digit at all
  scan.end = fracEnd;
  const long long exponent = scanExponent(text, scan.end);
  scan.scale = exponent + leadingPlaces(text.substr(wholeBegin, wholeEnd - wholeBegin),
                                        text.substr(fracBegin, fracEnd - fracBegin));
  return scan;
}

// Stream extraction into T in hexadecimal; a failed extraction gives 0.
template <class T>
T extractHex(const std::string& text) {
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  T value = 0;
  in >> std::hex >> value;
  if (in.fail()) return 0;
  return value;
}

// Whole microseconds of a fraction, cut towards zero. A fraction outside [0, 1) breaks the
// record's rule: negative ones and NaN give none, huge ones are capped so that the
// conversion to an integer stays defined.
std::uint64_t wholeMicroseconds(double fraction) {
  const double micros = std::trunc(fraction * 1000000.0);
  if (!(micros >= 1.0)) return 0;
  if (micros >= 18446744073709551616.0) return std::numeric_limits<std::uint64_t>::max();
  return static_cast<std::uint64_t>(micros);
}

// The value of the fraction digits divided by 10^k as k divisions by 10.0. Digits after
// the ninth are ignored.
double readFraction(const std::string& digits) {
  const std::size_t count = std::min(digits.size(), kMaxFractionDigits);
  double value = 0.0;
  for (std::size_t i = 0; i < count; ++i) value = value * 10.0 + (digits[i] - '0');
  for (std::size_t i = 0; i < count; ++i) value /= 10.0;
  return value;
}

// A DT text may end in a UTC offset, which the pair has no place for.
std::string_view withoutUtcOffset(std::string_view text) {
  const std::size_t sign = text.find_last_of("+-");
  if (sign == std::string_view::npos || sign + 1 == text.size()) return text;
  if (skipDigits(text, sign + 1) != text.size()) return text;
  return text.substr(0, sign);
}

void logNegativeVr(Quiltra::Vr vr, int line) {
  logMessage("Number of vr values must have changed, because '" +
                 std::to_string(static_cast<int>(vr)) +
                 "' is a valid vr. Update this function (in" + kSourceName + ":" +
                 std::to_string(line) + ")" + "\n",
             0);
}

void appendPiece(std::vector<std::string>& pieces, std::string_view piece, bool dropEmpty) {
  if (dropEmpty && piece.empty()) return;
  pieces.emplace_back(piece);
}

}  // namespace

std::string toString(int value) {
  return std::to_string(value);
}

std::string toString(unsigned int value) {
  return std::to_string(value);
}

std::string toString(double value) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << value;
  return out.str();
}

std::string toString(const Quiltra::Date& date) {
  std::string text;
  appendPadded(text, date.year, 4);
  appendPadded(text, date.month, 2);
  appendPadded(text, date.day, 2);
  return text;
}

std::string toString(const Quiltra::Time& time) {
  std::string text;
  appendPadded(text, time.hour, 2);
  appendPadded(text, time.minute, 2);
  appendPadded(text, time.second, 2);
  const std::uint64_t micros = wholeMicroseconds(time.fraction);
  if (micros == 0) return text;
  std::string digits;
  appendPadded(digits, micros, 6);
  digits.erase(digits.find_last_not_of('0') + 1);  // micros != 0: some digit is not "0"
  return text + "." + digits;
}

std::string toString(const std::pair<Quiltra::Date, Quiltra::Time>& dateTime) {
  return toString(dateTime.first) + toString(dateTime.second);
}

std::string toString(Quiltra::Vr vr) {
  if (vr < 0) logNegativeVr(vr, __LINE__);
  // The strict form already answers the code for 0 to 26 and "UN" for 27 and above.
  return Quiltra::toString(vr);
}

int toInt(const std::string& text) {
  const std::size_t signPos = skipBlanks(text, 0);
  const std::size_t digits = skipSign(text, signPos);
  const bool negative = Quiltra::isMinusAt(text, signPos);
  // The magnitude stops growing at 2^31, so any number of digits saturates without overflow.
  constexpr std::int64_t kCap = std::int64_t{1} << 31;
  std::int64_t magnitude = 0;
  for (std::size_t i = digits; i < text.size() && isDigit(text[i]); ++i) {
    magnitude = std::min(kCap, magnitude * 10 + (text[i] - '0'));
  }
  if (negative) return static_cast<int>(-magnitude);
  return static_cast<int>(std::min(magnitude, kCap - 1));
}

unsigned int toUInt(const std::string& text) {
  return static_cast<unsigned int>(toInt(text));
}

double toDouble(const std::string& text) {
  const DecimalScan scan = scanDecimal(text);
  if (scan.end == scan.begin) return 0.0;
  const char* first = text.data() + scan.begin;
  const bool negative = *first == '-';
  if (*first == '+') ++first;  // from_chars takes a "-" only
  double value = 0.0;
  const std::from_chars_result result = std::from_chars(first, text.data() + scan.end, value);
  if (result.ec != std::errc::result_out_of_range) return value;
  const double limit = scan.scale > 0 ? HUGE_VAL : 0.0;
  return negative ? -limit : limit;
}

unsigned int hexToUInt(const std::string& text) {
  return extractHex<unsigned int>(text);
}

int hexToInt(const std::string& text) {
  return extractHex<int>(text);
}

std::string digitsOnly(const std::string& text, bool hex) {
  std::string digits;
  for (const char c : text) {
    if (isDigit(c) || (hex && isHexLetter(c))) digits += c;
  }
  return digits;
}

std::string beforeFractionPart(const std::string& text) {
  const std::size_t point = text.rfind('.');
  if (point == std::string::npos) return text;
  return text.substr(0, point);
}

std::string afterFractionPart(const std::string& text) {
  const std::size_t point = text.rfind('.');
  if (point == std::string::npos) return std::string();
  return text.substr(point + 1);
}

Quiltra::Date toDate(const std::string& text) {
  const unsigned int n = toUInt(digitsOnly(text, false));
  return Quiltra::Date(static_cast<int>(n / 10000), static_cast<int>(n / 100 % 100),
                       static_cast<int>(n % 100));
}

// More than six whole digits follow toUInt (saturating at ten digits); only the last six
// count after the cut to 8-bit fields.
Quiltra::Time toTime(const std::string& text) {
  const unsigned int n = toUInt(digitsOnly(beforeFractionPart(text), false));
  Quiltra::Time time(static_cast<int>(n / 10000), static_cast<int>(n / 100 % 100),
                     static_cast<int>(n % 100), 0);
  time.fraction = readFraction(digitsOnly(afterFractionPart(text), false));
  return time;
}

std::pair<Quiltra::Date, Quiltra::Time> toDateTime(const std::string& text) {
  const std::string_view dateTime = withoutUtcOffset(text);
  if (dateTime.size() <= kDateLength) return {toDate(std::string(dateTime)), Quiltra::Time()};
  return {toDate(std::string(dateTime.substr(0, kDateLength))),
          toTime(std::string(dateTime.substr(kDateLength)))};
}

Quiltra::Vr toVr(const std::string& text) {
  if (text.size() != 2) return Quiltra::UN;
  return Quiltra::findVr(text).value_or(Quiltra::UN);
}

std::vector<std::string> split(const std::string& text, char separator, bool dropEmpty) {
  const std::string_view view(text);
  std::vector<std::string> pieces;
  std::size_t start = 0;
  for (std::size_t end = view.find(separator); end != std::string_view::npos;
       end = view.find(separator, start)) {
    appendPiece(pieces, view.substr(start, end - start), dropEmpty);
    start = end + 1;
  }
  appendPiece(pieces, view.substr(start), dropEmpty);
  return pieces;
}

}  // namespace Quiltra_Utils
