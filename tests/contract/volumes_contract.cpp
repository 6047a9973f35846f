#include "tests/contract/volumes_contract.h"

#include "core/path.h"
#include "tests/fakes/fake_volumes.h"
#include "tests/fakes/temp_folder.h"

namespace omniset::test {
namespace {

class SystemFolder {
 public:
  Volumes& volumes() { return *volumes_; }
  std::string path(const std::string& name) { return joinPath(folder_.path(), name); }

 private:
  TempFolder folder_;
  std::unique_ptr<Volumes> volumes_ = makeSystemVolumes();
};

class FakeFolder {
 public:
  FakeFolder() { volumes_.drives['E']; }
  Volumes& volumes() { return volumes_; }
  std::string path(const std::string& name) { return "E:\\" + name; }

 private:
  FakeVolumes volumes_;
};

using Folders = ::testing::Types<SystemFolder, FakeFolder>;
INSTANTIATE_TYPED_TEST_SUITE_P(Folders, VolumesContract, Folders);

using ReadableFolder = VolumesContract<SystemFolder>;

TEST_F(ReadableFolder, TellsTheSizeOfAFileWithoutReadingIt) {
  write("file", content(12'345), Volumes::Creation::kNew);
  const DevicePtr file = volumes().openWithoutAccess(path("file"));
  ASSERT_TRUE(file);
  EXPECT_EQ(file->size(), 12'345u);
  EXPECT_TRUE(file->close());
  EXPECT_FALSE(volumes().openWithoutAccess(path("missing")));
}

// Sizes around those of a sector and of the pieces in which it is read.
TEST_F(ReadableFolder, ReadsWhatIsOnTheMediumToItsEnd) {
  for (const std::size_t size : {0, 1, 511, 512, 262'143, 262'144, 262'145, 600'000}) {
    write("file", content(size), Volumes::Creation::kOverwrite);
    EXPECT_EQ(read(volumes().openWritten(path("file"))), content(size)) << size;
  }
}

TEST_F(ReadableFolder, MovesToWhereItIsToldAndFailsOnWhatItCannot) {
  write("file", content(1000), Volumes::Creation::kNew);
  const DevicePtr file = volumes().openFile(path("file"));
  EXPECT_TRUE(file->seek(990));
  EXPECT_EQ(read(file).size(), 10u);
  EXPECT_FALSE(file->write(content(1)));
}

}  // namespace
}  // namespace omniset::test
