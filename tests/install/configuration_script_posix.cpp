// Failures of reading and writing, which need a device that is always full and a folder that opens
// like a file. The temporary file is a link in the test's folder: only the link is ever deleted.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "core/error.h"
#include "core/ipv4_address.h"
#include "install/configuration_script.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/temp_folder.h"

namespace omniset::test {
namespace {

namespace fs = std::filesystem;

class FullTempFiles : public TempFiles {
 public:
  explicit FullTempFiles(const TempFolder& folder) : link_(fs::path(folder.path()) / "scrfull") {}
  std::string create(const char*) override {
    fs::create_symlink("/dev/full", link_);
    return link_.string();
  }

 private:
  fs::path link_;
};

struct BuildScriptPosix : ::testing::Test {
  std::string failureOf(const RouterRecord& record, TempFiles& files) {
    try {
      buildScript(record, files);
    } catch (const Failure& e) {
      EXPECT_THAT(folder.names(), ::testing::IsEmpty());
      EXPECT_TRUE(fs::is_character_file("/dev/full"));
      return e.what();
    }
    return "none";
  }

  SilentTrace silent;
  TempFolder folder;
  TempFolder own;
  FullTempFiles full{folder};
};

TEST_F(BuildScriptPosix, GeneratedScriptThatCannotBeWrittenFails) {
  RouterRecord record;
  record.address = ipv4(192, 168, 88, 1);
  record.netmaskLength = 24;
  EXPECT_EQ(failureOf(record, full), "Could not write script");
}

TEST_F(BuildScriptPosix, CopyThatCannotBeWrittenFails) {
  RouterRecord record;
  record.useOwnScript = true;
  record.scriptPath = own.write("own.scr", "/system identity print\n");
  EXPECT_EQ(failureOf(record, full), "Could not write file");
}

TEST_F(BuildScriptPosix, OwnScriptThatCannotBeReadFails) {
  RouterRecord record;
  record.useOwnScript = true;
  record.scriptPath = own.path();
  FakeTempFiles tempFiles(folder);
  EXPECT_EQ(failureOf(record, tempFiles), "Could not read script");
}

TEST_F(BuildScriptPosix, EmptyScriptNeedsNoRoom) {
  const std::string path = buildScript(RouterRecord{}, full);
  EXPECT_TRUE(fs::is_symlink(path));
}

}  // namespace
}  // namespace omniset::test
