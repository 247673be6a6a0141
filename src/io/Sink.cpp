/*
 * Typed fields on a byte channel. Every number is little-endian whatever the host:
 *
 *   code (4 bytes) | value
 *
 *   code  type             value bytes
 *    0    bool             1 (0 or 1)
 *    1    int              4
 *    2    unsigned int     4
 *    3    short            2
 *    4    unsigned short   2
 *    5    long             4 (cut to 32 bits)
 *    6    unsigned long    4 (cut to 32 bits)
 *    7    float            4 (IEEE 754 bit pattern)
 *    8    double           8 (IEEE 754 bit pattern)
 *    9    string           length L (4, bytes before the first zero byte), then L bytes
 *   10    pair             nothing; first and second follow as typed fields
 *   11    vector           count N (4, no code), then N typed fields
 *   15    enumeration      4 (the enumerator's number)
 */
#include "quiltra/io/Sink.h"

#include "LittleEndian.h"
#include "MemoryAppend.h"

namespace Quiltra_Serialization {

Sink::~Sink() = default;

void Sink::put(const void* data, unsigned int size) {
  if (_memory == nullptr) return writeX(data, size);
  const auto* bytes = static_cast<const unsigned char*>(data);
  appendToMemory(*_memory, bytes, size);
}

// Code and value are assembled in one block, which memory takes in one step; any other
// channel gets them in two writeX calls, the code first.
template <unsigned int Width>
void Sink::writeField(unsigned int code, std::uint64_t value) {
  unsigned char bytes[4 + Width];
  Quiltra::storeLittleEndian(code, bytes, 4);
  Quiltra::storeLittleEndian(value, bytes + 4, Width);
  if (_memory != nullptr) {
    appendToMemory(*_memory, bytes, sizeof bytes);
    return;
  }
  writeX(bytes, 4);
  writeX(bytes + 4, Width);
}

void Sink::writeType(unsigned int code) {
  writeRaw(code);
}

void Sink::writeRaw(std::uint32_t value) {
  unsigned char bytes[4];
  Quiltra::storeLittleEndian(value, bytes, 4);
  put(bytes, 4);
}

void Sink::write(bool value) {
  writeField<1>(kCodeBool, value ? 1 : 0);
}

void Sink::write(int value) {
  writeField<4>(kCodeInt, static_cast<std::uint32_t>(value));
}

void Sink::write(unsigned int value) {
  writeField<4>(kCodeUInt, value);
}

void Sink::write(short value) {
  writeField<2>(kCodeShort, static_cast<std::uint16_t>(value));
}

void Sink::write(unsigned short value) {
  writeField<2>(kCodeUShort, value);
}

void Sink::write(long value) {
  writeField<4>(kCodeLong, static_cast<std::uint32_t>(value));
}

void Sink::write(unsigned long value) {
  writeField<4>(kCodeULong, static_cast<std::uint32_t>(value));
}

void Sink::write(float value) {
  writeField<4>(kCodeFloat, Quiltra::bitsOf(value));
}

void Sink::write(double value) {
  writeField<8>(kCodeDouble, Quiltra::bitsOf(value));
}

void Sink::write(const std::string& value) {
  const std::size_t zero = value.find('\0');
  const auto length = static_cast<std::uint32_t>(zero == std::string::npos ? value.size() : zero);
  writeField<4>(kCodeString, length);
  // A string that starts with a zero byte still asks for its (empty) block: a FileSink
  // refuses that, as the format has always done.
  if (!value.empty()) put(value.data(), length);
}

void Sink::write(Quiltra::Vr value) {
  writeField<4>(kCodeEnum, static_cast<std::uint32_t>(value));
}

void Sink::write(Quiltra::TransferSyntax value) {
  writeField<4>(kCodeEnum, static_cast<std::uint32_t>(value));
}

}  // namespace Quiltra_Serialization
