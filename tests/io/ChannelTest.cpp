#include "support/QuiltraTestSupport.h"

#include <climits>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

#include <quiltra/io/FileSink.h>
#include <quiltra/io/FileSource.h>
#include <quiltra/io/MemorySink.h>
#include <quiltra/io/MemorySource.h>

using Quiltra_Serialization::FileSink;
using Quiltra_Serialization::FileSource;
using Quiltra_Serialization::MemorySink;
using Quiltra_Serialization::MemorySource;
using Quiltra_Serialization::Sink;
using Quiltra_Serialization::Source;
using QuiltraTest::expectQuiltraError;
using Bytes = std::vector<unsigned char>;

namespace {

// One field of every typed kind, with values that expose a wrong byte order, a lost sign
// or a wrong width.
using Sample =
    std::tuple<bool, int, unsigned int, short, unsigned short, long, unsigned long, float, double,
               std::string, std::string, Quiltra::Vr, Quiltra::TransferSyntax,
               std::pair<unsigned int, std::string>, std::vector<unsigned short>>;
// clang-format off
const Sample kSample{true, -2, 0xA1B2C3D4u, -300, 0xFEDC, -5L, 0xFFFFFFFFul, -1.5f, 3.0e-300,
                     "Quiltra\xE9", "", Quiltra::UN, static_cast<Quiltra::TransferSyntax>(31),
                     {7, "seven"}, {1, 2, 0xFFFF}};
// clang-format on

void writeSample(Sink& sink) {
  std::apply([&](const auto&... field) { (sink.write(field), ...); }, kSample);
}

Sample readSample(Source& source) {
  Sample sample;
  std::apply([&](auto&... field) { (source.read(field), ...); }, sample);
  return sample;
}

template <class Write>
Bytes written(Write&& write) {
  MemorySink sink;
  write(sink);
  return sink.bytes();
}

// A file under the test temporary directory, removed when the test ends.
class TempFile {
 public:
  TempFile() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    _path = testing::TempDir() + "ChannelTest_" + test->name() + ".bin";
  }
  ~TempFile() { std::remove(_path.c_str()); }
  const std::string& path() const { return _path; }
  void fill(const Bytes& bytes) const {
    FileSink sink(_path);
    sink.writeX(bytes.data(), static_cast<unsigned int>(bytes.size()));
  }

 private:
  std::string _path;
};

}  // namespace

TEST(ChannelTest, WritesGoldenBytesLittleEndian) {
  EXPECT_EQ(written([](Sink& s) { s.write(5u); }), (Bytes{2, 0, 0, 0, 5, 0, 0, 0}));
  EXPECT_EQ(written([](Sink& s) { s.write(std::string("AB")); }),
            (Bytes{9, 0, 0, 0, 2, 0, 0, 0, 0x41, 0x42}));
  EXPECT_EQ(written([](Sink& s) { s.write(true); }), (Bytes{0, 0, 0, 0, 1}));
  EXPECT_EQ(written([](Sink& s) { s.write(static_cast<short>(-2)); }),
            (Bytes{3, 0, 0, 0, 0xFE, 0xFF}));
  EXPECT_EQ(written([](Sink& s) { s.write(-1L); }), (Bytes{5, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(written([](Sink& s) { s.write(1.0); }),
            (Bytes{8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
  EXPECT_EQ(written([](Sink& s) { s.write(Quiltra::UN); }), (Bytes{15, 0, 0, 0, 27, 0, 0, 0}));
  EXPECT_EQ(written([](Sink& s) { s.write(std::vector<int>{}); }),
            (Bytes{11, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(written([](Sink& s) { s.write(std::string()); }), (Bytes{9, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(ChannelTest, KeepsStringUpToFirstZeroByte) {
  EXPECT_EQ(written([](Sink& s) { s.write(std::string("A\0B", 3)); }),
            (Bytes{9, 0, 0, 0, 1, 0, 0, 0, 0x41}));
  MemorySource source({9, 0, 0, 0, 3, 0, 0, 0, 0x41, 0, 0x42, 0, 0, 0, 0, 7});
  std::string text = "old";
  source.read(text);
  EXPECT_EQ(text, "A");
  bool flag = false;
  source.read(flag);  // any non-zero byte reads as true
  EXPECT_TRUE(flag);
}

TEST(ChannelTest, CutsLongToFourBytesAndSignExtendsIt) {
  MemorySink sink;
  sink.write(static_cast<long>(0x7FFFFFFF) + 6);  // wraps to 0x80000005 on the wire
  sink.write(ULONG_MAX);
  MemorySource source(sink.bytes());
  long wide = 0;
  unsigned long natural = 0;
  source.read(wide);
  source.read(natural);
  EXPECT_EQ(sink.bytes().size(), 16u);
  EXPECT_EQ(wide, static_cast<long>(INT_MIN) + 5);
  EXPECT_EQ(natural, 0xFFFFFFFFul);
}

TEST(ChannelTest, RoundTripsEveryTypedFieldThroughMemory) {
  MemorySource source(written(writeSample));
  EXPECT_EQ(readSample(source), kSample);
  source.rewind();
  EXPECT_EQ(readSample(source), kSample);
}

TEST(ChannelTest, RoundTripsEveryTypedFieldThroughFileAfterRewind) {
  const TempFile file;
  {
    FileSink sink(file.path());
    writeSample(sink);
  }
  FileSource source(file.path());
  EXPECT_EQ(readSample(source), kSample);
  source.rewind();
  EXPECT_EQ(readSample(source), kSample);
}

TEST(ChannelTest, RejectsWrongTypeCode) {
  MemorySource source(written([](Sink& s) { s.write(std::string("AB")); }));
  unsigned int natural = 0;
  expectQuiltraError([&] { source.read(natural); }, "Source::readTypeX", "Wrong type code");
  source.rewind();
  expectQuiltraError([&] { source.readTypeX(Quiltra_Serialization::kCodeEnum); },
                     "Source::readTypeX", "Wrong type code");
}

TEST(ChannelTest, EndsForgedStringLengthAtEndOfInput) {
  const Bytes forged{9, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0x41, 0x42};
  std::string text;
  MemorySource memory(forged);
  expectQuiltraError([&] { memory.read(text); }, "MemorySource::readX",
                     "cannot read past end of data");
  const TempFile file;
  file.fill(forged);
  FileSource source(file.path());
  expectQuiltraError([&] { source.read(text); }, "FileSource::readX", "cannot read from file");
}

TEST(ChannelTest, RejectsTruncationAtEveryOffset) {
  const Bytes bytes = written(writeSample);
  const TempFile file;
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    const Bytes prefix(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
    MemorySource memory(prefix);
    EXPECT_TRUE(expectQuiltraError([&] { readSample(memory); }, "MemorySource::readX",
                                   "cannot read past end of data"))
        << "at size " << size;
    if (size == 0) continue;  // a FileSink refuses the empty block
    file.fill(prefix);
    FileSource source(file.path());
    EXPECT_TRUE(expectQuiltraError([&] { readSample(source); }, "FileSource::readX",
                                   "cannot read from file"))
        << "at size " << size;
  }
}

TEST(ChannelTest, MemorySourceReadsEmptyBlocksAndStopsAtEnd) {
  MemorySource source({1, 2});
  unsigned char bytes[3] = {0, 0, 0};
  source.readX(bytes, 2);
  source.readX(bytes, 0);
  expectQuiltraError([&] { source.readX(bytes, 1); }, "MemorySource::readX",
                     "cannot read past end of data");
  source.rewind();
  source.readX(bytes + 1, 2);
  EXPECT_EQ(bytes[2], 2);
}

TEST(ChannelTest, RefusesToOpenMissingFiles) {
  expectQuiltraError([] { FileSource("/nonexistent-quiltra-dir/in.bin"); },
                     "FileSource::FileSource", "cannot open file for reading");
  expectQuiltraError([] { FileSink("/nonexistent-quiltra-dir/out.bin"); }, "FileSink::FileSink",
                     "cannot open file for writing");
}

TEST(ChannelTest, FileChannelsRefuseEmptyAndShortBlocks) {
  const TempFile file;
  {
    FileSink sink(file.path());
    char byte = 'x';
    expectQuiltraError([&] { sink.writeX(&byte, 0); }, "FileSink::writeX", "cannot write to file");
    // A string whose first byte is zero writes its length 0 and then an empty block.
    expectQuiltraError([&] { sink.write(std::string("\0A", 2)); }, "FileSink::writeX",
                       "cannot write to file");
  }
  FileSource source(file.path());
  unsigned char bytes[8];
  expectQuiltraError([&] { source.readX(bytes, 0); }, "FileSource::readX", "cannot read from file");
  source.readX(bytes, 8);
  EXPECT_EQ(Bytes(bytes, bytes + 8), (Bytes{9, 0, 0, 0, 0, 0, 0, 0}));
  expectQuiltraError([&] { source.readX(bytes, 1); }, "FileSource::readX", "cannot read from file");
}

TEST(ChannelTest, FileChannelsReportFailingDevices) {
  if (access("/dev/full", W_OK) == 0) {
    FileSink full("/dev/full");
    const Bytes block(1 << 20, 0x55);  // larger than any stdio buffer: fwrite hits the device
    expectQuiltraError([&] { full.writeX(block.data(), 1 << 20); }, "FileSink::writeX",
                       "cannot write to file");
  }
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  {
    FileSource pipe("/proc/self/fd/" + std::to_string(ends[0]));  // a pipe cannot seek
    expectQuiltraError([&] { pipe.rewind(); }, "FileSource::rewind", "cannot fseek file");
  }
  close(ends[0]);
  close(ends[1]);
}
