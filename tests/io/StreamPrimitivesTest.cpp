#include <climits>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>

#include <quiltra/io/StreamPrimitives.h>

namespace {

template <class T>
std::string encoded(const T& value) {
  std::ostringstream out;
  Quiltra_Utils::toStream(out, value);
  return out.str();
}

// Reads a T from text into a destination that starts as value.
template <class T>
T decoded(const std::string& text, T value) {
  std::istringstream in(text);
  Quiltra_Utils::fromStream(in, value);
  return value;
}

}  // namespace

TEST(StreamPrimitivesTest, EncodesWorkedExamplesAndReadsThemBack) {
  EXPECT_EQ(encoded(-1) + encoded(true) + encoded(false), "/?/?/?/?0100");
  EXPECT_EQ(encoded(std::string("AB")) + encoded(std::string()), "02000000414200000000");
  const std::string high = "\x20\x7F\x80\xE9\xFF\x0A";
  EXPECT_EQ(encoded(high), "06000000207?(0.9/?0:");
  EXPECT_EQ(decoded("060 00000\n207?(0 .9/?0:", std::string("old")), high);  // blanks skipped
  EXPECT_TRUE(decoded("?0/0", 0u) == 0xF0F0u && decoded(encoded(INT_MIN), 7) == INT_MIN);
  EXPECT_TRUE(decoded(encoded(UINT_MAX), 7u) == UINT_MAX && decoded("07", false));
}

TEST(StreamPrimitivesTest, ReadsZerosFromShortStream) {
  EXPECT_TRUE(decoded("", 99) == 0 && decoded("0102", 99u) == 0x0201u && !decoded("", true));
  EXPECT_EQ(decoded("03000000414", std::string("old")), "A");
  EXPECT_EQ(decoded("/?/?/?/?4142", std::string("old")), "AB");  // forged 4 GiB length
  std::istringstream cut("0300000041004205000000");              // "A\0B", then 5
  std::pair<std::string, unsigned int> read;
  Quiltra_Utils::fromStream(cut, read.first);
  Quiltra_Utils::fromStream(cut, read.second);
  EXPECT_TRUE(read.first == "A" && read.second == 5u);  // cut at the zero byte, all bytes consumed
}

TEST(StreamPrimitivesTest, LeavesTheRestOfTheDestinationWhenTheStreamEnds) {
  unsigned char bytes[4] = {9, 9, 9, 9};
  std::istringstream in("41424");
  Quiltra_Utils::fromStream(in, bytes, 4);
  EXPECT_TRUE(bytes[0] == 0x41 && bytes[1] == 0x42 && bytes[2] == 9 && bytes[3] == 9);
}

// The reader takes characters in blocks: it must still consume exactly the characters the
// bytes need, skip white space wherever a block boundary falls, and keep formatted
// extraction's rules (noskipws, a stream that is not good, an end inside a pair).
TEST(StreamPrimitivesTest, ConsumesExactlyWhatTheBytesNeedAcrossBlockBoundaries) {
  std::string bytes(10000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<char>(i * 7 % 255 + 1);  // no zero byte
  std::string text = encoded(bytes);
  for (std::size_t at = text.size() - 1; at > 1000; at -= 997)
    text.insert(at, at % 2 ? " \n" : "\t");
  std::istringstream in(text + " 7?rest");
  std::string back;
  Quiltra_Utils::fromStream(in, back);
  unsigned char next = 0;
  Quiltra_Utils::fromStream(in, &next, 1);
  std::string rest;
  in >> rest;
  EXPECT_TRUE(back == bytes && next == 0x7F && rest == "rest");
  std::istringstream noSkip(" 41");
  noSkip >> std::noskipws;
  unsigned char byte = 9;
  Quiltra_Utils::fromStream(noSkip, &byte, 1);  // the blank is a character like any other
  EXPECT_EQ(byte, 0x04);  // ((0x20 - 0x30) << 4) + (0x34 - 0x30), kept to 8 bits
  std::istringstream failed("4142");
  failed.setstate(std::ios::failbit);
  Quiltra_Utils::fromStream(failed, &byte, 1);
  EXPECT_EQ(byte, 0x04);  // nothing read from a stream that has failed
  std::istringstream half("414");
  unsigned char two[2] = {9, 9};
  Quiltra_Utils::fromStream(half, two, 2);
  EXPECT_TRUE(two[0] == 0x41 && two[1] == 9 && half.eof() && half.fail() && !half.bad());
}

// A stream buffer that throws leaves the stream bad, as formatted extraction does, without
// the exception escaping a stream that does not ask for it.
TEST(StreamPrimitivesTest, TurnsAThrowingStreamBufferIntoBadbit) {
  struct Throwing : std::streambuf {
    int_type underflow() override { throw std::runtime_error("device failed"); }
  } buffer;
  std::istream in(&buffer);
  unsigned int value = 7;
  Quiltra_Utils::fromStream(in, value);
  EXPECT_TRUE(value == 0 && in.bad());
}
