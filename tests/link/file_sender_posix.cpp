// Files as only POSIX systems make them cheaply: sparse ones, and names with a backslash.
#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "core/error.h"
#include "link/file_sender.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/temp_folder.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {
namespace {

constexpr std::uintmax_t kLargest = std::numeric_limits<std::int32_t>::max();

TEST(FileSenderPosix, SizeBeyond31BitsIsRefused) {
  const SilentTrace silent;
  LinkFixture link;
  const TempFolder folder;
  const LinkConnection connection = boundConnection(1, 1);
  const std::string path = folder.write("huge", "");
  std::filesystem::resize_file(path, kLargest);
  EXPECT_EQ(FileSender(path, link.endpoint, connection).fileSize(), INT32_MAX);
  std::filesystem::resize_file(path, kLargest + 1);
  EXPECT_THROW(FileSender(path, link.endpoint, connection), Failure);
}

TEST(FileSenderPosix, BackslashInANameSeparatesFoldersForTheTarget) {
  const SilentTrace silent;
  LinkFixture link;
  const TempFolder folder;
  const LinkConnection connection = boundConnection(1, 1);
  FileSender sender(folder.write("dir\\system-2.9.bdl", "x"), link.endpoint, connection);
  sender.next(false);
  EXPECT_EQ(link.sent(0).payloadText(), "FILE\nsystem-2.9.bdl\n1\n");
}

TEST(FileSenderPosix, FolderCannotBeSent) {
  const SilentTrace silent;
  LinkFixture link;
  const TempFolder folder;
  const LinkConnection connection = boundConnection(1, 1);
  EXPECT_THROW(
      {
        FileSender sender(folder.path(), link.endpoint, connection);
        sender.next(true);
      },
      std::exception);
}

}  // namespace
}  // namespace omniset::test
