#ifndef QUILTRA_IO_LITTLEENDIAN_H_
#define QUILTRA_IO_LITTLEENDIAN_H_

#include <cstdint>
#include <cstring>
#include <limits>

// Numbers as the storage forms and the binary representations hold them: least significant
// byte first whatever the host's byte order, signed numbers in two's complement. Bytes are
// assembled by shifts, so no conversion depends on the host.

namespace Quiltra {

/// Puts the low width bytes of value into bytes, least significant first. Requires width <= 8.
inline void storeLittleEndian(std::uint64_t value, unsigned char* bytes,
                              unsigned int width) noexcept {
  for (unsigned int i = 0; i < width; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

/// The number held in bytes[0..width), least significant byte first. Requires width <= 8.
inline std::uint64_t loadLittleEndian(const unsigned char* bytes, unsigned int width) noexcept {
  std::uint64_t value = 0;
  for (unsigned int i = width; i > 0; --i) value = (value << 8) | bytes[i - 1];
  return value;
}

/// The low 16 bits as a two's complement number, with no out-of-range conversion.
constexpr std::int16_t toSigned16(std::uint64_t bits) noexcept {
  const int low = static_cast<int>(bits & 0xFFFFu);
  return static_cast<std::int16_t>(low < 0x8000 ? low : low - 0x10000);
}

/// The 32 bits as a two's complement number, with no out-of-range conversion.
constexpr std::int32_t toSigned32(std::uint32_t bits) noexcept {
  if (bits <= 0x7FFFFFFFu) return static_cast<std::int32_t>(bits);
  return -static_cast<std::int32_t>(~bits) - 1;
}

static_assert(std::numeric_limits<float>::is_iec559 && sizeof(float) == 4,
              "float is IEEE 754 binary32");
static_assert(std::numeric_limits<double>::is_iec559 && sizeof(double) == 8,
              "double is IEEE 754 binary64");

/// The IEEE 754 bit patterns of float and double, and back.
inline std::uint32_t bitsOf(float value) noexcept {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

inline std::uint64_t bitsOf(double value) noexcept {
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

inline float floatFromBits(std::uint32_t bits) noexcept {
  float value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

inline double doubleFromBits(std::uint64_t bits) noexcept {
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

}  // namespace Quiltra

#endif  // QUILTRA_IO_LITTLEENDIAN_H_
