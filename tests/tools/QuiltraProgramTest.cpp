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

const std::string kDicomFiles = QUILTRA_DICOM_TEST_FILES;

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

// Standard error without the library's warnings ("quiltra: warning: ..." lines), which
// may precede a failure's text.
std::string withoutWarnings(const std::string& err) {
  std::istringstream lines(err);
  std::string kept;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("quiltra: warning: ", 0) != 0) kept += line + "\n";
  }
  return kept;
}

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

  // A small message: PatientName, PatientID and Rows in UTF-8, and a sequence with one
  // item, stored in binary form.
  std::shared_ptr<Message> sample(
      Quiltra::TransferSyntax syntax = Quiltra::EXPLICIT_LITTLE_ENDIAN) {
    auto tree = std::make_shared<Tree>();
    add(*tree, TagId(0x0010, 0x0010), "PatientName", Quiltra::PN, "Doe^Jane");
    add(*tree, TagId(0x0010, 0x0020), "PatientID", Quiltra::LO, "QA-0042");
    add(*tree, TagId(0x0028, 0x0010), "Rows", Quiltra::US, "512");
    auto item = std::make_shared<Tree>();
    add(*item, TagId(0x0008, 0x1155), "ReferencedSOPInstanceUID", Quiltra::UI, "1.2.3.4");
    auto sequence = std::make_shared<Quiltra::Tag>(
        Quiltra::TagInfo(TagId(0x0008, 0x1140), "ReferencedImageSequence", Quiltra::SQ, {1, 1}));
    sequence->addSequenceItem(item);
    tree->addTag(sequence);
    auto message = std::make_shared<Message>("ISO_IR 192", syntax);
    message->setTags(tree);
    return message;
  }
  std::string writeSample(const std::string& name,
                          Quiltra::TransferSyntax syntax = Quiltra::EXPLICIT_LITTLE_ENDIAN) {
    Quiltra_Serialization::FileSink sink(path(name));
    sample(syntax)->serializeX(sink);
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
  static bool detectText(const std::string& file) {
    const std::string bytes = readFile(file);
    return !bytes.empty() &&
           bytes.find_first_not_of("()*+,-./0123456789:;<=>?") == std::string::npos;
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
  for (const char* help : {"--help", "demo --help", "convert --help", "modify --help",
                           "dump --help", "charset --help", "uid --help"}) {
    const Outcome result = run(help);
    EXPECT_EQ(result.status, 0) << help;
    EXPECT_NE(result.out.find("Usage: quiltra"), std::string::npos) << help;
  }
  writeSample("in.bin");
  for (const char* usage :
       {"", "frobnicate", "convert in.bin", "convert in.bin out --form xml", "convert in.bin out",
        "modify in.bin out --bogus", "convert in.bin out --form text extra",
        "convert in.bin out --syntax jpeg", "convert in.bin out --form text --syntax deflated",
        "modify in.bin out --form binary --syntax implicit-le", "dump", "charset in.bin out",
        "charset in.bin out --to KOI8-R", "charset in.bin --to 'ISO_IR 192'", "uid 1.2 3",
        "uid --count 0 1.2 3 4", "uid --count many 1.2 3 4", "demo extra"}) {
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
  const std::string dicom = readFile(kDicomFiles + "/explicit-le.dcm");
  writeFile("truncated.dcm", dicom.substr(0, dicom.size() - 100));
  writeFile("preamble.dcm", dicom.substr(0, 132));  // "DICM" and nothing after it
  for (const char* bad :
       {"missing", "empty", "random", "truncated.bin", "truncated.dcm", "preamble.dcm"}) {
    for (const std::string& command :
         {std::string("convert ") + bad + " out --form text",
          std::string("convert ") + bad + " out --syntax deflated",
          std::string("modify ") + bad + " out --set '(0010,0010)=X'",
          std::string("charset ") + bad + " out --to 'ISO_IR 192'", std::string("dump ") + bad}) {
      const Outcome result = run(command);
      EXPECT_EQ(result.status, 1) << command;
      const std::string failure = withoutWarnings(result.err);
      EXPECT_EQ(failure.rfind("in ", 0), 0u) << command << ": " << result.err;
      EXPECT_NE(failure.find(" because of "), std::string::npos) << result.err;
      EXPECT_NE(failure.find(bad), std::string::npos) << command << ": " << result.err;
      if (command.rfind("dump", 0) == 0) {
        EXPECT_EQ(result.out, "") << command;
      }
    }
  }
  EXPECT_EQ(readFile(path("out")), "kept");
  EXPECT_EQ(files(), (std::vector<std::string>{"empty", "in.bin", "out", "preamble.dcm", "random",
                                               "truncated.bin", "truncated.dcm"}));
}

TEST_F(QuiltraProgramTest, FailedWritesLeaveNoFileBehind) {
  writeSample("big-endian.bin", Quiltra::IMPLICIT_BIG_ENDIAN);
  writeFile("out.dcm", "kept");
  const Outcome unwritable = run("convert big-endian.bin out.dcm --form dicom");
  EXPECT_EQ(unwritable.status, 1);
#ifdef QUILTRA_TEST_HAS_MODULES
  // A syntax that DICOM files cannot carry: the writer fails on the temporary file.
  EXPECT_NE(unwritable.err.find("in DicomFile::write because of "), std::string::npos)
      << unwritable.err;
#endif
  EXPECT_EQ(readFile(path("out.dcm")), "kept");
  const Outcome noFolder = run("convert big-endian.bin absent/out.bin --form binary");
  EXPECT_EQ(noFolder.status, 1);
  EXPECT_NE(noFolder.err.find("cannot create a file beside absent/out.bin"), std::string::npos)
      << noFolder.err;
  EXPECT_EQ(files(), (std::vector<std::string>{"big-endian.bin", "out.dcm"}));
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

#ifdef QUILTRA_TEST_HAS_MODULES
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

TEST_F(QuiltraProgramTest, DumpPrintsBothStoredFormsOfTheDemoAlikeAndItsDicomFile) {
  const Outcome demo = run("demo --out demo");
  ASSERT_EQ(demo.status, 0) << demo.err;
  EXPECT_NE(demo.out.find("study.bin (", 0), std::string::npos);
  EXPECT_EQ(demo.out.find("DIFFERENT"), std::string::npos) << demo.out;
  EXPECT_NE(demo.out.find("data set read back: identical"), std::string::npos) << demo.out;
  const Outcome binary = run("dump demo/study.bin");
  const Outcome text = run("dump demo/study.qtx");
  ASSERT_EQ(binary.status, 0) << binary.err;
  ASSERT_EQ(text.status, 0) << text.err;
  EXPECT_EQ(binary.out.rfind("Transfer Syntax: 1.2.840.10008.1.2.1 EXPLICIT_LITTLE_ENDIAN\n"
                             "Specific Character Set: ISO_IR 192\n",
                             0),
            0u)
      << binary.out;
  EXPECT_NE(
      binary.out.find("(0010,0010) VR: PN VM: 1-1 PatientName\n   1: 'Anonymis\xC3\xA9^Patient'"),
      std::string::npos);
  EXPECT_EQ(binary.out, text.out);
  const Outcome dicom = run("dump demo/study.dcm");
  ASSERT_EQ(dicom.status, 0) << dicom.err;
  EXPECT_NE(
      dicom.out.find("(0002,0010) VR: UI VM: 1-1 TransferSyntaxUID\n   1: '1.2.840.10008.1.2.1'"),
      std::string::npos);
  EXPECT_NE(dicom.out.find("(0041,1001) VR: US VM: 0-0 - non std. tag -"), std::string::npos);
  const Outcome both = run("dump demo/study.bin demo/study.qtx");
  EXPECT_EQ(both.out,
            "==> demo/study.bin <==\n" + binary.out + "==> demo/study.qtx <==\n" + text.out);
}

// The dump's lines below the meta group: what two encodings of the same data set share.
std::string dataSetLines(const std::string& dump) {
  std::istringstream lines(dump);
  std::string kept;
  bool meta = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("Transfer Syntax: ", 0) == 0) continue;
    if (line[0] == '(') meta = line.rfind("(0002,", 0) == 0;
    if (!meta) kept += line + "\n";
  }
  return kept;
}

TEST_F(QuiltraProgramTest, ConvertAcrossTheFourSyntaxesKeepsTheElements) {
  writeSample("in.bin");
  const std::pair<const char*, const char*> syntaxes[] = {{"implicit-le", "1.2.840.10008.1.2"},
                                                          {"explicit-le", "1.2.840.10008.1.2.1"},
                                                          {"explicit-be", "1.2.840.10008.1.2.2"},
                                                          {"deflated", "1.2.840.10008.1.2.1.99"}};
  std::string expected;
  std::string previous = "in.bin";
  for (const auto& [name, uid] : syntaxes) {
    const std::string out = std::string(name) + ".dcm";
    // From the binary form, and from the DICOM file of the syntax before.
    for (const std::string& from : {std::string("in.bin"), previous}) {
      ASSERT_EQ(run("convert " + from + " " + out + " --syntax " + name).status, 0) << out;
      EXPECT_EQ(readFile(path(out)).substr(128, 4), "DICM");
      const Outcome dump = run("dump " + out);
      ASSERT_EQ(dump.status, 0) << dump.err;
      EXPECT_NE(dump.out.find("TransferSyntaxUID\n   1: '" + std::string(uid) + "'"),
                std::string::npos)
          << dump.out;
      if (expected.empty()) expected = dataSetLines(dump.out);
      EXPECT_EQ(dataSetLines(dump.out), expected) << name << " from " << from;
    }
    previous = out;
  }
  EXPECT_NE(expected.find("   1: 'Doe^Jane'\n"), std::string::npos) << expected;
  EXPECT_NE(expected.find("(0008,1140) VR: SQ"), std::string::npos) << expected;
  EXPECT_NE(expected.find("         1: '1.2.3.4'\n"), std::string::npos) << expected;
  // Back to the binary form: the elements (and the meta group the files gained).
  ASSERT_EQ(run("convert deflated.dcm back.bin --form binary").status, 0);
  Message back;
  Quiltra_Serialization::FileSource source(path("back.bin"));
  back.deserializeX(source);
  EXPECT_EQ(back.syntax(), Quiltra::DEFLATED_EXPLICIT_LITTLE_ENDIAN);
  EXPECT_EQ(back.tags()->getTag(TagId(0x0010, 0x0010))->toString(), "Doe^Jane");
  EXPECT_EQ(back.tags()->getTag(TagId(0x0008, 0x1140))->numberOfSequenceItems(), 1u);
}

TEST_F(QuiltraProgramTest, DumpsDicomFilesWithAndWithoutMetaInformation) {
  for (const char* file : {"explicit-le.dcm", "no-meta-implicit.dcm", "deflated.dcm"}) {
    const Outcome dump = run("dump '" + kDicomFiles + "/" + file + "'");
    ASSERT_EQ(dump.status, 0) << file << dump.err;
    EXPECT_NE(dump.out.find("Specific Character Set: ISO_IR 100\n"), std::string::npos) << file;
    EXPECT_NE(dump.out.find("(0008,1030) VR: LO VM: 1-1 StudyDescription\n   1: 'Quiltra sample'"),
              std::string::npos)
        << file << dump.out;
  }
}

TEST_F(QuiltraProgramTest, ModifyAndCharsetRewriteDicomFilesAsDicomFiles) {
  const std::string input = kDicomFiles + "/explicit-le.dcm";
  const std::string original = readFile(input);
  ASSERT_EQ(run("modify '" + input + "' changed.dcm --set StudyDescription=Changed").status, 0);
  EXPECT_EQ(readFile(input), original);
  ASSERT_EQ(run("charset changed.dcm utf8.dcm --to 'ISO_IR 192'").status, 0);
  EXPECT_EQ(readFile(path("utf8.dcm")).substr(128, 4), "DICM");
  const Outcome dump = run("dump utf8.dcm");
  ASSERT_EQ(dump.status, 0) << dump.err;
  EXPECT_NE(dump.out.find("Specific Character Set: ISO_IR 192\n"), std::string::npos);
  EXPECT_NE(dump.out.find("(0008,0005) VR: CS VM: 1-4294967295 SpecificCharacterSet\n"
                          "   1: 'ISO_IR 192'"),
            std::string::npos);
  EXPECT_NE(dump.out.find("   1: 'Changed'"), std::string::npos);
  EXPECT_EQ(files(), (std::vector<std::string>{"changed.dcm", "utf8.dcm"}));
}
#endif

TEST_F(QuiltraProgramTest, CharsetConvertsTheTextsAndNamesTheNewSet) {
  auto tree = std::make_shared<Tree>();
  add(*tree, TagId(0x0008, 0x0005), "SpecificCharacterSet", Quiltra::CS, "ISO_IR 100");
  add(*tree, TagId(0x0010, 0x0010), "PatientName", Quiltra::PN, "M\xFCller^J\xE9r\xF4me");
  Message latin1("ISO_IR 100", Quiltra::EXPLICIT_LITTLE_ENDIAN);
  latin1.setTags(tree);
  {
    Quiltra_Serialization::FileSink sink(path("latin1.bin"));
    latin1.serializeX(sink);
  }
  ASSERT_EQ(run("charset latin1.bin utf8.qtx --form text --to 'ISO_IR 192'").status, 0);
  const auto converted = readBack("utf8.qtx", true);
  EXPECT_EQ(converted->getTag(TagId(0x0010, 0x0010))->toString(),
            "M\xC3\xBCller^J\xC3\xA9r\xC3\xB4me");
  EXPECT_EQ(converted->getTag(TagId(0x0008, 0x0005))->toString(), "ISO_IR 192");
  // Back to Latin-1, in the form read (text).
  ASSERT_EQ(run("charset utf8.qtx back.qtx --to 'ISO_IR 100'").status, 0);
  EXPECT_EQ(detectText(path("back.qtx")), true);
}

TEST_F(QuiltraProgramTest, UidPrintsDistinctIdentifiersUnderTheGivenParts) {
  const Outcome result = run("uid --count 3 1.2.3 4 5");
  if (result.status == 1) {  // a machine without an Ethernet interface
    EXPECT_EQ(result.err, "in Quiltra_UIDGenerator::getMac because of CANNOT GET MAC\n");
    return;
  }
  ASSERT_EQ(result.status, 0) << result.err;
  std::istringstream lines(result.out);
  std::vector<std::string> uids;
  for (std::string line; std::getline(lines, line);) uids.push_back(line);
  ASSERT_EQ(uids.size(), 3u) << result.out;
  for (const std::string& uid : uids) {
    EXPECT_EQ(uid.rfind("1.2.3.4.", 0), 0u) << uid;
    EXPECT_LE(uid.size(), 64u) << uid;
  }
  EXPECT_NE(uids[0], uids[1]);
  EXPECT_NE(uids[1], uids[2]);
}
