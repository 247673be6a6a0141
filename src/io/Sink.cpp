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

namespace Quiltra_Serialization {

namespace {

void writeLittleEndian(Sink& sink, std::uint64_t value, unsigned int width) {
  unsigned char bytes[8];
  Quiltra::storeLittleEndian(value, bytes, width);
  sink.writeX(bytes, width);
}

}  // namespace

Sink::~Sink() = default;

void Sink::writeType(unsigned int code) {
  writeLittleEndian(*this, code, 4);
}

void Sink::writeRaw(std::uint32_t value) {
  writeLittleEndian(*this, value, 4);
}

void Sink::write(bool value) {
  writeType(kCodeBool);
  const unsigned char byte = value ? 1 : 0;
  writeX(&byte, 1);
}

void Sink::write(int value) {
  writeType(kCodeInt);
  writeLittleEndian(*this, static_cast<std::uint32_t>(value), 4);
}

void Sink::write(unsigned int value) {
  writeType(kCodeUInt);
  writeLittleEndian(*this, value, 4);
}

void Sink::write(short value) {
  writeType(kCodeShort);
  writeLittleEndian(*this, static_cast<std::uint16_t>(value), 2);
}

void Sink::write(unsigned short value) {
  writeType(kCodeUShort);
  writeLittleEndian(*this, value, 2);
}

void Sink::write(long value) {
  writeType(kCodeLong);
  writeLittleEndian(*this, static_cast<std::uint32_t>(value), 4);
}

void Sink::write(unsigned long value) {
  writeType(kCodeULong);
  writeLittleEndian(*this, static_cast<std::uint32_t>(value), 4);
}

void Sink::write(float value) {
  writeType(kCodeFloat);
  writeLittleEndian(*this, Quiltra::bitsOf(value), 4);
}

void Sink::write(double value) {
  writeType(kCodeDouble);
  writeLittleEndian(*this, Quiltra::bitsOf(value), 8);
}

void Sink::write(const std::string& value) {
  const std::size_t zero = value.find('\0');
  const auto length = static_cast<std::uint32_t>(zero == std::string::npos ? value.size() : zero);
  writeType(kCodeString);
  writeRaw(length);
  // A string that starts with a zero byte still asks for its (empty) block: a FileSink
  // refuses that, as the format has always done.
  if (!value.empty()) writeX(value.data(), length);
}

void Sink::write(Quiltra::Vr value) {
  writeType(kCodeEnum);
  writeLittleEndian(*this, static_cast<std::uint32_t>(value), 4);
}

void Sink::write(Quiltra::TransferSyntax value) {
  writeType(kCodeEnum);
  writeLittleEndian(*this, static_cast<std::uint32_t>(value), 4);
}

}  // namespace Quiltra_Serialization
