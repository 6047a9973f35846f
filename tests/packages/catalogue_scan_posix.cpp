#include <sys/stat.h>

#include <filesystem>
#include <iterator>

#include "catalogue_fixture.h"

namespace omniset::test {
namespace {

using CatalogueScanPosix = CatalogueTest;

TEST_F(CatalogueScanPosix, FolderNamedLikeAPackageIsTracedAndLeftOut) {
  std::filesystem::create_directory(folder.path() + "/folder.bdl");
  write("system.bdl", {.name = "system"});
  catalogue.scan(folder.path());
  EXPECT_EQ(traced.text(), "EXC loading packages: read error\n");
  EXPECT_EQ(catalogue.count(), 1);
}

TEST_F(CatalogueScanPosix, PipeNamedLikeAPackageIsNotOpened) {
  ASSERT_EQ(mkfifo((folder.path() + "/pipe.bdl").c_str(), 0600), 0);
  write("system.bdl", {.name = "system"});
  catalogue.scan(folder.path());
  EXPECT_EQ(traced.text(), "");
  EXPECT_EQ(catalogue.count(), 1);
}

TEST_F(CatalogueScanPosix, FileBeyondTwoGigabytesCountsAsNoSize) {
  write("huge.bdl", {.name = "huge"});
  std::filesystem::resize_file(folder.path() + "/huge.bdl", 0x80000000u);
  write("large.bdl", {.name = "large"});
  std::filesystem::resize_file(folder.path() + "/large.bdl", 0x7FFFFFFFu);
  catalogue.scan(folder.path());
  EXPECT_EQ(catalogue.count(), 2);
  EXPECT_EQ(catalogue.sizeOf("huge.bdl"), 0);
  EXPECT_EQ(catalogue.sizeOf("large.bdl"), 0x7FFFFFFF);
}

TEST_F(CatalogueScanPosix, NoFileStaysOpenWhateverItHolds) {
  const auto countOpen = [] {
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return std::distance(begin(open), end(open));
  };
  const std::string header = bdlPackageSection("x", 1);
  write("whole.bdl", {.name = "whole"});
  folder.write("ignored.bdl", bdlFile(bdlDescriptionSection("Text")));
  folder.write("halfway.bdl", bdlFile(header));
  folder.write("malformed.bdl", bdlFile(header + "tail"));
  folder.write("empty-text.bdl", bdlFile(header + bdlSection(2, "")));
  const auto before = countOpen();
  catalogue.scan(folder.path());
  EXPECT_EQ(countOpen(), before);
  EXPECT_EQ(catalogue.count(), 1);
}

}  // namespace
}  // namespace omniset::test
