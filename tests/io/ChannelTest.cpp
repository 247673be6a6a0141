#include "support/QuiltraTestSupport.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <sstream>
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
using Quiltra_Serialization::MemorySource;
using QuiltraTest::expectQuiltraError;
using QuiltraTest::hex;
using Bytes = std::vector<unsigned char>;

namespace {

// One field of every typed kind, with values that expose a wrong byte order, width or sign.
using Sample = std::tuple<bool, int, unsigned int, short, unsigned short, long, unsigned long,
                          float, double, std::string, Quiltra::Vr, Quiltra::TransferSyntax,
                          std::pair<unsigned int, std::string>, std::vector<unsigned short>>;
// clang-format off
const Sample kSample{true, -2, 0xA1B2C3D4u, -300, 0xFEDC, -5L, 0xFFFFFFFFul, -1.5f, 1.0, "AB",
                     Quiltra::UN, static_cast<Quiltra::TransferSyntax>(31), {5, ""}, {1, 0xFFFF}};
const Bytes kSampleBytes = hex(
    "00 00 00 00 01  01 00 00 00 FE FF FF FF  02 00 00 00 D4 C3 B2 A1  03 00 00 00 D4 FE "
    "04 00 00 00 DC FE  05 00 00 00 FB FF FF FF  06 00 00 00 FF FF FF FF "
    "07 00 00 00 00 00 C0 BF  08 00 00 00 00 00 00 00 00 00 F0 3F  09 00 00 00 02 00 00 00 41 42 "
    "0F 00 00 00 1B 00 00 00  0F 00 00 00 1F 00 00 00 "
    "0A 00 00 00  02 00 00 00 05 00 00 00  09 00 00 00 00 00 00 00 "
    "0B 00 00 00 02 00 00 00  04 00 00 00 01 00  04 00 00 00 FF FF");
// clang-format on

Sample readSample(Quiltra_Serialization::Source& source) {
  Sample sample;
  std::apply([&](auto&... field) { (source.read(field), ...); }, sample);
  return sample;
}

// Gives each test a file of its own, removed at the end.
class ChannelTest : public testing::Test {
 protected:
  ~ChannelTest() override { std::remove(path.c_str()); }
  const std::string path = testing::TempDir() + "ChannelTest_" +
                           testing::UnitTest::GetInstance()->current_test_info()->name();
};

}  // namespace

TEST_F(ChannelTest, WritesGoldenBytesAndReadsThemBackAfterRewind) {
  Quiltra_Serialization::MemorySink memory;
  std::apply([&](const auto&... field) { (memory.write(field), ...); }, kSample);
  EXPECT_EQ(memory.bytes(), kSampleBytes);
  FileSink(path).writeX(kSampleBytes.data(), static_cast<unsigned int>(kSampleBytes.size()));
  MemorySource fromMemory(memory.bytes());
  FileSource fromFile(path);
  EXPECT_TRUE(readSample(fromMemory) == kSample && readSample(fromFile) == kSample);
  fromFile.rewind();
  EXPECT_EQ(readSample(fromFile), kSample);
}

// A string is written up to its first zero byte, and a stored string is read up to one.
TEST_F(ChannelTest, CutsStringsAtTheirFirstZeroByte) {
  Quiltra_Serialization::MemorySink memory;
  memory.write(std::string("A\0B", 3));
  EXPECT_EQ(memory.bytes(), hex("09 00 00 00 01 00 00 00 41"));
  MemorySource source(hex("09 00 00 00 03 00 00 00 41 00 42"));
  std::string text;
  source.read(text);
  EXPECT_EQ(text, "A");
}

// A bool is written as 0 or 1 but read as true for any byte other than 0.
TEST_F(ChannelTest, ReadsEveryNonZeroBoolByteAsTrue) {
  MemorySource source(hex("00 00 00 00 02  00 00 00 00 FF  00 00 00 00 00"));
  bool flags[3] = {false, false, true};
  for (bool& flag : flags) source.read(flag);
  EXPECT_TRUE(flags[0] && flags[1] && !flags[2]);
}

TEST_F(ChannelTest, RejectsShortInputAndEmptyOrImpossibleTransfers) {
  for (std::size_t size = 0; size < kSampleBytes.size(); ++size) {
    MemorySource source(Bytes(kSampleBytes.begin(), kSampleBytes.begin() + size));
    expectQuiltraError([&] { readSample(source); }, "MemorySource::readX",
                       "cannot read past end of data");
  }
  const Bytes forged = hex("09 00 00 00 FF FF FF FF 41 42");  // a 4 GiB string in 10 bytes
  FileSink(path).writeX(forged.data(), 10);
  std::string text;
  expectQuiltraError([&] { FileSource(path).read(text); }, "FileSource::readX",
                     "cannot read from file");
  // A string whose first byte is zero writes its length 0, then asks for an empty block.
  expectQuiltraError([&] { FileSink(path).write(std::string("\0A", 2)); }, "FileSink::writeX",
                     "cannot write to file");
  expectQuiltraError([] { FileSource("/nonexistent-quiltra-dir/in.bin"); },
                     "FileSource::FileSource", "cannot open file for reading");
  expectQuiltraError([] { FileSink("/nonexistent-quiltra-dir/out.bin"); }, "FileSink::FileSink",
                     "cannot open file for writing");
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);  // a pipe cannot seek
  expectQuiltraError([&] { FileSource("/proc/self/fd/" + std::to_string(ends[0])).rewind(); },
                     "FileSource::rewind", "cannot fseek file");
  close(ends[0]);
  close(ends[1]);
}
