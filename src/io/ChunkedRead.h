#ifndef QUILTRA_IO_CHUNKEDREAD_H_
#define QUILTRA_IO_CHUNKEDREAD_H_

#include <algorithm>
#include <cstddef>

namespace Quiltra {

/// The most a reader allocates ahead of the bytes that actually arrived.
inline constexpr std::size_t kReadChunk = 64 * 1024;

/// Appends up to count elements to buffer (a std::string or std::vector of bytes), at most
/// kReadChunk at a time. read(destination, n) fills one chunk and answers how many elements
/// arrived, or throws; a chunk that comes short is cut to what arrived and ends the read.
/// A count taken from untrusted input thus makes the buffer grow only with the input: a
/// forged count ends at the end of the input, having allocated at most one chunk beyond it.
template <class Buffer, class Read>
void appendChunked(Buffer& buffer, std::size_t count, Read&& read) {
  while (count > 0) {
    const std::size_t chunk = std::min(count, kReadChunk);
    const std::size_t start = buffer.size();
    buffer.resize(start + chunk);
    const std::size_t arrived = read(&buffer[start], chunk);
    if (arrived < chunk) {
      buffer.resize(start + arrived);
      return;
    }
    count -= chunk;
  }
}

}  // namespace Quiltra

#endif  // QUILTRA_IO_CHUNKEDREAD_H_
