#ifndef QUILTRA_CORE_QUILTRA_UTILS_H_
#define QUILTRA_CORE_QUILTRA_UTILS_H_

#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/DateTime.h>
#include <quiltra/core/Export.h>
#include <quiltra/core/Vr.h>

/// Conversions between numbers, dates, times, value representations and their texts.
/// All are pure and reentrant; none throws for bad text: each falls back to a defined
/// value (0, 0/0/0, UN, an empty or whole text) instead.
namespace Quiltra_Utils {

/// Decimal text, "-" before negative values.
QUILTRA_EXPORT std::string toString(int value);
QUILTRA_EXPORT std::string toString(unsigned int value);
/// What a default-formatted output stream prints: six significant digits, general notation.
QUILTRA_EXPORT std::string toString(double value);
/// YYYYMMDD, each field zero-padded to its minimum width and never cut.
QUILTRA_EXPORT std::string toString(const Quiltra::Date& date);
/// HHMMSS, then "." and the whole microseconds without trailing zeros when there are any.
/// A fraction that is negative or NaN writes no fraction part.
QUILTRA_EXPORT std::string toString(const Quiltra::Time& time);
/// The date's text immediately followed by the time's text.
QUILTRA_EXPORT std::string toString(const std::pair<Quiltra::Date, Quiltra::Time>& dateTime);
/// The two-letter code of values 0 to 27, "UN" for any other; logs a negative value.
QUILTRA_EXPORT std::string toString(Quiltra::Vr vr);

/// Leading blanks, a sign and decimal digits; saturates at the 32-bit limits; 0 when empty.
QUILTRA_EXPORT int toInt(const std::string& text);
/// toInt's 32 bits taken as unsigned: "-1" gives 4294967295.
QUILTRA_EXPORT unsigned int toUInt(const std::string& text);
/// A decimal floating-point number ("." as the point); 0.0 when nothing is read.
/// Hexadecimal, "inf" and "nan" texts are not read; beyond the double range gives +-HUGE_VAL.
QUILTRA_EXPORT double toDouble(const std::string& text);
/// A hexadecimal number, read as an input stream reads it (so "0x1F" gives 31 and, for the
/// unsigned form, "-1" gives 4294967295); 0 when none is read or it is out of range.
QUILTRA_EXPORT unsigned int hexToUInt(const std::string& text);
QUILTRA_EXPORT int hexToInt(const std::string& text);

/// Keeps the decimal digits (with hex set, also a-f and A-F), in order.
QUILTRA_EXPORT std::string digitsOnly(const std::string& text, bool hex);
/// The text before its last "."; the whole text when there is none.
QUILTRA_EXPORT std::string beforeFractionPart(const std::string& text);
/// The text after its last "."; empty when there is none.
QUILTRA_EXPORT std::string afterFractionPart(const std::string& text);

/// Reads the digits of a DA text as YYYYMMDD, aligned on the right.
QUILTRA_EXPORT Quiltra::Date toDate(const std::string& text);
/// Reads a TM text: whole digits as HHMMSS aligned on the right, then the fraction, of
/// which only the first nine digits count.
QUILTRA_EXPORT Quiltra::Time toTime(const std::string& text);
/// Reads a DT text: drops a trailing UTC offset, the first 8 characters are the date and
/// the rest the time; a text of 8 characters or fewer has the time 0:0:0.
QUILTRA_EXPORT std::pair<Quiltra::Date, Quiltra::Time> toDateTime(const std::string& text);

/// The representation of a two-letter code; UN for anything else. Never throws.
QUILTRA_EXPORT Quiltra::Vr toVr(const std::string& text);

/// The pieces between separators, in order; with dropEmpty set, empty pieces are left out.
QUILTRA_EXPORT std::vector<std::string> split(const std::string& text, char separator,
                                              bool dropEmpty);

}  // namespace Quiltra_Utils

#endif  // QUILTRA_CORE_QUILTRA_UTILS_H_
