/*
 * Text stream layouts of TagId, Value and TagInfo, built from the Quiltra_Utils primitives
 * (every byte two characters from 0x28 to 0x3F; numbers 4 bytes, least significant first).
 *
 *   TagId    unsigned raw id                   (0010,0020) -> "20001000"
 *   TagInfo  TagId, string name, int Vr number, unsigned minimum, unsigned maximum
 *   Value    unsigned capacity, unsigned size S, bool hasBuffer, then S bytes when hasBuffer
 *            empty value -> "00000000" "00000000" "00"
 *
 * Readers never report a short stream: every field not read stays 0 (empty, false), and
 * an object is assigned what was read, so a cut stream leaves zero counts and empty names.
 * Value::fromStream releases the old buffer and ignores the stored capacity. Without the
 * buffer flag the value is null whatever S says (the writer never puts S > 0 without a
 * buffer). With it, S is not trusted: bytes are read in bounded chunks into a growing
 * vector while the stream delivers them, so the memory used follows the input, not S.
 * When all S bytes arrive the value holds them (size = capacity = S); when the stream ends
 * early it holds exactly the bytes that did arrive (size = capacity = that count, null for
 * none).
 */

#include "ChunkedRead.h"
#include "StreamBytes.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Value.h>
#include <quiltra/io/StreamPrimitives.h>

namespace Quiltra {

namespace {

// Reads up to count bytes, as many as the stream still holds.
std::vector<unsigned char> readAvailable(std::istream& in, unsigned int count) {
  std::vector<unsigned char> bytes;
  appendChunked(bytes, count, [&in](unsigned char* at, std::size_t n) {
    return Quiltra_Utils::decodeBytes(in, at, static_cast<unsigned int>(n));
  });
  return bytes;
}

}  // namespace

void TagId::toStream(std::ostream& out) const {
  Quiltra_Utils::toStream(out, _raw);
}

void TagId::fromStream(std::istream& in) {
  unsigned int raw = 0;
  Quiltra_Utils::fromStream(in, raw);
  _raw = raw;
}

void Value::toStream(std::ostream& out) const {
  const bool hasBuffer = _data != nullptr;
  Quiltra_Utils::toStream(out, _capacity);
  Quiltra_Utils::toStream(out, _size);
  Quiltra_Utils::toStream(out, hasBuffer);
  if (hasBuffer) Quiltra_Utils::toStream(out, _data, _size);
}

void Value::fromStream(std::istream& in) {
  purge();
  unsigned int capacity = 0;
  unsigned int size = 0;
  bool hasBuffer = false;
  Quiltra_Utils::fromStream(in, capacity);
  Quiltra_Utils::fromStream(in, size);
  Quiltra_Utils::fromStream(in, hasBuffer);
  if (!hasBuffer || !in) return;
  const std::vector<unsigned char> bytes = readAvailable(in, size);
  setData(static_cast<unsigned int>(bytes.size()), bytes.data());
}

void TagInfo::toStream(std::ostream& out) const {
  const int vr = _vr;
  _id.toStream(out);
  Quiltra_Utils::toStream(out, _name);
  Quiltra_Utils::toStream(out, vr);
  Quiltra_Utils::toStream(out, _multiplicity.first);
  Quiltra_Utils::toStream(out, _multiplicity.second);
}

void TagInfo::fromStream(std::istream& in) {
  TagId id;
  std::string name;
  int vr = 0;
  std::pair<unsigned int, unsigned int> multiplicity{0, 0};
  id.fromStream(in);
  Quiltra_Utils::fromStream(in, name);
  Quiltra_Utils::fromStream(in, vr);
  Quiltra_Utils::fromStream(in, multiplicity.first);
  Quiltra_Utils::fromStream(in, multiplicity.second);
  _id = id;
  _name = std::move(name);
  _vr = static_cast<Vr>(vr);
  _multiplicity = multiplicity;
}

}  // namespace Quiltra
