#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Value.h>
#include <quiltra/io/MemorySink.h>
#include <quiltra/io/MemorySource.h>

using Bytes = std::vector<unsigned char>;
using Quiltra::TagId;
using Quiltra::TagInfo;
using Quiltra::Value;

namespace {

const Bytes kTagIdBytes = {0x02, 0, 0, 0, 0x20, 0, 0x10, 0};
const Bytes kTagInfoBytes = {0x02, 0, 0,    0, 0x20, 0,    0x10, 0, 0x09, 0, 0,    0,
                             0x02, 0, 0,    0, 0x41, 0x42, 0x0F, 0, 0,    0, 0x03, 0,
                             0,    0, 0x0A, 0, 0,    0,    0x02, 0, 0,    0, 0x01, 0,
                             0,    0, 0x02, 0, 0,    0,    0x01, 0, 0,    0};
const TagInfo kTagInfo(TagId(0x0010, 0x0020), "AB", static_cast<Quiltra::Vr>(3), {1, 1});

template <class T>
Bytes serialize(const T& object) {
  Quiltra_Serialization::MemorySink sink;
  object.serializeX(sink);
  return sink.bytes();
}

template <class T>
T deserialize(const Bytes& bytes) {
  Quiltra_Serialization::MemorySource source(bytes);
  T object;
  object.deserializeX(source);
  return object;
}

template <class T>
std::string streamed(const T& object) {
  std::ostringstream out;
  object.toStream(out);
  return out.str();
}

template <class T>
T unstreamed(const std::string& text) {
  std::istringstream in(text);
  T object;
  object.fromStream(in);
  return object;
}

Value patterned(unsigned int size) {
  Value value(size);
  for (unsigned int i = 0; i < size; ++i) value.data()[i] = static_cast<unsigned char>(i * 7);
  return value;
}

// Every proper prefix of a valid encoding ends in the source's end-of-data failure.
template <class T>
void expectEveryTruncationRejected(const Bytes& bytes) {
  for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
    SCOPED_TRACE(cut);
    QuiltraTest::expectQuiltraError(
        [&] { deserialize<T>(Bytes(bytes.begin(), bytes.begin() + cut)); }, "MemorySource::readX",
        "cannot read past end of data");
  }
}

}  // namespace

TEST(CoreLayoutTest, WritesGoldenTagIdAndTagInfo) {
  EXPECT_EQ(serialize(TagId(0x0010, 0x0020)), kTagIdBytes);
  EXPECT_EQ(streamed(TagId(0x0010, 0x0020)), "20001000");
  EXPECT_EQ(serialize(kTagInfo), kTagInfoBytes);
  EXPECT_EQ(streamed(kTagInfo),
            std::string("20001000") + "02000000" + "4142" + "03000000" + "01000000" + "01000000");
}

TEST(CoreLayoutTest, WritesEmptyValueWithoutData) {
  const Bytes expected = {0x02, 0, 0, 0, 0, 0, 0, 0, 0x02, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(serialize(Value()), expected);
  EXPECT_EQ(streamed(Value()), std::string("00000000") + "00000000" + "00");
  EXPECT_EQ(deserialize<Value>(expected).data(), nullptr);
  EXPECT_EQ(unstreamed<Value>("000000000000000000").data(), nullptr);
}

TEST(CoreLayoutTest, WritesSizeAndCapacityInEachFormsOrder) {
  Value value(4u);
  value.data()[0] = 0x80;
  value.data()[1] = 0xFF;
  value.setSize(2);
  const Bytes binary = {0x02, 0, 0, 0, 0x02, 0, 0, 0, 0x02, 0, 0, 0, 0x04, 0, 0, 0, 0x80, 0xFF};
  EXPECT_EQ(serialize(value), binary);
  EXPECT_EQ(streamed(value), std::string("04000000") + "02000000" + "01" + "(0/?");
  for (const Value& read : {deserialize<Value>(binary), unstreamed<Value>(streamed(value))}) {
    EXPECT_EQ(read, value);
    EXPECT_EQ(read.capacity(), 2u);  // the stored capacity is ignored
  }
  EXPECT_EQ(unstreamed<Value>("04000000 02000000 01 80/?"), value);  // "80" decodes like "(0"
}

TEST(CoreLayoutTest, RoundTripsThroughBothForms) {
  const TagId id(0xFFFE, 0xE00D);
  EXPECT_EQ(deserialize<TagId>(serialize(id)), id);
  EXPECT_EQ(unstreamed<TagId>(streamed(id)), id);
  const TagInfo info(TagId(0x0029, 0x1010), "Caf\xC3\xA9", Quiltra::UT, {1, 0xFFFFFFFFu});
  const TagInfo odd(TagId(), "", static_cast<Quiltra::Vr>(-5), {0, 0});  // kept as read
  for (const TagInfo& sample : {info, odd}) {  // compared through the golden-checked writers
    EXPECT_EQ(serialize(deserialize<TagInfo>(serialize(sample))), serialize(sample));
    EXPECT_EQ(streamed(unstreamed<TagInfo>(streamed(sample))), streamed(sample));
  }
  for (unsigned int size : {1u, 3u, 65536u, 200001u}) {  // both sides of the read chunk
    const Value value = patterned(size);
    EXPECT_EQ(deserialize<Value>(serialize(value)), value) << size;
    EXPECT_EQ(unstreamed<Value>(streamed(value)), value) << size;
  }
}

TEST(CoreLayoutTest, ReplacesPreviousContentOnRead) {
  Value value = patterned(8);
  Quiltra_Serialization::MemorySource source(serialize(Value(2u)));
  value.deserializeX(source);
  std::istringstream in(streamed(Value(3u)));
  Value streamedInto = patterned(8);
  streamedInto.fromStream(in);
  for (const Value* read : {&value, &streamedInto}) {
    EXPECT_EQ(*read, Value(read->size()));  // zeros, not the old pattern
    EXPECT_EQ(read->capacity(), read->size());
  }
}

TEST(CoreLayoutTest, RejectsForgedValueSizeAtEndOfInput) {
  for (unsigned int size : {0xFFFFFFFFu, 1000u}) {
    Bytes bytes = {0x02, 0, 0, 0, 0, 0, 0, 0, 0x02, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4};
    for (int i = 0; i < 4; ++i) bytes[4 + i] = static_cast<unsigned char>(size >> (8 * i));
    Value value = patterned(4);
    Quiltra_Serialization::MemorySource source(bytes);
    QuiltraTest::expectQuiltraError([&] { value.deserializeX(source); }, "MemorySource::readX",
                                    "cannot read past end of data");
    EXPECT_EQ(value.data(), nullptr);
  }
}

TEST(CoreLayoutTest, RejectsEveryTruncatedBinaryEncoding) {
  expectEveryTruncationRejected<TagId>(kTagIdBytes);
  expectEveryTruncationRejected<TagInfo>(kTagInfoBytes);
  expectEveryTruncationRejected<Value>(serialize(patterned(5)));
  const Bytes large = serialize(patterned(70000));
  for (std::size_t cut : {large.size() - 1, std::size_t{16} + 65536, std::size_t{17}}) {
    QuiltraTest::expectQuiltraError(
        [&] { deserialize<Value>(Bytes(large.begin(), large.begin() + cut)); },
        "MemorySource::readX", "cannot read past end of data");
  }
}

TEST(CoreLayoutTest, RejectsWrongTypeCodes) {
  const auto expectWrongCode = [](auto read, Bytes bytes, std::size_t offset) {
    bytes[offset] = 0x01;
    QuiltraTest::expectQuiltraError([&] { read(bytes); }, "Source::readTypeX", "Wrong type code");
  };
  const auto readId = [](const Bytes& bytes) { deserialize<TagId>(bytes); };
  const auto readInfo = [](const Bytes& bytes) { deserialize<TagInfo>(bytes); };
  const auto readValue = [](const Bytes& bytes) { deserialize<Value>(bytes); };
  expectWrongCode(readId, kTagIdBytes, 0);
  for (std::size_t offset : {0u, 8u, 18u, 26u, 30u, 38u})
    expectWrongCode(readInfo, kTagInfoBytes, offset);
  expectWrongCode(readValue, serialize(patterned(3)), 0);
  expectWrongCode(readValue, serialize(patterned(3)), 8);
}

TEST(CoreLayoutTest, KeepsZerosWhereTextStreamIsCut) {
  const TagInfo info(TagId(0x0010, 0x0020), "Name", Quiltra::PN, {1, 3});
  const std::string text = streamed(info);  // id 8, name 8 + 8, vr 8, min 8, max 8
  for (std::size_t cut = 0; cut < text.size(); ++cut) {
    SCOPED_TRACE(cut);
    const TagInfo read = unstreamed<TagInfo>(text.substr(0, cut));
    EXPECT_TRUE(cut > 16 || read.name().empty());
    EXPECT_TRUE(cut > 24 || read.vr() == Quiltra::AE);  // vr number 0
    EXPECT_TRUE(cut > 32 || read.multiplicity().first == 0u);
    EXPECT_TRUE(cut > 40 || read.multiplicity().second == 0u);
  }
  const std::string value = streamed(patterned(6));  // capacity, size, flag: 18 characters
  for (std::size_t cut = 0; cut < value.size(); ++cut) {
    SCOPED_TRACE(cut);
    const Value read = unstreamed<Value>(value.substr(0, cut));
    const unsigned int whole = cut < 18 ? 0 : static_cast<unsigned int>(cut - 18) / 2;
    EXPECT_EQ(read, Value(whole, patterned(6).data()));
    EXPECT_EQ(read.capacity(), whole);
  }
}

TEST(CoreLayoutTest, ReadsTextValueOnlyAsFarAsTheStreamGoes) {
  const Value read = unstreamed<Value>("00000000 /?/?/?/? 01 4142");  // S = 4 GiB - 1
  EXPECT_EQ(read, Value(2u, reinterpret_cast<const unsigned char*>("AB")));
  EXPECT_EQ(unstreamed<Value>("00000000 05000000 00 4142").data(), nullptr);  // no buffer flag
  const unsigned char high[] = {0x80, 0xFF};
  EXPECT_EQ(unstreamed<Value>("04000000\n02 000000 0\t1 (0 /?"), Value(2u, high));
}
