#include "DicomTestSupport.h"
#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/core/Logging.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace {

using Quiltra::TagId;
using QuiltraTest::fileBytes;
using QuiltraTest::hex;
using QuiltraTest::readBytes;

std::vector<std::string> gWarnings;
void collect(std::string message, int) {
  gWarnings.push_back(std::move(message));
}

class DicomDamageTest : public ::testing::Test {
 protected:
  void SetUp() override {
    gWarnings.clear();
    Quiltra_Utils::setLoggingHandler(collect);
  }
  void TearDown() override { Quiltra_Utils::setLoggingHandler(nullptr); }

  static std::vector<unsigned char> sample(const char* name) {
    return fileBytes(QuiltraTest::dicomTestFile(name));
  }
  static std::string readError(const std::vector<unsigned char>& bytes) {
    try {
      readBytes(bytes);
    } catch (const Quiltra::Exception& error) {
      EXPECT_EQ(error.method(), "DicomFile::read");
      return error.description();
    }
    return "";
  }
};

// Every prefix of every sample either reads (when it ends between top-level elements) or
// fails cleanly naming an offset.
TEST_F(DicomDamageTest, ReadsOrRejectsEveryTruncation) {
  for (const char* name : {"explicit-le-undefined.dcm", "implicit-le.dcm", "explicit-be.dcm",
                           "deflated.dcm", "rle.dcm"}) {
    SCOPED_TRACE(name);
    const auto bytes = sample(name);
    for (std::size_t n = 0; n < bytes.size(); ++n) {
      const std::vector<unsigned char> prefix(bytes.begin(), bytes.begin() + n);
      const std::string error = readError(prefix);
      if (!error.empty()) {
        EXPECT_NE(error.find(" at offset "), std::string::npos) << error;
      }
    }
  }
}

TEST_F(DicomDamageTest, RejectsLengthsBeyondTheFileWithTheirOffset) {
  auto bytes = sample("explicit-le.dcm");
  // The pixel data header is the last 12 bytes before its 32 bytes of value.
  const std::size_t header = bytes.size() - 32 - 12;
  bytes[header + 8] = 0xF0;
  bytes[header + 11] = 0x7F;  // about 2 GiB
  EXPECT_EQ(readError(bytes), "value of (7fe0,0010) runs past the end of the file at offset " +
                                  std::to_string(header));
  bytes.resize(bytes.size() - 1);
  bytes[header + 8] = 32;
  bytes[header + 11] = 0;
  EXPECT_EQ(readError(bytes), "value of (7fe0,0010) runs past the end of the file at offset " +
                                  std::to_string(header));
}

TEST_F(DicomDamageTest, RejectsBrokenStructure) {
  const std::string prefix = "08 00 15 11 53 51 00 00 ff ff ff ff ";  // undefined-length SQ
  EXPECT_EQ(readError(hex(prefix + "08 00 50 11 55 49 02 00 31 00")),
            "item expected, found (0008,1150) at offset 12");
  EXPECT_EQ(readError(hex(prefix + "fe ff 00 e0 ff ff ff ff 08 00 50 11 55 49 02 00 31 00")),
            "file ends inside an item at offset 30");
  EXPECT_EQ(readError(hex(prefix + "fe ff 00 e0 ff ff ff ff 08 00 50 11 3f 3f 02 00 31 00")),
            "unknown VR in the header of (0008,1150) at offset 20");
  EXPECT_EQ(readError(hex(prefix + "fe ff 00 e0 04 00 00 00 08 00 50 11 55 49 02 00 31 00")),
            "value of (0008,1150) runs past the end of its item at offset 20");
  EXPECT_EQ(readError(hex(prefix)), "file ends inside a sequence at offset 12");
}

TEST_F(DicomDamageTest, RejectsNestingDeeperThan256) {
  std::string text;
  for (int i = 0; i < 300; ++i)
    text += "08 00 15 11 53 51 00 00 ff ff ff ff fe ff 00 e0 ff ff ff ff ";
  const std::string error = readError(hex(text));
  EXPECT_EQ(error.rfind("sequences nested deeper than 256 levels at offset", 0), 0u) << error;
}

TEST_F(DicomDamageTest, RejectsUnknownSyntaxesAndBrokenDeflate) {
  auto bytes = sample("explicit-le.dcm");
  const std::string uid = "1.2.840.10008.1.2.1";
  auto at = std::search(bytes.begin(), bytes.end(), uid.begin(), uid.end());
  ASSERT_NE(at, bytes.end());
  *(at + 18) = '7';
  EXPECT_EQ(readError(bytes).rfind("unsupported transfer syntax 1.2.840.10008.1.2.7 at offset", 0),
            0u);
  auto deflated = sample("deflated.dcm");
  for (std::size_t i = QuiltraTest::dataSetOffset(deflated); i < deflated.size(); i += 7) {
    deflated[i] ^= 0x5A;
  }
  EXPECT_EQ(readError(deflated).rfind("deflated data set", 0), 0u);
}

TEST_F(DicomDamageTest, KeepsWhatWasReadBeforeGarbageAfterTheDataSet) {
  auto bytes = sample("explicit-le.dcm");
  const std::size_t end = bytes.size();
  for (const char* garbage : {"00 00 00 00 00 00 00 00 00 00", "01 02 03", "zz"}) {
    auto damaged = bytes;
    const auto extra = std::string(garbage) == "zz" ? hex("08 00 10 00 5a 5a 02 00") : hex(garbage);
    damaged.insert(damaged.end(), extra.begin(), extra.end());
    gWarnings.clear();
    auto content = readBytes(damaged);
    EXPECT_TRUE(content.tree->hasTag(TagId(0x7FE00010)));
    ASSERT_EQ(gWarnings.size(), 1u);
    EXPECT_EQ(gWarnings[0], "DicomFile::read: ignoring " + std::to_string(extra.size()) +
                                " bytes after the data set at offset " + std::to_string(end));
  }
}

TEST_F(DicomDamageTest, ReadsFilesWithoutMetaOrSyntaxWithAWarning) {
  auto content = readBytes(sample("no-meta-explicit.dcm"));
  EXPECT_EQ(content.syntax, Quiltra::EXPLICIT_LITTLE_ENDIAN);
  EXPECT_EQ(gWarnings,
            std::vector<std::string>{"DicomFile::read: no meta information at offset 0"});
  // A meta group whose transfer syntax element is gone: the data set shows its encoding.
  auto bytes = sample("implicit-le.dcm");
  const std::string uid = "1.2.840.10008.1.2";
  auto at = std::search(bytes.begin(), bytes.end(), uid.begin(), uid.end());
  ASSERT_NE(at, bytes.end());
  *(at - 6) = 0x11;  // (0002,0010) becomes (0002,0011)
  gWarnings.clear();
  content = readBytes(bytes);
  EXPECT_EQ(content.syntax, Quiltra::IMPLICIT_LITTLE_ENDIAN);
  EXPECT_EQ(content.tree->getTag(TagId(0x00280010))->toUShort(0), 4);
  ASSERT_EQ(gWarnings.size(), 1u);
  EXPECT_EQ(gWarnings[0].rfind("DicomFile::read: no transfer syntax in the meta information", 0),
            0u);
}

// A file whose meta group has a group length of length and holds (0002,0010) naming uid
// (19 characters), followed by more.
std::vector<unsigned char> withMeta(unsigned length, const std::string& uid,
                                    const std::string& more) {
  std::vector<unsigned char> bytes(128, 0);
  const std::string magic = "DICM";
  bytes.insert(bytes.end(), magic.begin(), magic.end());
  const auto groupLength = hex("02 00 00 00 55 4c 04 00");
  bytes.insert(bytes.end(), groupLength.begin(), groupLength.end());
  for (int i = 0; i < 4; ++i) bytes.push_back((length >> (8 * i)) & 0xFF);
  const auto syntax = hex("02 00 10 00 55 49 14 00");
  bytes.insert(bytes.end(), syntax.begin(), syntax.end());
  bytes.insert(bytes.end(), uid.begin(), uid.end());
  bytes.push_back(0);
  const auto rest = hex(more);
  bytes.insert(bytes.end(), rest.begin(), rest.end());
  return bytes;
}

// The meta group ends at offset 172 when its group length is 28.
TEST_F(DicomDamageTest, EndsTheMetaGroupWhereItsGroupLengthSays) {
  const std::string bigEndian = "1.2.840.10008.1.2.2";
  const std::string littleEndian = "1.2.840.10008.1.2.1";
  const std::string name = "10 00 10 00 50 4e 04 00 44 6f 65 20";  // (0010,0010) PN "Doe" LE
  // A big-endian data set opening with (0200,feff), whose bytes read as group 0002 here.
  auto content = readBytes(withMeta(28, bigEndian, "02 00 fe ff 55 4e 00 00 00 00 00 02 01 02"));
  EXPECT_EQ(content.syntax, Quiltra::EXPLICIT_BIG_ENDIAN);
  EXPECT_EQ(QuiltraTest::valueBytes(*content.tree, 0x0200FEFF), hex("01 02"));
  EXPECT_FALSE(content.tree->hasTag(TagId(0x0002FFFE)));
  EXPECT_TRUE(gWarnings.empty());
  // Tolerated: a group length too short before a little-endian data set, one too long,
  // and one that ends inside an element; the meta group then ends with group 0002.
  const std::string implementation = "02 00 13 00 53 48 02 00 41 42 ";  // (0002,0013) "AB"
  const struct {
    unsigned length;
    std::string more;
    std::size_t end;
  } cases[] = {{28, implementation + name, 182}, {40, name, 172}, {30, implementation + name, 182}};
  for (const auto& damaged : cases) {
    SCOPED_TRACE(damaged.length);
    gWarnings.clear();
    content = readBytes(withMeta(damaged.length, littleEndian, damaged.more));
    EXPECT_EQ(content.tree->getTag(TagId(0x00100010))->toString(0), "Doe");
    EXPECT_EQ(content.tree->hasTag(TagId(0x00020013)), damaged.end == 182);
    ASSERT_EQ(gWarnings.size(), 1u);
    EXPECT_EQ(gWarnings[0],
              "DicomFile::read: meta information does not end where its group length says "
              "(offset " +
                  std::to_string(144 + damaged.length) + ") at offset " +
                  std::to_string(damaged.end));
  }
}

TEST_F(DicomDamageTest, KeepsUnValuesThatOnlyLookLikeSequences) {
  const auto bytes = hex("09 00 01 10 55 4e 00 00 0c 00 00 00 fe ff 00 e0 10 00 00 00 01 02 03 04");
  auto content = readBytes(bytes);
  auto tag = content.tree->getTag(TagId(0x00091001));
  EXPECT_EQ(tag->info().vr(), Quiltra::UN);
  EXPECT_EQ(QuiltraTest::valueBytes(*content.tree, 0x00091001),
            hex("fe ff 00 e0 10 00 00 00 01 02 03 04"));
}

TEST_F(DicomDamageTest, KeepsShortNumbersAndWarns) {
  auto content = readBytes(hex("28 00 10 00 55 53 03 00 01 02 03"));
  auto tag = content.tree->getTag(TagId(0x00280010));
  ASSERT_EQ(tag->numberOfValues(), 2u);
  EXPECT_EQ(tag->getValueSize(1), 1u);
  ASSERT_EQ(gWarnings.size(), 2u);  // no meta information, and the odd length
  EXPECT_EQ(gWarnings[1],
            "DicomFile::read: length 3 of (0028,0010) is not a multiple of 2 at offset 8");
}

}  // namespace
