#include "support/LoadingDelegate.h"
#include "support/QuiltraTestSupport.h"
#include "support/TestDict.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include <quiltra/io/Reader.h>
#include <quiltra/io/Writer.h>

using namespace Quiltra;
using QuiltraTest::expectQuiltraError;
using QuiltraTest::LoadingDelegate;

namespace {

class TestReader : public Reader {
 public:
  explicit TestReader(std::shared_ptr<const Dict> dict = nullptr) : Reader(std::move(dict)) {}
  std::shared_ptr<Message> readFile(const std::string&, std::shared_ptr<IOParameter>) override {
    return nullptr;
  }
  std::shared_ptr<Reader> createInstance(const std::shared_ptr<const Dict>& dict) const override {
    return std::make_shared<TestReader>(dict);
  }

  static void registerPrototype(std::shared_ptr<const Reader> prototype) {
    setPrototype(std::move(prototype));
  }
  static std::shared_ptr<Reader> createFrom(const std::shared_ptr<const Reader>& prototype,
                                            const std::shared_ptr<const Dict>& dict) {
    return create(prototype, dict);
  }
};

// Two writer classes, to tell which prototype made a writer.
template <int kKind>
class TestWriter : public Writer {
 public:
  explicit TestWriter(std::shared_ptr<const Dict> dict = nullptr) : Writer(std::move(dict)) {}
  void writeFile(const std::string&, std::shared_ptr<IOParameter>,
                 std::shared_ptr<Message>) override {}
  std::shared_ptr<Writer> createInstance(const std::shared_ptr<const Dict>& dict) const override {
    return std::make_shared<TestWriter>(dict);
  }

  std::shared_ptr<const Dict> usedDict() const { return dict(); }
  static void registerPrototype(std::shared_ptr<const Writer> prototype) {
    setPrototype(std::move(prototype));
  }
  static std::shared_ptr<const Writer> registered() { return prototype(); }
};

using FirstWriter = TestWriter<1>;
using SecondWriter = TestWriter<2>;

class ReaderWriterTest : public ::testing::Test {
 protected:
  void SetUp() override { clearPrototypes(); }
  void TearDown() override { clearPrototypes(); }
  static void clearPrototypes() {
    TestReader::registerPrototype(nullptr);
    FirstWriter::registerPrototype(nullptr);
  }
  const std::shared_ptr<const Dict> dict = std::make_shared<QuiltraTest::TestDict>();
};

}  // namespace

TEST_F(ReaderWriterTest, CreateFailsWhenLoadingRegistersNoPrototype) {
  expectQuiltraError([this] { Reader::create(dict); }, "Reader::create", "no prototype registered");
  expectQuiltraError([this] { Writer::create(dict); }, "Writer::create", "no prototype registered");
  LoadingDelegate registersNothing;
  expectQuiltraError([this] { Reader::create(dict); }, "Reader::create", "no prototype registered");
  expectQuiltraError([this] { Writer::create(dict); }, "Writer::create", "no prototype registered");
  EXPECT_EQ(registersNothing.loads, 2);
  expectQuiltraError([this] { TestReader::createFrom(nullptr, dict); }, "Reader::create",
                     "no prototype registered");
}

TEST_F(ReaderWriterTest, ReaderCreateLoadsOnceAndGivesNewReadersWithTheDictionary) {
  const auto prototype = std::make_shared<TestReader>();
  LoadingDelegate loader([&] { TestReader::registerPrototype(prototype); });
  const auto first = Reader::create(dict);
  const auto second = Reader::create(nullptr);
  EXPECT_EQ(loader.loads, 1);
  ASSERT_TRUE(first && second);
  EXPECT_NE(first, second);
  EXPECT_NE(first.get(), prototype.get());
  EXPECT_EQ(first->dict(), dict);
  EXPECT_FALSE(second->dict());
  EXPECT_EQ(TestReader::createFrom(prototype, dict)->dict(), dict);

  const TestReader copy(*static_cast<const TestReader*>(first.get()));
  EXPECT_EQ(copy.dict(), dict);  // copies share the dictionary
}

TEST_F(ReaderWriterTest, LaterWriterPrototypeServesLaterCreatesOnly) {
  FirstWriter::registerPrototype(std::make_shared<FirstWriter>());
  const auto before = Writer::create(dict);
  FirstWriter::registerPrototype(std::make_shared<SecondWriter>());
  const auto after = Writer::create(dict);

  ASSERT_TRUE(std::dynamic_pointer_cast<FirstWriter>(before));
  ASSERT_TRUE(std::dynamic_pointer_cast<SecondWriter>(after));
  EXPECT_EQ(std::dynamic_pointer_cast<FirstWriter>(before)->usedDict(), dict);
  EXPECT_EQ(std::dynamic_pointer_cast<SecondWriter>(after)->usedDict(), dict);
  EXPECT_TRUE(std::dynamic_pointer_cast<const SecondWriter>(FirstWriter::registered()));
}
