// A store on a disk that fills up, and links in its folder.
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>

#include <filesystem>

#include "store_fixture.h"

namespace omniset::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

// No file may grow beyond that many bytes while this lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : signalBefore_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    signal(SIGXFSZ, signalBefore_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  sighandler_t signalBefore_;
  rlimit before_{};
};

using FullFolderStore = StoreFixture;
struct LinkedFolderStore : StoreFixture {
  TempFolder outside;
};

TEST_F(FullFolderStore, AWriteThatFailsIsToldAndTheFileDoesNotCount) {
  store.beginPreparation(false);
  const std::string content(3'000'000, 'x');
  store.openFile("a.bdl", static_cast<std::int32_t>(content.size()));
  std::string failure;
  {
    const FileSizeLimit limit(1 << 20);
    failure = failureOf([&] { write(content); });
  }
  EXPECT_EQ(failure, "Cannot write a.bdl");
  store.abandon();
  EXPECT_THAT(folder.names(), ElementsAre(".omniset-store"));
}

// The last bytes wait in a buffer until the file is closed.
TEST_F(FullFolderStore, ALastWriteThatFailsIsToldAndTheFileDoesNotCount) {
  store.beginPreparation(false);
  put("a.bdl", "old");
  store.openFile("a.bdl", (1 << 20) + 10);
  write(std::string(1 << 20, 'x'));
  std::string failure;
  {
    const FileSizeLimit limit(1 << 20);
    failure = failureOf([&] {
      write("0123456789");
      store.closeFile();
    });
  }
  EXPECT_EQ(failure, "Cannot write a.bdl");
  store.abandon();
  EXPECT_THAT(folder.names(), ElementsAre(".omniset-store", "a.bdl"));
  EXPECT_EQ(contentOf("a.bdl"), "old");
}

TEST_F(LinkedFolderStore, ALinkOfThatNameIsReplacedNotFollowed) {
  store.beginPreparation(false);
  const std::string elsewhere = outside.write("elsewhere", "precious");
  fs::create_symlink(elsewhere, joinPath(folder.path(), "a.bdl"));
  put("a.bdl", "new");
  EXPECT_EQ(readFile(elsewhere), "precious");
  EXPECT_EQ(contentOf("a.bdl"), "new");
}

TEST_F(LinkedFolderStore, ANewInstallationDeletesLinksNotWhatTheyLeadTo) {
  store.beginPreparation(false);
  const std::string elsewhere = outside.write("elsewhere", "precious");
  fs::create_symlink(elsewhere, joinPath(folder.path(), "a.bdl"));
  fs::create_directory_symlink(outside.path(), joinPath(folder.path(), "sub"));
  store.beginPreparation(false);
  EXPECT_EQ(readFile(elsewhere), "precious");
}

}  // namespace
}  // namespace omniset::test
