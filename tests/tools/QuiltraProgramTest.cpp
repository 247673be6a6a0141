#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

#include <quiltra/dataset/Message.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>
#include <quiltra/io/FileSink.h>
#include <quiltra/io/FileSource.h>

using Quiltra::Message;
using Quiltra::TagId;
using Quiltra::Tree;
namespace fs = std::filesystem;

namespace {

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// Runs the quiltra program in a fresh folder, as a user would from a shell.
class QuiltraProgramTest : public ::testing::Test {
 protected:
  Outcome run(const std::string& arguments) {
    const fs::path out = _folder.path() / "stdout.log";
    const fs::path err = _folder.path() / "stderr.log";
    const std::string command = "cd '" + _folder.path().string() + "' && '" + QUILTRA_PROGRAM +
                                "' " + arguments + " >'" + out.string() + "' 2>'" + err.string() +
                                "'";
    const int status = std::system(command.c_str());
    Outcome result{WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(out), readFile(err)};
    fs::remove(out);
    fs::remove(err);
    return result;
  }

  // A small message: PatientName, PatientID and Rows in UTF-8, stored in binary form.
  std::shared_ptr<Message> sample() {
    auto tree = std::make_shared<Tree>();
    add(*tree, TagId(0x0010, 0x0010), "PatientName", Quiltra::PN, "Doe^Jane");
    add(*tree, TagId(0x0010, 0x0020), "PatientID", Quiltra::LO, "QA-0042");
    add(*tree, TagId(0x0028, 0x0010), "Rows", Quiltra::US, "512");
    auto message = std::make_shared<Message>("ISO_IR 192", Quiltra::EXPLICIT_LITTLE_ENDIAN);
    message->setTags(tree);
    return message;
  }
  std::string writeSample(const std::string& name) {
    Quiltra_Serialization::FileSink sink(path(name));
    sample()->serializeX(sink);
    return name;
  }
  std::string writeFile(const std::string& name, const std::string& bytes) {
    std::ofstream(path(name), std::ios::binary) << bytes;
    return name;
  }
  // The data set of a stored message.
  std::shared_ptr<Tree> readBack(const std::string& name, bool text) {
    Message message;
    if (text) {
      std::ifstream in(path(name), std::ios::binary);
      message.fromStream(in);
    } else {
      Quiltra_Serialization::FileSource source(path(name));
      message.deserializeX(source);
    }
    EXPECT_EQ(message.syntax(), Quiltra::EXPLICIT_LITTLE_ENDIAN);
    EXPECT_EQ(message.specificCharacterSet(), "ISO_IR 192");
    return message.tags();
  }
  std::string path(const std::string& name) const { return (_folder.path() / name).string(); }
  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(_folder.path())) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  static void add(Tree& tree, TagId id, const std::string& name, Quiltra::Vr vr,
                  const std::string& value) {
    auto tag = std::make_shared<Quiltra::Tag>(Quiltra::TagInfo(id, name, vr, {1, 1}));
    tag->addValue(value);
    tree.addTag(tag);
  }
  static bool sameElements(const Tree& a, const Tree& b) {
    const auto left = a.constTags();
    const auto right = b.constTags();
    return std::equal(
        left.begin(), left.end(), right.begin(), right.end(),
        [](const auto& x, const auto& y) { return x.first == y.first && *x.second == *y.second; });
  }

 private:
  QuiltraTest::TemporaryFolder _folder{"quiltra-program"};
};

}  // namespace

TEST_F(QuiltraProgramTest, HelpSucceedsAndUsageErrorsExitWith2) {
  for (const char* help : {"--help", "demo --help", "convert --help", "modify --help"}) {
    const Outcome result = run(help);
    EXPECT_EQ(result.status, 0) << help;
    EXPECT_NE(result.out.find("Usage: quiltra"), std::string::npos) << help;
  }
  writeSample("in.bin");
  for (const char* usage :
       {"", "frobnicate", "convert in.bin", "convert in.bin out --form xml", "convert in.bin out",
        "modify in.bin out --bogus", "convert in.bin out --form text extra"}) {
    const Outcome result = run(usage);
    EXPECT_EQ(result.status, 2) << usage;
    EXPECT_NE(result.err.find("Run with --help"), std::string::npos) << usage << result.err;
  }
  EXPECT_EQ(files(), std::vector<std::string>{"in.bin"});
}

TEST_F(QuiltraProgramTest, ConvertsBetweenBothFormsWithoutLosingAnything) {
  writeSample("in.bin");
  ASSERT_EQ(run("convert in.bin text.qtx --form text").status, 0);
  const std::string text = readFile(path("text.qtx"));
  ASSERT_FALSE(text.empty());
  EXPECT_EQ(text.find_first_not_of("()*+,-./0123456789:;<=>?"), std::string::npos);
  EXPECT_TRUE(sameElements(*readBack("text.qtx", true), *sample()->tags()));
  ASSERT_EQ(run("convert text.qtx back.bin --form binary").status, 0);
  EXPECT_EQ(readFile(path("back.bin")), readFile(path("in.bin")));
  ASSERT_EQ(run("convert back.bin back.bin --form binary").status, 0);  // in place
  EXPECT_EQ(readFile(path("back.bin")), readFile(path("in.bin")));
  EXPECT_EQ(files(), (std::vector<std::string>{"back.bin", "in.bin", "text.qtx"}));
}

TEST_F(QuiltraProgramTest, BadFilesFailWith1AndLeaveTheOutputAlone) {
  writeSample("in.bin");
  const std::string whole = readFile(path("in.bin"));
  writeFile("truncated.bin", whole.substr(0, whole.size() / 2));
  writeFile("empty", "");
  writeFile("random", std::string("\x01\xfe\x7f\x00\x99garbage\x10\x20", 14));
  writeFile("out", "kept");
  for (const char* bad : {"missing", "empty", "random", "truncated.bin"}) {
    for (const std::string& command :
         {std::string("convert ") + bad + " out --form text",
          std::string("modify ") + bad + " out --set '(0010,0010)=X'"}) {
      const Outcome result = run(command);
      EXPECT_EQ(result.status, 1) << command;
      EXPECT_EQ(result.err.rfind("in ", 0), 0u) << command << ": " << result.err;
      EXPECT_NE(result.err.find(" because of "), std::string::npos) << result.err;
    }
  }
  EXPECT_EQ(readFile(path("out")), "kept");
  EXPECT_EQ(files(),
            (std::vector<std::string>{"empty", "in.bin", "out", "random", "truncated.bin"}));
}

TEST_F(QuiltraProgramTest, ModifyLayersChangesByTagAndWritesTheFlatResult) {
  writeSample("in.bin");
  const std::string original = readFile(path("in.bin"));
  ASSERT_EQ(run("modify in.bin out.bin --set '(0010,0010)=Anonymous' --remove '(0010,0020)' "
                "--set '(0028,0010)=256'")
                .status,
            0);
  EXPECT_EQ(readFile(path("in.bin")), original);
  const auto changed = readBack("out.bin", false);
  EXPECT_EQ(changed->getTag(TagId(0x0010, 0x0010))->toString(), "Anonymous");
  EXPECT_FALSE(changed->hasTag(TagId(0x0010, 0x0020)));
  EXPECT_EQ(changed->getTag(TagId(0x0028, 0x0010))->toInt(0), 256);  // stored as US
  ASSERT_EQ(run("modify out.bin out.txt --form text --set '(0010,0010)='").status, 0);
  EXPECT_EQ(readBack("out.txt", true)->getTag(TagId(0x0010, 0x0010))->numberOfValues(), 0u);
  const Outcome noValue = run("modify in.bin bad.bin --set '(0010,0010)'");
  EXPECT_EQ(noValue.status, 1);
  EXPECT_EQ(noValue.err, "in quiltra modify because of expected KEY=VALUE, got (0010,0010)\n");
  EXPECT_FALSE(fs::exists(path("bad.bin")));
}

#ifdef QUILTRA_TEST_HAS_DICTIONARY_MODULE
TEST_F(QuiltraProgramTest, ModifyNamesAttributesThroughTheStandardDictionary) {
  writeSample("in.bin");
  ASSERT_EQ(run("modify in.bin out.bin --set PatientAge=042Y --remove Rows").status, 0);
  const auto changed = readBack("out.bin", false);
  const auto age = changed->getTag(TagId(0x0010, 0x1010));
  ASSERT_NE(age, nullptr);
  EXPECT_EQ(age->info().name(), "PatientAge");
  EXPECT_EQ(age->info().vr(), Quiltra::AS);
  EXPECT_EQ(age->toString(), "042Y");
  EXPECT_FALSE(changed->hasTag(TagId(0x0028, 0x0010)));
  const Outcome unknown = run("modify in.bin bad.bin --set NoSuchAttribute=1");
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.err,
            "in StandardDictionary::tagInfo because of unknown name NoSuchAttribute\n");
  EXPECT_FALSE(fs::exists(path("bad.bin")));
}
#endif
