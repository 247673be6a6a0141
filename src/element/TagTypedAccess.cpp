/*
 * Typed value access of Tag. Bytes of one value, by representation:
 *
 *   AE AS CS DA DS DT IS LO LT PN SH ST TM UT UI   characters, then one 00 byte (counted)
 *   SS   2 bytes  signed 16-bit, little-endian
 *   US   2 bytes  unsigned 16-bit, little-endian
 *   SL   4 bytes  signed 32-bit, little-endian
 *   UL   4 bytes  unsigned 32-bit, little-endian
 *   FL   4 bytes  IEEE 754 binary32 bit pattern, little-endian
 *   FD   8 bytes  IEEE 754 binary64 bit pattern, little-endian
 *   AT   4 bytes  group (u16 LE), then element (u16 LE): read as u32, the group is the low half
 *   OB OW OL OF SQ UN   no typed access
 *
 * IS holds the decimal text of an int, DS the text of a double, DA/TM/DT the texts of
 * Date, Time and the pair. Bytes are assembled by shifts, so the host's byte order never
 * matters. A binary read of a value shorter than its width takes the missing high bytes as
 * zero; a text read stops at the first zero byte or at the value's size, whichever is first.
 */
#include "quiltra/element/Tag.h"

#include "core/TextScan.h"
#include "core/ValueText.h"
#include "io/LittleEndian.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/core/Quiltra_Utils.h>

namespace Quiltra {

namespace {

// Operation names and texts are built once per process.
const std::string& unexpectedVr() {
  static const std::string kText("UNEXPECTED VR");
  return kText;
}

const std::string& unimplemented() {
  static const std::string kText("UNIMPLEMENTED");
  return kText;
}

const std::string& notForStrings() {
  static const std::string kText("VR of UN,OB,OW,SQ are not supported for strings");
  return kText;
}

// --- Raw bytes -------------------------------------------------------------------------

// The first width bytes as a little-endian number; bytes beyond the value's size read as 0.
std::uint64_t loadLittleEndian(const Value& value, unsigned int width) {
  const unsigned int count = value.size() < width ? value.size() : width;
  return count == 0 ? 0 : Quiltra::loadLittleEndian(value.data(), count);
}

void storeLittleEndian(Value& value, std::uint64_t bits, unsigned int width) {
  value.setSize(width);
  Quiltra::storeLittleEndian(bits, value.data(), width);
}

// The characters up to the first zero byte or the end of the value.
std::string textOf(const Value& value) {
  const char* chars = reinterpret_cast<const char*>(value.data());
  if (chars == nullptr) return std::string();
  const void* zero = std::memchr(chars, 0, value.size());
  const std::size_t length = zero == nullptr
                                 ? value.size()
                                 : static_cast<std::size_t>(static_cast<const char*>(zero) - chars);
  return std::string(chars, length);
}

// --- Number texts ----------------------------------------------------------------------

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// atoi's syntax (blanks, one sign, digits up to the first other character, 0 without
// digits), but wrapping modulo 2^32 instead of overflowing: "4294967295" gives the bits
// of 4294967295, which UL keeps and SL reads as -1, as a long-based atoi does.
int parseDecimal(const std::string& text) {
  const std::size_t sign = skipBlanks(text, 0);
  const bool negative = isMinusAt(text, sign);
  std::size_t pos = skipSign(text, sign);
  std::uint32_t magnitude = 0;
  for (; pos < text.size() && text[pos] >= '0' && text[pos] <= '9'; ++pos) {
    magnitude = magnitude * 10u + static_cast<std::uint32_t>(text[pos] - '0');
  }
  return toSigned32(negative ? 0u - magnitude : magnitude);
}

// One "%hx" conversion from pos: blanks, a sign, an optional 0x, hexadecimal digits. Keeps
// the low 16 bits, as %hx stores them, without the undefined overflow of sscanf. Answers
// false, leaving out alone, when no digit is found.
bool scanHex16(const std::string& text, std::size_t& pos, unsigned short& out) {
  const std::size_t sign = skipBlanks(text, pos);
  const bool negative = isMinusAt(text, sign);
  std::size_t at = skipSign(text, sign);
  if (at + 2 < text.size() && text[at] == '0' && (text[at + 1] == 'x' || text[at + 1] == 'X') &&
      hexDigit(text[at + 2]) >= 0) {
    at += 2;
  }
  const std::size_t first = at;
  std::uint32_t bits = 0;
  for (; at < text.size() && hexDigit(text[at]) >= 0; ++at) {
    bits = ((bits << 4) | static_cast<std::uint32_t>(hexDigit(text[at]))) & 0xFFFFu;
  }
  if (at == first) return false;
  out = static_cast<unsigned short>((negative ? 0u - bits : bits) & 0xFFFFu);
  pos = at;
  return true;
}

bool scanChar(const std::string& text, std::size_t& pos, char expected) {
  const std::size_t at = skipBlanks(text, pos);
  if (at >= text.size() || text[at] != expected) return false;
  pos = at + 1;
  return true;
}

// The format " ( %hx , %hx )": reading stops at the first mismatch; unread numbers stay 0.
std::uint32_t scanTagText(const std::string& text) {
  unsigned short group = 0;
  unsigned short element = 0;
  std::size_t pos = 0;
  if (scanChar(text, pos, '(') && scanHex16(text, pos, group) && scanChar(text, pos, ',')) {
    scanHex16(text, pos, element);
  }
  return (static_cast<std::uint32_t>(element) << 16) | group;
}

std::string formatTag(std::uint32_t bits) {
  static const char kDigits[] = "0123456789abcdef";
  std::string text("(0000,0000)");
  for (int i = 0; i < 4; ++i) {
    text[4 - i] = kDigits[(bits >> (4 * i)) & 0xFu];
    text[9 - i] = kDigits[(bits >> (16 + 4 * i)) & 0xFu];
  }
  return text;
}

// Truncation toward zero without the undefined behaviour of a plain cast: NaN gives 0 and
// values beyond the range give its nearest limit.
int truncateToInt(float value) {
  if (std::isnan(value)) return 0;
  if (value >= 2147483648.0f) return INT_MAX;
  if (value < -2147483648.0f) return INT_MIN;
  return static_cast<int>(value);
}

std::int64_t truncateToInt64(float value) {
  if (std::isnan(value)) return 0;
  if (value >= 9223372036854775808.0f) return std::numeric_limits<std::int64_t>::max();
  if (value < -9223372036854775808.0f) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

// --- Readers by representation; the caller has run nullChecking ------------------------

int to_Int(const Value& value, Vr vr) {
  static const std::string kMethod("to_Int");
  switch (vr) {
    case IS:
      return Quiltra_Utils::toInt(textOf(value));
    case SL:
      return toSigned32(static_cast<std::uint32_t>(loadLittleEndian(value, 4)));
    case SS:
      return toSigned16(loadLittleEndian(value, 2));
    case US:
      return static_cast<int>(loadLittleEndian(value, 2));
    default:
      throw Exception(kMethod, unexpectedVr());
  }
}

unsigned int to_UInt(const Value& value, Vr vr) {
  static const std::string kMethod("to_UInt");
  if (vr == US) return static_cast<unsigned int>(loadLittleEndian(value, 2));
  if (vr == UL || vr == AT) return static_cast<unsigned int>(loadLittleEndian(value, 4));
  throw Exception(kMethod, unexpectedVr());
}

float to_Float(const Value& value, Vr vr) {
  static const std::string kMethod("to_Float");
  if (isType(vr, VRC_INT)) return static_cast<float>(to_Int(value, vr));
  if (isType(vr, VRC_UINT)) return static_cast<float>(to_UInt(value, vr));
  if (vr == OF) throw Exception(kMethod, unimplemented());
  if (vr == DS) return static_cast<float>(Quiltra_Utils::toDouble(textOf(value)));
  if (vr == FL) return floatFromBits(static_cast<std::uint32_t>(loadLittleEndian(value, 4)));
  throw Exception(kMethod, unexpectedVr());
}

// Every float-class representation goes through to_Float, so it arrives with single
// precision.
double to_Double(const Value& value, Vr vr) {
  static const std::string kMethod("to_Double");
  if (isType(vr, VRC_FLOAT)) return static_cast<double>(to_Float(value, vr));
  if (vr == FD) return doubleFromBits(loadLittleEndian(value, 8));
  throw Exception(kMethod, unexpectedVr());
}

std::pair<Date, Time> to_DateTime(const Value& value) {
  return Quiltra_Utils::toDateTime(textOf(value));
}

Date to_Date(const Value& value, Vr vr) {
  static const std::string kMethod("to_Date");
  if (vr == DA) return Quiltra_Utils::toDate(textOf(value));
  if (vr == DT) return to_DateTime(value).first;
  throw Exception(kMethod, unexpectedVr());
}

Time to_Time(const Value& value, Vr vr) {
  static const std::string kMethod("to_Time");
  if (vr == TM) return Quiltra_Utils::toTime(textOf(value));
  if (vr == DT) return to_DateTime(value).second;
  throw Exception(kMethod, unexpectedVr());
}

std::string to_String(const Value& value, Vr vr) {
  static const std::string kMethod("to_String");
  static const std::string kDescription("unsupported vr");
  if (isType(vr, VRC_STRING)) return textOf(value);
  switch (vr) {
    case SS:
      return std::to_string(toSigned16(loadLittleEndian(value, 2)));
    case US:
      return std::to_string(loadLittleEndian(value, 2));
    case SL:
      return std::to_string(to_Int(value, vr));
    case UL:
      return std::to_string(to_UInt(value, vr));
    case FL:
      return Quiltra_Utils::toString(static_cast<double>(to_Float(value, vr)));
    case FD:
      return Quiltra_Utils::toString(to_Double(value, vr));
    case AT:
      return formatTag(to_UInt(value, vr));
    default:
      throw Exception(kMethod, kDescription);
  }
}

}  // namespace

// --- Readers ---------------------------------------------------------------------------

// The checks of the readers in their two orders, each followed by nullChecking.
const Value& Tag::readableTypeFirst(const VRCType& type, unsigned int index) const {
  typeChecking(type);
  rangeChecking(index);
  nullChecking(_values[index]);
  return _values[index];
}

const Value& Tag::readableRangeFirst(const VRCType& type, unsigned int index) const {
  typeAndRangeChecking(type, index);
  nullChecking(_values[index]);
  return _values[index];
}

int Tag::toInt(unsigned int index) const {
  return to_Int(readableTypeFirst(VRC_INT, index), _info.vr());
}

unsigned int Tag::toUInt(unsigned int index) const {
  return to_UInt(readableRangeFirst(VRC_UINT, index), _info.vr());
}

short Tag::toShort(unsigned int index) const {
  return toSigned16(loadLittleEndian(readableRangeFirst(VRC_SHORT, index), 2));
}

unsigned short Tag::toUShort(unsigned int index) const {
  return static_cast<unsigned short>(loadLittleEndian(readableRangeFirst(VRC_USHORT, index), 2));
}

float Tag::toFloat(unsigned int index) const {
  return to_Float(readableTypeFirst(VRC_FLOAT, index), _info.vr());
}

double Tag::toDouble(unsigned int index) const {
  return to_Double(readableTypeFirst(VRC_DOUBLE, index), _info.vr());
}

Date Tag::toDate(unsigned int index) const {
  return to_Date(readableTypeFirst(VRC_DATE, index), _info.vr());
}

Time Tag::toTime(unsigned int index) const {
  return to_Time(readableTypeFirst(VRC_TIME, index), _info.vr());
}

std::pair<Date, Time> Tag::toDateTime(unsigned int index) const {
  return to_DateTime(readableTypeFirst(VRC_DATETIME, index));
}

std::string Tag::toString(unsigned int index) const {
  static const std::string kMethod("Tag::toString");
  if (isOfType(VRC_BINARY)) throw Exception(kMethod, notForStrings());
  rangeChecking(index);
  nullChecking(_values[index]);
  return to_String(_values[index], _info.vr());
}

std::string Tag::toString() const {
  std::string joined;
  for (unsigned int index = 0; index < numberOfValues(); ++index) {
    if (index > 0) joined += '\\';
    if (!_values[index].isNull()) joined += toString(index);
  }
  return joined;
}

// --- Writers ---------------------------------------------------------------------------

void Tag::setValue(int value, unsigned int index) {
  static const std::string kMethod("Tag::setValue int");
  typeChecking(VRC_INT);
  rangeChecking(index);
  switch (_info.vr()) {
    case IS:
      return setValue(Quiltra_Utils::toString(value), index);
    case SL:
      return storeLittleEndian(_values[index], static_cast<std::uint32_t>(value), 4);
    case SS:
      return setValue(toSigned16(static_cast<std::uint32_t>(value)), index);
    case US:
      return setValue(static_cast<unsigned short>(value), index);
    default:
      throw Exception(kMethod, unexpectedVr());
  }
}

void Tag::setValue(unsigned int value, unsigned int index) {
  static const std::string kMethod("Tag::setValue unsigned int");
  typeAndRangeChecking(VRC_UINT, index);
  if (_info.vr() == US) return setValue(static_cast<unsigned short>(value), index);
  if (_info.vr() == UL) return storeLittleEndian(_values[index], value, 4);
  throw Exception(kMethod, unexpectedVr());
}

void Tag::setValue(short value, unsigned int index) {
  typeAndRangeChecking(VRC_SHORT, index);
  storeLittleEndian(_values[index], static_cast<std::uint16_t>(value), 2);
}

void Tag::setValue(unsigned short value, unsigned int index) {
  typeAndRangeChecking(VRC_USHORT, index);
  storeLittleEndian(_values[index], value, 2);
}

// US is in both integer classes and takes the int branch.
void Tag::setValue(float value, unsigned int index) {
  static const std::string kMethod("Tag::setValue float");
  typeChecking(VRC_FLOAT);
  rangeChecking(index);
  if (isOfType(VRC_INT)) return setValue(truncateToInt(value), index);
  if (isOfType(VRC_UINT)) {
    // The low 32 bits of the 64-bit truncation, so -1.0 gives 4294967295.
    return setValue(static_cast<unsigned int>(truncateToInt64(value) & 0xFFFFFFFF), index);
  }
  if (_info.vr() == DS) return setValue(Quiltra_Utils::toString(static_cast<double>(value)), index);
  if (_info.vr() == FL) return storeLittleEndian(_values[index], bitsOf(value), 4);
  if (_info.vr() == OF) throw Exception(kMethod, unimplemented());
  throw Exception(kMethod, unexpectedVr());
}

// Narrowing to float follows IEEE 754 (checked above): too large values become infinite.
void Tag::setValue(double value, unsigned int index) {
  static const std::string kMethod("Tag::setValue double");
  typeChecking(VRC_DOUBLE);
  rangeChecking(index);
  if (isOfType(VRC_FLOAT)) return setValue(static_cast<float>(value), index);
  if (_info.vr() == FD) return storeLittleEndian(_values[index], bitsOf(value), 8);
  throw Exception(kMethod, unexpectedVr());
}

// Numbers are read leniently and written through the narrower writers, whose checks run
// again; no text is validated.
void Tag::setValue(const std::string& text, unsigned int index) {
  setText(text, index);
}

// Numbers are parsed from a string of their own; texts are copied from the view directly.
void Tag::setText(std::string_view text, unsigned int index) {
  static const std::string kMethod("Tag::setValue");
  static const std::string kDescription("unsupported type for string write access");
  rangeChecking(index);
  if (isOfType(VRC_STRING)) return setTextData(_values[index], text);
  const std::string number(text);
  switch (_info.vr()) {
    case SS:
      return setValue(toSigned16(static_cast<std::uint32_t>(parseDecimal(number))), index);
    case US:
      return setValue(static_cast<unsigned short>(parseDecimal(number)), index);
    case SL:
      return setValue(parseDecimal(number), index);
    case UL:
      return setValue(static_cast<unsigned int>(parseDecimal(number)), index);
    case FL:
      return setValue(static_cast<float>(Quiltra_Utils::toDouble(number)), index);
    case FD:
      return setValue(Quiltra_Utils::toDouble(number), index);
    case AT:
      return storeLittleEndian(_values[index], scanTagText(number), 4);
    default:
      throw Exception(kMethod, kDescription);
  }
}

void Tag::setValue(Date date, unsigned int index) {
  static const std::string kMethod("Tag::setValue Date");
  typeChecking(VRC_DATE);
  rangeChecking(index);
  if (_info.vr() == DA) return setValue(Quiltra_Utils::toString(date), index);
  if (_info.vr() != DT) throw Exception(kMethod, unexpectedVr());
  // The time half is whatever the current value holds.
  std::pair<Date, Time> dateTime = toDateTime(index);
  dateTime.first = date;
  setValue(Quiltra_Utils::toString(dateTime), index);
}

void Tag::setValue(Time time, unsigned int index) {
  static const std::string kMethod("Tag::setValue time");
  typeChecking(VRC_TIME);
  rangeChecking(index);
  if (_info.vr() == TM) return setValue(Quiltra_Utils::toString(time), index);
  if (_info.vr() != DT) throw Exception(kMethod, unexpectedVr());
  // The date half is whatever the current value holds.
  std::pair<Date, Time> dateTime = toDateTime(index);
  dateTime.second = time;
  setValue(Quiltra_Utils::toString(dateTime), index);
}

void Tag::setValue(std::pair<Date, Time> value, unsigned int index) {
  typeChecking(VRC_DATETIME);
  rangeChecking(index);
  setValue(Quiltra_Utils::toString(value), index);
}

// --- Appenders: the appended empty value stays when the write fails -------------------

// The type check comes before anything is appended.
template <class T>
void Tag::addChecked(const VRCType& type, T value) {
  typeChecking(type);
  addValue();
  setValue(std::move(value), numberOfValues() - 1);
}

void Tag::addValue(int value) {
  addChecked(VRC_INT, value);
}

void Tag::addValue(unsigned int value) {
  addChecked(VRC_UINT, value);
}

void Tag::addValue(short value) {
  addChecked(VRC_SHORT, value);
}

void Tag::addValue(unsigned short value) {
  addChecked(VRC_USHORT, value);
}

void Tag::addValue(float value) {
  addChecked(VRC_FLOAT, value);
}

void Tag::addValue(double value) {
  addChecked(VRC_DOUBLE, value);
}

// LT, ST and UT hold free text, so their backslashes are kept; every other text is one
// value per backslash-separated piece, empty pieces included.
void Tag::addValue(const std::string& text) {
  static const std::string kMethod("Tag::addValue");
  if (isOfType(VRC_BINARY)) throw Exception(kMethod, notForStrings());
  const Vr vr = _info.vr();
  if (vr == LT || vr == ST || vr == UT) return addValue().setData(text);
  // One value per piece between backslashes, empty pieces included, each written straight
  // from the text.
  const std::string_view view(text);
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = view.find('\\', start);
    addValue();
    const std::size_t length = end == std::string_view::npos ? end : end - start;
    setText(view.substr(start, length), numberOfValues() - 1);
    if (end == std::string_view::npos) return;
    start = end + 1;
  }
}

void Tag::addValue(Date date) {
  addChecked(VRC_DATE, date);
}

void Tag::addValue(Time time) {
  addChecked(VRC_TIME, time);
}

void Tag::addValue(std::pair<Date, Time> value) {
  addChecked(VRC_DATETIME, std::move(value));
}

}  // namespace Quiltra
