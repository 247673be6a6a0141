#include "Deflate.h"

#include "ByteInput.h"
#include "ByteOutput.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <zlib.h>

#include <quiltra/core/Exception.h>

namespace Quiltra_DicomFile {

namespace {

constexpr std::size_t kChunk = 64 * 1024;
// Deflate cannot expand beyond about 1032:1; more output than this means a forged stream.
constexpr std::uint64_t kMaxRatio = 1100;

[[noreturn]] void damaged(std::uint64_t offset, const std::string& what) {
  throw Quiltra::Exception("DicomFile::read",
                           "deflated data set " + what + " at offset " + std::to_string(offset));
}

// Owns a zlib stream for inflating or deflating, ending it on every path.
struct ZStream {
  z_stream stream{};
  bool inflating;
  explicit ZStream(bool inflate) : inflating(inflate) {}
  ~ZStream() { inflating ? inflateEnd(&stream) : deflateEnd(&stream); }
};

}  // namespace

std::vector<unsigned char> inflateRest(ByteInput& input) {
  const std::uint64_t start = input.offset();
  const std::uint64_t limit = input.remaining() * kMaxRatio + kChunk;
  unsigned char head[2] = {0, 0};
  const bool zlibWrapped =
      input.peek(head, 2) == 2 && (head[0] & 0x0F) == 8 && ((head[0] << 8) | head[1]) % 31 == 0;
  ZStream z(true);
  if (inflateInit2(&z.stream, zlibWrapped ? 15 : -15) != Z_OK) damaged(start, "cannot start");

  std::vector<unsigned char> out;
  std::vector<unsigned char> in(kChunk);
  int status = Z_OK;
  bool outputFull = false;
  while (status != Z_STREAM_END) {
    if (z.stream.avail_in == 0 && input.remaining() == 0 && !outputFull) {
      damaged(input.offset(), "ends early");
    }
    if (z.stream.avail_in == 0 && input.remaining() > 0) {
      const std::size_t n =
          static_cast<std::size_t>(std::min<std::uint64_t>(kChunk, input.remaining()));
      input.read(in.data(), n);
      z.stream.next_in = in.data();
      z.stream.avail_in = static_cast<uInt>(n);
    }
    const std::size_t used = out.size();
    if (used + kChunk > limit) damaged(start, "inflates too far");
    out.resize(used + kChunk);
    z.stream.next_out = out.data() + used;
    z.stream.avail_out = kChunk;
    status = inflate(&z.stream, Z_NO_FLUSH);
    out.resize(used + (kChunk - z.stream.avail_out));
    outputFull = z.stream.avail_out == 0;
    if (status == Z_BUF_ERROR) damaged(input.offset(), "ends early");
    if (status != Z_OK && status != Z_STREAM_END) {
      damaged(input.offset() - z.stream.avail_in, "is damaged");
    }
  }
  return out;
}

void deflateTo(const std::vector<unsigned char>& data, ByteOutput& output) {
  ZStream z(false);
  if (deflateInit2(&z.stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY) !=
      Z_OK) {
    throw Quiltra::Exception("DicomFile::write", "cannot start deflating");
  }
  std::vector<unsigned char> chunk(kChunk);
  std::size_t done = 0;
  int status = Z_OK;
  while (status != Z_STREAM_END) {
    if (z.stream.avail_in == 0 && done < data.size()) {
      const std::size_t n = std::min<std::size_t>(kChunk * 16, data.size() - done);
      z.stream.next_in = const_cast<unsigned char*>(data.data() + done);
      z.stream.avail_in = static_cast<uInt>(n);
      done += n;
    }
    z.stream.next_out = chunk.data();
    z.stream.avail_out = kChunk;
    status = deflate(&z.stream, done == data.size() ? Z_FINISH : Z_NO_FLUSH);
    if (status == Z_STREAM_ERROR) throw Quiltra::Exception("DicomFile::write", "deflate failed");
    output.write(chunk.data(), kChunk - z.stream.avail_out);
  }
}

}  // namespace Quiltra_DicomFile
