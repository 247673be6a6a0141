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

[[noreturn]] void throwWrongTypeCode() {
  throw Quiltra::Exception("Source::readTypeX", "Wrong type code");
}

}  // namespace

Source::~Source() = default;

std::uint32_t Source::readRaw() {
  if (!inMemory(4)) return static_cast<std::uint32_t>(readLittleEndian(*this, 4));
  const unsigned char* at = _memory->data() + _position;
  _position += 4;
  return static_cast<std::uint32_t>(Quiltra::loadLittleEndian(at, 4));
}

void Source::readTypeX(unsigned int expected) {
  if (readRaw() != expected) throwWrongTypeCode();
}

// From memory the code and the value come in one step, the position moving as two readX
// calls would move it: past the code when it is wrong, past both otherwise.
template <unsigned int Width>
std::uint64_t Source::readField(unsigned int expected) {
  if (!inMemory(4 + Width)) {
    readTypeX(expected);
    return readLittleEndian(*this, Width);
  }
  const unsigned char* at = _memory->data() + _position;
  _position += 4;
  if (Quiltra::loadLittleEndian(at, 4) != expected) throwWrongTypeCode();
  _position += Width;
  return Quiltra::loadLittleEndian(at + 4, Width);
}

void Source::read(bool& value) {
  value = readField<1>(kCodeBool) != 0;
}

void Source::read(int& value) {
  value = toSigned32(static_cast<std::uint32_t>(readField<4>(kCodeInt)));
}

void Source::read(unsigned int& value) {
  value = static_cast<unsigned int>(readField<4>(kCodeUInt));
}

void Source::read(short& value) {
  value = toSigned16(readField<2>(kCodeShort));
}

void Source::read(unsigned short& value) {
  value = static_cast<unsigned short>(readField<2>(kCodeUShort));
}

void Source::read(long& value) {
  value = toSigned32(static_cast<std::uint32_t>(readField<4>(kCodeLong)));
}

void Source::read(unsigned long& value) {
  value = static_cast<unsigned long>(readField<4>(kCodeULong));
}

void Source::read(float& value) {
  value = Quiltra::floatFromBits(static_cast<std::uint32_t>(readField<4>(kCodeFloat)));
}

void Source::read(double& value) {
  value = Quiltra::doubleFromBits(readField<8>(kCodeDouble));
}

void Source::read(std::string& value) {
  const auto length = static_cast<std::uint32_t>(readField<4>(kCodeString));
  std::string text;
  if (inMemory(length)) {
    // The bytes are all there: the length is proven, and they are taken in one step.
    const char* at = reinterpret_cast<const char*>(_memory->data() + _position);
    text.assign(at, length);
    _position += length;
  } else {
    Quiltra::appendChunked(text, length, [this](char* at, std::size_t n) {
      readX(at, static_cast<unsigned int>(n));
      return n;  // a short read throws
    });
  }
  const std::size_t zero = text.find('\0');
  if (zero != std::string::npos) text.resize(zero);
  value = std::move(text);
}

void Source::read(Quiltra::Vr& value) {
  value = static_cast<Quiltra::Vr>(toSigned32(static_cast<std::uint32_t>(readField<4>(kCodeEnum))));
}

void Source::read(Quiltra::TransferSyntax& value) {
  value = static_cast<Quiltra::TransferSyntax>(
      toSigned32(static_cast<std::uint32_t>(readField<4>(kCodeEnum))));
}

}  // namespace Quiltra_Serialization
