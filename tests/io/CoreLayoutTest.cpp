#include "support/QuiltraTestSupport.h"

#include <cstring>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Value.h>
#include <quiltra/io/MemorySink.h>
#include <quiltra/io/MemorySource.h>

using Bytes = std::vector<unsigned char>;
using Quiltra::TagId;
using Quiltra::TagInfo;
using Quiltra::Value;

using QuiltraTest::hex;

namespace {

// Both storage forms of object: the bytes of serializeX and the text of toStream.
template <class T>
std::pair<Bytes, std::string> written(const T& object) {
  Quiltra_Serialization::MemorySink sink;
  std::ostringstream out;
  object.serializeX(sink);
  object.toStream(out);
  return {sink.bytes(), out.str()};
}

// Reads bytes, or text, into object, which may start with other content.
template <class T>
T read(const Bytes& bytes, T object = T()) {
  Quiltra_Serialization::MemorySource source(bytes);
  object.deserializeX(source);
  return object;
}
template <class T>
T read(const std::string& text, T object = T()) {
  std::istringstream in(text);
  object.fromStream(in);
  return object;
}

// The TagInfo of the worked example, bytes 80 FF in a Value of capacity 4, and other content.
const Bytes kInfoBytes =
    hex("02 00 00 00 20 00 10 00  09 00 00 00 02 00 00 00 41 42  0F 00 00 00 03 00 00 00 "
        "0A 00 00 00  02 00 00 00 01 00 00 00  02 00 00 00 01 00 00 00");
const std::string kInfoText = "20001000020000004142030000000100000001000000";
const Bytes kValueBytes = hex("02 00 00 00 02 00 00 00  02 00 00 00 04 00 00 00  80 FF");
const std::string kValueText = "040000000200000001(0/?";
const Value kOld(8u, kInfoBytes.data() + 4);

}  // namespace

TEST(CoreLayoutTest, WritesGoldenEncodingsAndReadsThemBackInBothForms) {
  const TagInfo info(TagId(0x0010, 0x0020), "AB", static_cast<Quiltra::Vr>(3), {1, 1});
  EXPECT_EQ(written(info), std::make_pair(kInfoBytes, kInfoText));  // the TagId comes first
  EXPECT_TRUE(written(read<TagInfo>(kInfoBytes)) == written(info) &&
              written(read<TagInfo>(kInfoText)) == written(info));
  const auto empty = written(Value());
  EXPECT_EQ(empty, std::make_pair(hex("02 00 00 00 00 00 00 00 02 00 00 00 00 00 00 00"),
                                  std::string(18, '0')));
  EXPECT_TRUE(!read(empty.first, kOld).data() && !read(empty.second, kOld).data());
  Value value(4u, hex("80 FF 00 00").data());
  value.setSize(2);
  EXPECT_EQ(written(value), std::make_pair(kValueBytes, kValueText));
  for (const Value& back : {read(kValueBytes, kOld), read(kValueText, kOld)}) {
    EXPECT_TRUE(back == value && back.capacity() == 2);  // the stored capacity is ignored
  }
}

TEST(CoreLayoutTest, RejectsTruncatedForgedOrMistypedBinaryInput) {
  std::vector<Bytes> inputs = {hex("02 00 00 00 FF FF FF FF 02 00 00 00 00 00 00 00 01 02 03 04")};
  for (std::size_t size = 0; size < kValueBytes.size(); ++size) {  // and every cut of a Value
    inputs.emplace_back(kValueBytes.begin(), kValueBytes.begin() + size);
  }
  for (const Bytes& input : inputs) {  // the first claims 4 GiB - 1 bytes in 20
    Value value = kOld;
    Quiltra_Serialization::MemorySource source(input);
    QuiltraTest::expectQuiltraError([&] { value.deserializeX(source); }, "MemorySource::readX",
                                    "cannot read past end of data");
    EXPECT_TRUE(input.size() < 16 ? value == kOld : value.data() == nullptr);
  }
  for (const std::size_t offset : {0, 8, 18, 26, 30, 38}) {  // id, name, vr, pair, min, max
    Bytes bytes = kInfoBytes;
    bytes[offset] = 0x01;
    QuiltraTest::expectQuiltraError([&] { read<TagInfo>(bytes); }, "Source::readTypeX",
                                    "Wrong type code");
  }
}

TEST(CoreLayoutTest, RoundTripsLargeValuesAndReadsTextOnlyAsFarAsItGoes) {
  Value large(70000u);  // a pattern that shows misplaced chunks
  for (unsigned int i = 0; i < 70000; ++i) large.data()[i] = static_cast<unsigned char>(i / 7);
  const auto [bytes, text] = written(large);  // read in chunks; capacity, size, flag: 18 characters
  EXPECT_TRUE(read<Value>(bytes) == large && read<Value>(text) == large);
  // A channel that does not read from memory gathers a long value chunk by chunk; one that
  // does fills a buffer of the announced size at once, which a short input must not mislead.
  struct StreamedSource : Quiltra_Serialization::Source {
    explicit StreamedSource(Bytes input) : bytes(std::move(input)) {}
    void readX(void* data, unsigned int size) override {
      if (size > bytes.size() - at) throw Quiltra::Exception("StreamedSource", "end");
      std::memcpy(data, bytes.data() + at, size);
      at += size;
    }
    void rewind() override { at = 0; }
    Bytes bytes;
    std::size_t at = 0;
  };
  StreamedSource streamed(bytes);
  Value fromStream;
  fromStream.deserializeX(streamed);
  EXPECT_TRUE(fromStream == large && fromStream.capacity() == 70000u);
  for (Bytes cut :
       {Bytes(bytes.begin(), bytes.end() - 1), Bytes(bytes.begin(), bytes.begin() + 20)}) {
    StreamedSource shortStream(cut);
    EXPECT_THROW(Value().deserializeX(shortStream), Quiltra::Exception);
    Value target(3u);
    QuiltraTest::expectQuiltraError([&] { target = read<Value>(cut); }, "MemorySource::readX",
                                    "cannot read past end of data");
  }
  for (const std::size_t size : {0, 17, 18, 19, 20, 30, 18 + 2 * 65536, 18 + 2 * 65537 + 1}) {
    const auto whole = static_cast<unsigned int>(size < 18 ? 0 : (size - 18) / 2);
    const Value value = read<Value>(text.substr(0, size));
    EXPECT_TRUE(value == Value(whole, large.data()) && value.capacity() == whole) << size;
  }
  EXPECT_EQ(read<Value>("00000000 /?/?/?/? 01 4142"), Value(2u, hex("41 42").data()));  // S 4 GiB
  EXPECT_EQ(read<Value>("00000000 /?/?/?/? 00").data(), nullptr);  // without the buffer flag
}
