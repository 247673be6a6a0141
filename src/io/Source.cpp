/*
 * Reads the typed fields that Sink writes (see Sink.cpp for the layout): a 4-byte
 * little-endian code, checked against the one expected, then the little-endian value.
 * long is 4 bytes on the wire and sign-extended; a bool byte is true when non-zero.
 * A string's length is untrusted: its bytes are read in bounded chunks, so a forged
 * length runs into the channel's end of input before much is allocated.
 */
#include "quiltra/io/Source.h"

#include "ChunkedRead.h"
#include "LittleEndian.h"

#include <quiltra/core/Exception.h>

namespace Quiltra_Serialization {

namespace {

using Quiltra::toSigned16;
using Quiltra::toSigned32;

std::uint64_t readLittleEndian(Source& source, unsigned int width) {
  unsigned char bytes[8];
  source.readX(bytes, width);
  return Quiltra::loadLittleEndian(bytes, width);
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
  value = toSigned16(readLittleEndian(*this, 2));
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
  value = Quiltra::floatFromBits(readRaw());
}

void Source::read(double& value) {
  readTypeX(kCodeDouble);
  value = Quiltra::doubleFromBits(readLittleEndian(*this, 8));
}

void Source::read(std::string& value) {
  readTypeX(kCodeString);
  std::string text;
  Quiltra::appendChunked(text, readRaw(), [this](char* at, std::size_t n) {
    readX(at, static_cast<unsigned int>(n));
    return n;  // a short read throws
  });
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
