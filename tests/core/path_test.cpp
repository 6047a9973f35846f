#include "core/path.h"

#include <gtest/gtest.h>

#include "tests/fakes/temp_folder.h"

namespace omniset::test {
namespace {

TEST(JoinPath, NamesAFileOfTheFolder) {
  const TempFolder folder;
  folder.write("system.bdl", "content");
  EXPECT_EQ(readFile(joinPath(folder.path(), "system.bdl")), "content");
}

TEST(JoinPath, PutsOneSeparatorBetween) {
  const std::string path = joinPath("folder", "name");
  EXPECT_EQ(path.size(), 11u);
  EXPECT_TRUE(path.starts_with("folder"));
  EXPECT_TRUE(path.ends_with("name"));
}

}  // namespace
}  // namespace omniset::test
