#include <climits>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include <quiltra/io/StreamPrimitives.h>

using Quiltra_Utils::fromStream;
using Quiltra_Utils::toStream;
using Bytes = std::vector<unsigned char>;

namespace {

template <class T>
std::string encoded(const T& value) {
  std::ostringstream out;
  toStream(out, value);
  return out.str();
}

std::string encodedBytes(const Bytes& bytes) {
  std::ostringstream out;
  toStream(out, bytes.data(), static_cast<unsigned int>(bytes.size()));
  return out.str();
}

template <class T>
T decoded(const std::string& text, T value) {
  std::istringstream in(text);
  fromStream(in, value);
  return value;
}

}  // namespace

TEST(StreamPrimitivesTest, EncodesWorkedExamples) {
  EXPECT_EQ(encoded(0x00100020u), "20001000");
  EXPECT_EQ(encoded(-1), "/?/?/?/?");
  EXPECT_EQ(encoded(std::string("AB")),
            "02000000"
            "4142");
  EXPECT_EQ(encoded(std::string()), "00000000");
  EXPECT_EQ(encoded(true), "01");
  EXPECT_EQ(encoded(false), "00");
  EXPECT_EQ(encodedBytes({0x00, 0x20, 0x7F, 0x80, 0xE9, 0xFF, 0x0A}), "00207?(0.9/?0:");
}

TEST(StreamPrimitivesTest, RoundTripsEveryByteAndNumber) {
  Bytes all(256);
  for (unsigned int i = 0; i < 256; ++i) all[i] = static_cast<unsigned char>(i);
  const std::string text = encodedBytes(all);
  EXPECT_EQ(text.find_first_not_of("()*+,-./0123456789:;<=>?"), std::string::npos);
  Bytes back(256, 0);
  std::istringstream in(text);
  fromStream(in, back.data(), 256);
  EXPECT_EQ(back, all);

  for (int number : {0, 1, -1, INT_MIN, INT_MAX, 0x12345678}) {
    EXPECT_EQ(decoded(encoded(number), 7), number);
  }
  EXPECT_EQ(decoded(encoded(UINT_MAX), 7u), UINT_MAX);
  EXPECT_TRUE(decoded(encoded(true), false));
  const std::string binary("\x01\x80\xFF z", 5);
  EXPECT_EQ(decoded(encoded(binary), std::string("old")), binary);
}

TEST(StreamPrimitivesTest, DecodesBothFormsOfHighNibble) {
  Bytes bytes(4, 0);
  std::istringstream in(
      "80(0?"
      "?/?");  // two literals, as "??/" would be a trigraph
  fromStream(in, bytes.data(), 4);
  EXPECT_EQ(bytes, (Bytes{0x80, 0x80, 0xFF, 0xFF}));
  EXPECT_TRUE(decoded("07", false));  // any non-zero byte is true
}

TEST(StreamPrimitivesTest, IgnoresWhiteSpaceBetweenCharacters) {
  EXPECT_EQ(decoded(" 2 0\n00\t1 0\r\n0 0 ", 0u), 0x00100020u);
  EXPECT_EQ(decoded("02 000000\n41\n4 2", std::string()), "AB");
}

TEST(StreamPrimitivesTest, KeepsRestOfDestinationAfterFailedExtraction) {
  Bytes bytes(4, 0xAA);
  std::istringstream in("01023");  // the third byte lacks its low character
  fromStream(in, bytes.data(), 4);
  EXPECT_EQ(bytes, (Bytes{0x01, 0x02, 0xAA, 0xAA}));
}

TEST(StreamPrimitivesTest, ReadsZerosFromShortStream) {
  EXPECT_EQ(decoded("", 99), 0);
  EXPECT_EQ(decoded("0102", 99u), 0x0201u);
  EXPECT_FALSE(decoded("", true));
  EXPECT_EQ(decoded("", std::string("old")), "");
  EXPECT_EQ(decoded("03000000414", std::string("old")), "A");
  EXPECT_EQ(decoded("/?/?/?/?4142", std::string()), "AB");  // forged 4 GiB length
}

TEST(StreamPrimitivesTest, CutsStringAtFirstZeroByte) {
  EXPECT_EQ(decoded("03000000"
                    "410042",
                    std::string()),
            "A");
  // The whole claimed length is consumed, so what follows is read in step.
  std::istringstream in(
      "03000000"
      "410042"
      "05000000");
  std::string text;
  unsigned int next = 0;
  fromStream(in, text);
  fromStream(in, next);
  EXPECT_EQ(next, 5u);
}

TEST(StreamPrimitivesTest, ReadsPrefixFromTruncatedStringAtEveryOffset) {
  const std::string original = "Tavik";
  const std::string text = encoded(original);
  for (std::size_t size = 0; size < text.size(); ++size) {
    const std::string back = decoded(text.substr(0, size), std::string("old"));
    const std::size_t whole = size < 8 ? 0 : (size - 8) / 2;
    EXPECT_EQ(back, original.substr(0, whole)) << "at size " << size;
  }
}
