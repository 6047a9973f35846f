#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "expect_bad_file.h"
#include "packages/package_reader.h"
#include "tests/fakes/temp_folder.h"
#include "tests/tools/bdl_builder.h"

namespace omniset::test {
namespace {

class FileReader : public testing::Test {
 protected:
  ~FileReader() override {
    if (file_) std::fclose(file_);
  }

  std::FILE* open(const std::string& content) {
    file_ = std::fopen(folder_.write("x.bdl", content).c_str(), "rb");
    return file_;
  }

  static std::string readText(GenericReader& reader, std::size_t count) {
    std::string text(count, '?');
    reader.read(reinterpret_cast<std::uint8_t*>(text.data()), count);
    return text;
  }

  TempFolder folder_;
  std::FILE* file_ = nullptr;
};

TEST_F(FileReader, WalksTheSectionsOfAFile) {
  Reader reader(kPackageMagic,
                open(bdlFile(bdlSection(1, "ab\r\n\x1A") +
                             bdlSection(4, std::string(100'000, 'x')) + bdlSection(2, "text"))));
  reader.want(1);
  reader.want(2);
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(readText(reader, 5), "ab\r\n\x1A");
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(readText(reader, 4), "text");
  EXPECT_FALSE(reader.nextSection());
}

TEST_F(FileReader, LeavesTheFileOpenForItsOwner) {
  std::FILE* file = open(bdlFile(""));
  {
    Reader reader(kPackageMagic, file);
    EXPECT_FALSE(reader.nextSection());
  }
  EXPECT_EQ(std::ftell(file), 8);
}

TEST_F(FileReader, IncompleteItemIsAReadError) {
  Reader reader(kPackageMagic, open("\x1E\xF1\xD0"));
  EXPECT_BAD_FILE(reader.nextSection(), "read error");
}

TEST_F(FileReader, SectionCutOffByTheEndOfTheFileIsAReadErrorWhenPassedOver) {
  Reader reader(kPackageMagic,
                open(bdlFile(bdlSection(1, "") + bdlSection(4, "cut", 1000), 6 + 1006 + 6)));
  reader.want(1);
  ASSERT_TRUE(reader.nextSection());
  EXPECT_BAD_FILE(reader.nextSection(), "read error");
}

TEST_F(FileReader, SkippingFourGigabytesThatAreNotThereIsAReadError) {
  Reader reader(kPackageMagic,
                open(bdlFile(bdlSection(1, "") + bdlSection(4, "", 0xFFFFFF00), 0xFFFFFFFF)));
  reader.want(1);
  ASSERT_TRUE(reader.nextSection());
  EXPECT_BAD_FILE(reader.nextSection(), "read error");
}

TEST_F(FileReader, NoImageFollowsAFileThatEndsBeforeItsLength) {
  Reader reader(kPackageMagic, open(bdlFile("", 0xFFFFFFFF)));
  EXPECT_FALSE(reader.nextImage());
}

TEST_F(FileReader, NextImageFindsASecondPackageInTheSameFile) {
  const std::string second = bdlFile(bdlSection(2, "text"));
  Reader reader(kPackageMagic, open(bdlFile(bdlSection(1, "abc")) + second));
  reader.want(2);
  EXPECT_FALSE(reader.nextSection());
  ASSERT_TRUE(reader.nextImage());
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(readText(reader, 4), "text");
}

}  // namespace
}  // namespace omniset::test
