// What files and volumes promise wherever they are. A world has `volumes()` and the `path(name)` of
// a file in an empty folder.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "media/volumes.h"

namespace omniset::test {

template <class World>
class VolumesContract : public ::testing::Test {
 protected:
  using Bytes = std::vector<std::uint8_t>;

  static Bytes content(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i * 31 >> 3);
    return bytes;
  }

  Volumes& volumes() { return world_.volumes(); }
  std::string path(const std::string& name) { return world_.path(name); }

  void write(const std::string& name, const Bytes& bytes, Volumes::Creation creation) {
    const DevicePtr file = volumes().createFile(path(name), creation);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->write(bytes), bytes.size());
    EXPECT_TRUE(file->close());
  }

  // All that one can read.
  Bytes read(const DevicePtr& file) {
    Bytes bytes;
    Bytes piece(100'000);
    while (file) {
      const auto count = file->read(piece);
      if (!count) ADD_FAILURE() << "a read failed";
      if (count.value_or(0) == 0) break;
      bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(*count));
    }
    return bytes;
  }

  World world_;
};

TYPED_TEST_SUITE_P(VolumesContract);

TYPED_TEST_P(VolumesContract, AFileHoldsWhatWasWritten) {
  const auto bytes = this->content(700'001);
  this->write("file", bytes, Volumes::Creation::kNew);
  const DevicePtr file = this->volumes().openFile(this->path("file"));
  EXPECT_EQ(this->read(file), bytes);
  EXPECT_TRUE(file->close());
}

TYPED_TEST_P(VolumesContract, AnEmptyFileIsAFile) {
  this->write("file", {}, Volumes::Creation::kNew);
  const DevicePtr file = this->volumes().openFile(this->path("file"));
  ASSERT_TRUE(file);
  EXPECT_TRUE(this->read(file).empty());
}

TYPED_TEST_P(VolumesContract, ANewFileIsNotMadeOverAnother) {
  this->write("file", this->content(10), Volumes::Creation::kNew);
  EXPECT_FALSE(this->volumes().createFile(this->path("file"), Volumes::Creation::kNew));
  EXPECT_EQ(this->read(this->volumes().openFile(this->path("file"))), this->content(10));
}

TYPED_TEST_P(VolumesContract, AFileThatIsOverwrittenHoldsNothingOfTheOld) {
  this->write("file", this->content(5000), Volumes::Creation::kNew);
  this->write("file", this->content(10), Volumes::Creation::kOverwrite);
  EXPECT_EQ(this->read(this->volumes().openFile(this->path("file"))), this->content(10));
}

TYPED_TEST_P(VolumesContract, AFileThatIsNotThereCannotBeRead) {
  const DevicePtr file = this->volumes().openFile(this->path("missing"));
  std::array<std::uint8_t, 10> into{};
  EXPECT_FALSE(file && file->read(into));
}

TYPED_TEST_P(VolumesContract, NoVolumeHasALetterThatIsNotThere) {
  EXPECT_FALSE(this->volumes().openVolume('Q'));
  EXPECT_FALSE(this->volumes().openPhysicalDisk(77));
}

REGISTER_TYPED_TEST_SUITE_P(VolumesContract, AFileHoldsWhatWasWritten, AnEmptyFileIsAFile,
                            ANewFileIsNotMadeOverAnother,
                            AFileThatIsOverwrittenHoldsNothingOfTheOld,
                            AFileThatIsNotThereCannotBeRead, NoVolumeHasALetterThatIsNotThere);

}  // namespace omniset::test
