#ifndef QUILTRA_CORE_TEXTSCAN_H_
#define QUILTRA_CORE_TEXTSCAN_H_

#include <cstddef>
#include <string_view>

// Character classes and scanners of the number readers. Fixed to the C locale's classes, so
// that no host locale changes a reading.

namespace Quiltra {

constexpr bool isDigit(char c) noexcept {
  return c >= '0' && c <= '9';
}

/// Blank, tab, line feed, vertical tab, form feed and carriage return.
constexpr bool isBlank(char c) noexcept {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The position of the first character at or after pos that is not blank.
constexpr std::size_t skipBlanks(std::string_view text, std::size_t pos) noexcept {
  while (pos < text.size() && isBlank(text[pos])) ++pos;
  return pos;
}

/// The position after the decimal digits starting at pos.
constexpr std::size_t skipDigits(std::string_view text, std::size_t pos) noexcept {
  while (pos < text.size() && isDigit(text[pos])) ++pos;
  return pos;
}

/// The position after one "+" or "-" at pos, or pos when there is none.
constexpr std::size_t skipSign(std::string_view text, std::size_t pos) noexcept {
  return pos < text.size() && (text[pos] == '+' || text[pos] == '-') ? pos + 1 : pos;
}

/// Whether a sign at pos is "-"; the sign is skipped by skipSign.
constexpr bool isMinusAt(std::string_view text, std::size_t pos) noexcept {
  return pos < text.size() && text[pos] == '-';
}

}  // namespace Quiltra

#endif  // QUILTRA_CORE_TEXTSCAN_H_
