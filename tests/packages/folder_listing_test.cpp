#include "packages/folder_listing.h"

#include <gmock/gmock.h>

#include "core/path.h"
#include "tests/fakes/temp_folder.h"

namespace omniset::test {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(FolderListing, NamesThePackageFilesWithoutTheirFolder) {
  const TempFolder folder;
  folder.write("system-2.9.7.bdl", "");
  folder.write("routing.bdl", "");
  EXPECT_THAT(listPackageFiles(folder.path()),
              UnorderedElementsAre("system-2.9.7.bdl", "routing.bdl"));
}

TEST(FolderListing, OtherFilesAreLeftOut) {
  const TempFolder folder;
  folder.write("readme.txt", "");
  folder.write("bdl", "");
  folder.write("packagebdl", "");
  folder.write("x.bdl.txt", "");
  EXPECT_THAT(listPackageFiles(folder.path()), IsEmpty());
}

TEST(FolderListing, CaseOfTheExtensionDoesNotMatter) {
  const TempFolder folder;
  folder.write("UPPER.BDL", "");
  folder.write("mixed.BdL", "");
  EXPECT_THAT(listPackageFiles(folder.path()), UnorderedElementsAre("UPPER.BDL", "mixed.BdL"));
}

TEST(FolderListing, NameMayConsistOfTheExtensionAlone) {
  const TempFolder folder;
  folder.write(".bdl", "");
  EXPECT_THAT(listPackageFiles(folder.path()), UnorderedElementsAre(".bdl"));
}

TEST(FolderListing, FoldersWithinAreNotEntered) {
  const TempFolder folder;
  const std::string inner = joinPath(folder.path(), "inner");
  std::filesystem::create_directory(inner);
  folder.write(joinPath("inner", "x.bdl"), "");
  EXPECT_THAT(listPackageFiles(folder.path()), IsEmpty());
}

TEST(FolderListing, FolderThatCannotBeReadHasNone) {
  const TempFolder folder;
  EXPECT_THAT(listPackageFiles(joinPath(folder.path(), "missing")), IsEmpty());
  EXPECT_THAT(listPackageFiles(folder.write("file", "")), IsEmpty());
}

}  // namespace
}  // namespace omniset::test
