#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "core/error.h"
#include "core/temp_file.h"
#include "tests/contract/raised_text.h"
#include "tests/fakes/temp_folder.h"

namespace omniset::test {
namespace {

// Gives TMPDIR another value while it lives.
class TmpDir {
 public:
  explicit TmpDir(const char* value) {
    if (const char* before = getenv("TMPDIR")) before_ = before;
    setenv("TMPDIR", value, 1);
  }
  ~TmpDir() {
    if (before_) {
      setenv("TMPDIR", before_->c_str(), 1);
    } else {
      unsetenv("TMPDIR");
    }
  }
  TmpDir(const TmpDir&) = delete;
  TmpDir& operator=(const TmpDir&) = delete;

 private:
  std::optional<std::string> before_;
};

TEST(PosixTempFiles, FollowTmpdir) {
  const TempFolder folder;
  const TmpDir tmpDir(folder.path().c_str());
  const std::string path = SystemTempFiles().create("scr");
  EXPECT_TRUE(path.starts_with(folder.path() + "/scr")) << path;
}

TEST(PosixTempFiles, AreForTheirOwnerOnly) {
  const TempFolder folder;
  const TmpDir tmpDir(folder.path().c_str());
  struct stat status {};
  ASSERT_EQ(stat(SystemTempFiles().create("scr").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST(PosixTempFiles, EmptyTmpdirMeansTheUsualFolder) {
  const TmpDir tmpDir("");
  const std::string path = SystemTempFiles().create("scr");
  unlink(path.c_str());
  EXPECT_TRUE(path.starts_with("/tmp/scr")) << path;
}

TEST(PosixTempFiles, MissingFolderRaises) {
  const TempFolder folder;
  const TmpDir tmpDir((folder.path() + "/missing").c_str());
  EXPECT_EQ(raisedText<Error>([] { SystemTempFiles().create("scr"); }),
            "GetTempFileName: No such file or directory\nError code: 2");
}

}  // namespace
}  // namespace omniset::test
