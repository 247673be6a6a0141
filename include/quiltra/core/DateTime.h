#ifndef QUILTRA_CORE_DATETIME_H_
#define QUILTRA_CORE_DATETIME_H_

#include <cstdint>

namespace Quiltra {

/// A calendar date as written in a DA text; fields are cut to their widths, never checked.
struct Date {
  Date() = default;
  Date(int year, int month, int day)
      : year(static_cast<std::uint16_t>(year)),
        month(static_cast<std::uint8_t>(month)),
        day(static_cast<std::uint8_t>(day)) {}

  std::uint16_t year = 0;
  std::uint8_t month = 0;
  std::uint8_t day = 0;
};

/// A time of day as written in a TM text; fraction is a part of a second, 0 <= f < 1.
struct Time {
  Time() = default;
  /// The last argument counts milliseconds: fraction = milliseconds / 1000.0.
  Time(int hour, int minute, int second, int milliseconds)
      : hour(static_cast<std::uint8_t>(hour)),
        minute(static_cast<std::uint8_t>(minute)),
        second(static_cast<std::uint8_t>(second)),
        fraction(milliseconds / 1000.0) {}

  std::uint8_t hour = 0;
  std::uint8_t minute = 0;
  std::uint8_t second = 0;
  double fraction = 0.0;
};

inline bool operator==(const Date& a, const Date& b) {
  return a.year == b.year && a.month == b.month && a.day == b.day;
}
inline bool operator!=(const Date& a, const Date& b) {
  return !(a == b);
}
inline bool operator==(const Time& a, const Time& b) {
  return a.hour == b.hour && a.minute == b.minute && a.second == b.second &&
         a.fraction == b.fraction;
}
inline bool operator!=(const Time& a, const Time& b) {
  return !(a == b);
}

}  // namespace Quiltra

#endif  // QUILTRA_CORE_DATETIME_H_
