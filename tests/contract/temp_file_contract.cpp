#include "core/temp_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/fakes/temp_folder.h"

namespace omniset::test {
namespace {

namespace fs = std::filesystem;

struct SystemFiles {
  SystemTempFiles files;
  fs::path folder() const { return fs::temp_directory_path(); }
};

struct FakeFiles {
  TempFolder owner;
  FakeTempFiles files{owner};
  fs::path folder() const { return owner.path(); }
};

template <class Files>
class TempFilesContract : public ::testing::Test {
 protected:
  ~TempFilesContract() override {
    for (const fs::path& path : created_) fs::remove(path);
  }
  fs::path create() {
    created_.emplace_back(world_.files.create("scr"));
    return created_.back();
  }

  Files world_;

 private:
  std::vector<fs::path> created_;
};

using AllFiles = ::testing::Types<SystemFiles, FakeFiles>;
TYPED_TEST_SUITE(TempFilesContract, AllFiles);

TYPED_TEST(TempFilesContract, CreatesAnEmptyFile) {
  const fs::path path = this->create();
  EXPECT_TRUE(fs::is_regular_file(path)) << path;
  EXPECT_EQ(fs::file_size(path), 0u);
}

TYPED_TEST(TempFilesContract, NameBeginsWithThePrefix) {
  EXPECT_EQ(this->create().filename().string().substr(0, 3), "scr");
}

TYPED_TEST(TempFilesContract, LiesInTheFolderForTemporaryFiles) {
  const fs::path path = this->create();
  EXPECT_EQ(path, (this->world_.folder() / path.filename()).make_preferred());
}

TYPED_TEST(TempFilesContract, NoTwoAreTheSame) {
  const fs::path first = this->create();
  const fs::path second = this->create();
  EXPECT_NE(first, second);
  EXPECT_TRUE(fs::exists(first));
}

TYPED_TEST(TempFilesContract, CanBeWrittenReadAndDeleted) {
  const fs::path path = this->create();
  std::ofstream(path, std::ios::binary) << "# script";
  EXPECT_EQ(readFile(path.string()), "# script");
  EXPECT_TRUE(fs::remove(path));
}

}  // namespace
}  // namespace omniset::test
