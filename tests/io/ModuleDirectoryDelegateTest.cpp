#include "support/QuiltraTestSupport.h"
#include "support/TemporaryFolder.h"
#include "support/TestDict.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

#include <quiltra/core/Version.h>
#include <quiltra/dataset/Dict.h>
#include <quiltra/io/ModuleDirectoryDelegate.h>

using Quiltra_Utils::ModuleDirectoryDelegate;
using QuiltraTest::expectQuiltraError;
namespace fs = std::filesystem;

namespace {

const std::string kTestModules = QUILTRA_TEST_MODULES;
const char kLoadModule[] = "ModuleDirectoryDelegate::loadModule";

std::string testModule(const std::string& name) {
  return kTestModules + "/" + name + ".so";
}

// A fresh folder under the system's temporary folder, removed with the fixture; no
// current dictionary before and after each test.
class ModuleDirectoryDelegateTest : public ::testing::Test {
 protected:
  void SetUp() override { QuiltraTest::TestDict::install(nullptr); }
  void TearDown() override { QuiltraTest::TestDict::install(nullptr); }

  // Links a test module into the folder under another name.
  void addModule(const std::string& module, const std::string& as) {
    fs::create_symlink(testModule(module), _folder.path() / as);
  }
  std::string writeFile(const std::string& name, const std::string& bytes) {
    std::ofstream(_folder.path() / name, std::ios::binary) << bytes;
    return (_folder.path() / name).string();
  }
  std::string folder() const { return _folder.path().string(); }

 private:
  QuiltraTest::TemporaryFolder _folder{"quiltra-modules"};
};

// The part of an exception description that a loader message follows.
bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

}  // namespace

TEST_F(ModuleDirectoryDelegateTest, DefaultDirectoryIsTheBuildTreesModuleFolder) {
  const fs::path expected = fs::weakly_canonical(QUILTRA_TEST_BUILD_MODULE_DIR);
  EXPECT_EQ(fs::weakly_canonical(ModuleDirectoryDelegate::defaultModuleDirectory()), expected);
  EXPECT_EQ(ModuleDirectoryDelegate().directory(),
            ModuleDirectoryDelegate::defaultModuleDirectory());
  EXPECT_EQ(ModuleDirectoryDelegate(folder()).directory(), folder());
}

TEST_F(ModuleDirectoryDelegateTest, RefusesMissingAndUnreadableFilesNamingThemAndTheLoaderError) {
  const std::string missing = folder() + "/missing.so";
  const std::string garbage = writeFile("garbage.so", "not a shared object at all");
  const std::string empty = writeFile("empty.so", "");
  for (const std::string& path : {missing, garbage, empty}) {
    try {
      ModuleDirectoryDelegate::loadModule(path);
      ADD_FAILURE() << path << " loaded";
    } catch (const Quiltra::Exception& error) {
      EXPECT_EQ(error.method(), kLoadModule);
      // "cannot load <path>: " and dlerror's text, which names the file again.
      const std::string start = "cannot load " + path + ": ";
      EXPECT_TRUE(startsWith(error.description(), start)) << error.description();
      EXPECT_NE(error.description().find(path, start.size()), std::string::npos)
          << error.description();
    }
  }
}

TEST_F(ModuleDirectoryDelegateTest, RefusesModulesWithoutEntryOfAnotherVersionOrCopy) {
  try {
    ModuleDirectoryDelegate::loadModule(testModule("no-entry"));
    ADD_FAILURE() << "no-entry loaded";
  } catch (const Quiltra::Exception& error) {
    EXPECT_EQ(error.method(), kLoadModule);
    const std::string start = "no module entry in " + testModule("no-entry") + ": ";
    EXPECT_TRUE(startsWith(error.description(), start)) << error.description();
    EXPECT_NE(error.description().find("quiltra_module_entry"), std::string::npos);
  }
  expectQuiltraError([] { ModuleDirectoryDelegate::loadModule(testModule("no-description")); },
                     kLoadModule, testModule("no-description") + " describes no registration");
  const std::string next = std::to_string(QUILTRA_VERSION_MAJOR + 1) + "." +
                           std::to_string(QUILTRA_VERSION_MINOR) + "." +
                           std::to_string(QUILTRA_VERSION_PATCH);
  expectQuiltraError([] { ModuleDirectoryDelegate::loadModule(testModule("other-version")); },
                     kLoadModule,
                     testModule("other-version") + " was built for Quiltra " + next + ", not " +
                         QUILTRA_VERSION_STRING);
  expectQuiltraError([] { ModuleDirectoryDelegate::loadModule(testModule("other-copy")); },
                     kLoadModule,
                     testModule("other-copy") +
                         " is linked against another copy of the Quiltra "
                         "library");
}

TEST_F(ModuleDirectoryDelegateTest, RefusesAMissingDirectory) {
  const std::string missing = folder() + "/absent";
  ModuleDirectoryDelegate delegate(missing);
  try {
    delegate.loadLibraries();
    ADD_FAILURE() << "loaded from " << missing;
  } catch (const Quiltra::Exception& error) {
    EXPECT_EQ(error.method(), "ModuleDirectoryDelegate::loadLibraries");
    const std::string start = "cannot read module directory " + missing + ": ";
    EXPECT_TRUE(startsWith(error.description(), start)) << error.description();
  }
}

TEST_F(ModuleDirectoryDelegateTest, EmptyDirectoryLoadsNothing) {
  ModuleDirectoryDelegate delegate(folder());
  EXPECT_EQ(Quiltra::Dict::singleton(&delegate), nullptr);
}

#ifdef QUILTRA_TEST_REGISTERING_MODULES

TEST_F(ModuleDirectoryDelegateTest, LoadsEverySharedObjectInNameOrderAndSkipsOtherFiles) {
  addModule("second", "b.so");
  addModule("first", "a.so");
  addModule("no-entry", "c.so.txt");                  // not a module: wrong extension
  fs::create_directory(fs::path(folder()) / "d.so");  // not a module: a folder
  writeFile("notes", "a module folder may hold other files");
  ModuleDirectoryDelegate delegate(folder());
  const auto dict = Quiltra::Dict::singleton(&delegate);
  ASSERT_NE(dict, nullptr);
  EXPECT_EQ(dict->syntaxName(Quiltra::IMPLICIT_LITTLE_ENDIAN), "second");  // b.so came last
}

TEST_F(ModuleDirectoryDelegateTest, StopsAtTheFirstBadModuleKeepingThoseBefore) {
  addModule("first", "a.so");
  addModule("no-entry", "b.so");
  addModule("second", "c.so");
  ModuleDirectoryDelegate delegate(folder());
  try {
    delegate.loadLibraries();
    ADD_FAILURE() << "b.so loaded";
  } catch (const Quiltra::Exception& error) {
    EXPECT_NE(error.description().find(folder() + "/b.so"), std::string::npos);
  }
  const auto dict = Quiltra::Dict::singleton(nullptr);
  ASSERT_NE(dict, nullptr);
  EXPECT_EQ(dict->syntaxName(Quiltra::IMPLICIT_LITTLE_ENDIAN), "first");
}

TEST_F(ModuleDirectoryDelegateTest, RegisterModuleMakesALoadedModulesClassesCurrentAgainByName) {
  addModule("first", "a.so");
  addModule("second", "b.so");
  ModuleDirectoryDelegate delegate(folder());
  ASSERT_EQ(Quiltra::Dict::singleton(&delegate)->syntaxName(Quiltra::IMPLICIT_LITTLE_ENDIAN),
            "second");
  const auto loaded = ModuleDirectoryDelegate::loadedModules();
  EXPECT_TRUE(std::is_sorted(loaded.begin(), loaded.end()));
  EXPECT_EQ(std::count(loaded.begin(), loaded.end(), "first"), 1);
  EXPECT_EQ(std::count(loaded.begin(), loaded.end(), "second"), 1);

  ModuleDirectoryDelegate::registerModule("first");
  EXPECT_EQ(Quiltra::Dict::singleton(nullptr)->syntaxName(Quiltra::IMPLICIT_LITTLE_ENDIAN),
            "first");
  ModuleDirectoryDelegate::registerModule("second");
  EXPECT_EQ(Quiltra::Dict::singleton(nullptr)->syntaxName(Quiltra::IMPLICIT_LITTLE_ENDIAN),
            "second");
  // A module refused at loading is not known by name.
  EXPECT_THROW(ModuleDirectoryDelegate::loadModule(testModule("other-version")),
               Quiltra::Exception);
  expectQuiltraError([] { ModuleDirectoryDelegate::registerModule("other version"); },
                     "ModuleDirectoryDelegate::registerModule",
                     "no module named other version is loaded");
  EXPECT_EQ(Quiltra::Dict::singleton(nullptr)->syntaxName(Quiltra::IMPLICIT_LITTLE_ENDIAN),
            "second");
}

#endif
