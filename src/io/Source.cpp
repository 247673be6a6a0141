/*
 * Reads the typed fields that Sink writes (see Sink.cpp for the layout): a 4-byte
 * little-endian code, checked against the one expected, then the little-endian value.
 * long is 4 bytes on the wire and sign-extended; a bool byte is true when non-zero.
 * A string's length is untrusted: its bytes are read in bounded chunks, so a forged
 * length runs into the channel's end of input before much is allocated.
 */
#include "quiltra/io/Source.h"

#include <algorithm>
#include <cstring>

#include <quiltra/core/Exception.h>

namespace Quiltra_Serialization {

namespace {

constexpr std::uint32_t kStringChunk = 64 * 1024;

std::uint64_t readLittleEndian(Source& source, unsigned int width) {
  unsigned char bytes[8];
  source.readX(bytes, width);
  std::uint64_t value = 0;
  for (unsigned int i = width; i > 0; --i) value = (value << 8) | bytes[i - 1];
  return value;
}

// Two's complement reinterpretation without relying on implementation-defined casts.
std::int32_t toSigned32(std::uint32_t bits) {
  std::int32_t value = 0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

std::int16_t toSigned16(std::uint16_t bits) {
  std::int16_t value = 0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

}  // namespace

Source::~Source() = default;

std::uint32_t Source::readRaw() {
  return static_cast<std::uint32_t>(readLittleEndian(*this, 4));
}

void Source::readTypeX(unsigned int expected) {
  if (readRaw() != expected) throw Quiltra::Exception("Source::readTypeX", "Wrong type code");
}

void Source::read(bool& value) {
  readTypeX(kCodeBool);
  unsigned char byte = 0;
  readX(&byte, 1);
  value = byte != 0;
}

void Source::read(int& value) {
  readTypeX(kCodeInt);
  value = toSigned32(readRaw());
}

void Source::read(unsigned int& value) {
  readTypeX(kCodeUInt);
  value = readRaw();
}

void Source::read(short& value) {
  readTypeX(kCodeShort);
  value = toSigned16(static_cast<std::uint16_t>(readLittleEndian(*this, 2)));
}

void Source::read(unsigned short& value) {
  readTypeX(kCodeUShort);
  value = static_cast<unsigned short>(readLittleEndian(*this, 2));
}

void Source::read(long& value) {
  readTypeX(kCodeLong);
  value = toSigned32(readRaw());
}

void Source::read(unsigned long& value) {
  readTypeX(kCodeULong);
  value = readRaw();
}

void Source::read(float& value) {
  readTypeX(kCodeFloat);
  const std::uint32_t bits = readRaw();
  std::memcpy(&value, &bits, sizeof value);
}

void Source::read(double& value) {
  readTypeX(kCodeDouble);
  const std::uint64_t bits = readLittleEndian(*this, 8);
  std::memcpy(&value, &bits, sizeof value);
}

void Source::read(std::string& value) {
  readTypeX(kCodeString);
  std::string text;
  for (std::uint32_t left = readRaw(); left > 0;) {
    const std::uint32_t chunk = std::min(left, kStringChunk);
    const std::size_t filled = text.size();
    text.resize(filled + chunk);
    readX(&text[filled], chunk);
    left -= chunk;
  }
  const std::size_t zero = text.find('\0');
  if (zero != std::string::npos) text.resize(zero);
  value = std::move(text);
}

void Source::read(Quiltra::Vr& value) {
  readTypeX(kCodeEnum);
  value = static_cast<Quiltra::Vr>(toSigned32(readRaw()));
}

void Source::read(Quiltra::TransferSyntax& value) {
  readTypeX(kCodeEnum);
  value = static_cast<Quiltra::TransferSyntax>(toSigned32(readRaw()));
}

}  // namespace Quiltra_Serialization
