/*
 * Binary layouts of TagId, Value and TagInfo. Typed fields: a 4-byte little-endian type
 * code, then the value, little-endian. "u32" is a typed field of code 2.
 *
 *   TagId    u32 raw id (group << 16 | element)
 *            (0010,0020) -> 02 00 00 00 20 00 10 00
 *
 *   Value    u32 size S, u32 capacity, then the S data bytes raw (no code) when S > 0
 *            empty value -> 02 00 00 00 00 00 00 00 02 00 00 00 00 00 00 00
 *
 *   TagInfo  TagId
 *            string (code 9): 4-byte length L, L bytes, no terminator
 *            enumeration (code 15): the Vr number, 4 bytes
 *            code 10 alone (a pair follows)
 *            u32 minimum multiplicity, u32 maximum multiplicity
 *            (0010,0020) "AB" Vr 3 (1,1) ->
 *              02 00 00 00 20 00 10 00  09 00 00 00 02 00 00 00 41 42
 *              0F 00 00 00 03 00 00 00  0A 00 00 00
 *              02 00 00 00 01 00 00 00  02 00 00 00 01 00 00 00
 *
 * Readers: the capacity a Value stores is ignored; the value gets a buffer of exactly S
 * bytes (none when S is 0). S is never trusted: beyond one chunk, the bytes are read chunk
 * by chunk into a growing vector and only then copied into the value, so a forged size
 * ends in the source's end-of-input failure having allocated about twice what the input
 * really held. Sizes up to one chunk are read straight into the value's buffer. After the
 * two header fields the old buffer is gone: a failure while the bytes are read leaves the
 * value null.
 * The Vr number of a TagInfo is stored as read, unchecked.
 */

#include "ChunkedRead.h"
#include "core/NamePool.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Value.h>
#include <quiltra/io/Sink.h>
#include <quiltra/io/Source.h>
#include <quiltra/io/TypeCode.h>

namespace Quiltra {

namespace {

std::vector<unsigned char> readChunked(Quiltra_Serialization::Source& source, unsigned int size) {
  std::vector<unsigned char> bytes;
  appendChunked(bytes, size, [&source](unsigned char* at, std::size_t n) {
    source.readX(at, static_cast<unsigned int>(n));
    return n;  // a short read throws
  });
  return bytes;
}

}  // namespace

void TagId::serializeX(Quiltra_Serialization::Sink& sink) const {
  sink.write(_raw);
}

void TagId::deserializeX(Quiltra_Serialization::Source& source) {
  source.read(_raw);
}

void Value::serializeX(Quiltra_Serialization::Sink& sink) const {
  sink.write(_size);
  sink.write(_capacity);
  if (_size > 0) sink.writeX(data(), _size);
}

void Value::deserializeX(Quiltra_Serialization::Source& source) {
  unsigned int size = 0;
  unsigned int capacity = 0;
  source.read(size);
  source.read(capacity);
  purge();
  if (size == 0) return;
  // A size read from the input is trusted with a buffer only when it is small, or when the
  // channel already holds that many bytes; otherwise the bytes are gathered as they arrive.
  if (size <= kReadChunk || source.bytesKnownAhead() >= size) {
    allocateForOverwrite(size);
    try {
      source.readX(data(), size);
    } catch (...) {
      purge();
      throw;
    }
    return;
  }
  const std::vector<unsigned char> bytes = readChunked(source, size);
  allocateForOverwrite(size);
  std::memcpy(data(), bytes.data(), size);
}

void TagInfo::serializeX(Quiltra_Serialization::Sink& sink) const {
  _id.serializeX(sink);
  sink.write(nameText(_name));
  sink.write(_vr);
  sink.writeType(Quiltra_Serialization::kCodePair);
  sink.write(_multiplicity.first);
  sink.write(_multiplicity.second);
}

void TagInfo::deserializeX(Quiltra_Serialization::Source& source) {
  _id.deserializeX(source);
  std::string name;
  source.read(name);
  _name = sharedName(name);
  source.read(_vr);
  source.readTypeX(Quiltra_Serialization::kCodePair);
  source.read(_multiplicity.first);
  source.read(_multiplicity.second);
}

}  // namespace Quiltra
