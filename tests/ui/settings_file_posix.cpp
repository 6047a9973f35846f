// The store of settings that is one file.
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <filesystem>

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/temp_folder.h"
#include "ui/registry.h"
#include "ui/registry_keys_posix.h"

namespace omniset::test {
namespace {

namespace fs = std::filesystem;

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr uid_t kNobody = 65'534;

class SettingsFileTest : public ::testing::Test {
 protected:
  void store(const std::string& name, std::int32_t value) {
    Registry(store_, "Key").setInteger(name, value);
  }
  std::int32_t stored(const std::string& name) {
    return Registry(store_, "Key").getInteger(name, -1);
  }

  TempFolder folder_;
  std::string path_ = folder_.path() + "/settings.json";
  FileRegistry store_{path_};
};

TEST_F(SettingsFileTest, OpeningCreatesFolderAndFile) {
  const std::string path = folder_.path() + "/a/b/settings.json";
  FileRegistry store(path);
  const Registry key(store, "Key");
  EXPECT_EQ(readFile(path), "{\n  \"Key\": {}\n}\n");
}

TEST_F(SettingsFileTest, IsForItsOwnerOnly) {
  store("n", 1);
  for (const std::string& name : folder_.names()) {
    struct stat status {};
    ASSERT_EQ(stat((folder_.path() + "/" + name).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u) << name;
  }
  EXPECT_THAT(folder_.names(), ElementsAre("settings.json", "settings.json.lock"));
}

TEST_F(SettingsFileTest, KeepsTheFirstSpellingOfNames) {
  store("Previous NetMask", 24);
  Registry(store_, "KEY").setInteger("previous netmask", 25);
  EXPECT_EQ(readFile(path_), "{\n  \"Key\": {\n    \"Previous NetMask\": 25\n  }\n}\n");
}

TEST_F(SettingsFileTest, ReadsWhatAPersonWrote) {
  folder_.write("settings.json", R"({"key": {"N": 7, "s": "text"}})");
  EXPECT_EQ(stored("n"), 7);
  EXPECT_EQ(Registry(store_, "Key").getString("S", ""), "text");
}

TEST_F(SettingsFileTest, LeftoverOfAnInterruptedChangeIsNoSetting) {
  store("n", 1);
  folder_.write("settings.json.new", "{\"Key\": {\"n\": 2");
  EXPECT_EQ(stored("n"), 1);
  store("n", 3);
  EXPECT_EQ(stored("n"), 3);
  EXPECT_THAT(folder_.names(), ElementsAre("settings.json", "settings.json.lock"));
}

// Bounds the size of files that this process writes while it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  sighandler_t handler_;
};

TEST_F(SettingsFileTest, ChangeThatCannotBeWrittenWholeLeavesTheFile) {
  store("n", 1);
  const std::string before = readFile(path_);
  std::string text;
  {
    const FileSizeLimit limit(before.size());
    text = raisedText<Error>([&] { store("another", 2); });
  }
  EXPECT_EQ(text, "int RegSetValueEx: File too large\nError code: 27");
  EXPECT_EQ(readFile(path_), before);
  EXPECT_THAT(folder_.names(), ElementsAre("settings.json", "settings.json.lock"));
}

TEST_F(SettingsFileTest, DamagedFileIsEmptyAndKept) {
  const CapturedTrace trace;
  folder_.write("settings.json", "{\"Key\": {\"n\": 1");
  EXPECT_EQ(stored("n"), -1);
  EXPECT_TRUE(trace.contains("settings cannot be used: " + path_ + "\n")) << trace.text();
  EXPECT_TRUE(trace.contains("settings kept as: " + path_ + ".damaged\n")) << trace.text();
  EXPECT_EQ(readFile(path_ + ".damaged"), "{\"Key\": {\"n\": 1");
  store("n", 2);
  EXPECT_EQ(stored("n"), 2);
}

TEST_F(SettingsFileTest, FileDamagedWhileAKeyIsOpenIsEmptyAndKept) {
  const SilentTrace silence;
  Registry key(store_, "Key");
  key.setInteger("n", 1);
  folder_.write("settings.json", "damage");
  EXPECT_EQ(key.getInteger("n", -1), -1);
  EXPECT_THAT(key.valueNames(), IsEmpty());
  EXPECT_EQ(readFile(path_), "damage");
  key.setInteger("m", 2);
  EXPECT_THAT(key.valueNames(), ElementsAre("m"));
  EXPECT_EQ(readFile(path_ + ".damaged"), "damage");
}

TEST_F(SettingsFileTest, WhatIsNoFileIsPutAside) {
  const SilentTrace silence;
  fs::create_directory(path_);
  store("n", 1);
  ASSERT_EQ(mkfifo((folder_.path() + "/pipe.json").c_str(), 0600), 0);
  FileRegistry pipe(folder_.path() + "/pipe.json");
  Registry(pipe, "Key").setInteger("n", 2);
  EXPECT_EQ(stored("n"), 1);
  EXPECT_EQ(Registry(pipe, "Key").getInteger("n", -1), 2);
}

TEST_F(SettingsFileTest, HugeFileIsPutAside) {
  const SilentTrace silence;
  folder_.write("settings.json", "{}" + std::string(17 << 20, ' '));
  EXPECT_EQ(stored("n"), -1);
  EXPECT_TRUE(fs::exists(path_ + ".damaged"));
}

// Acts as a user without rights, if this process may, while it lives.
class AsNobody {
 public:
  explicit AsNobody(const std::string& folder) {
    if (geteuid() != 0) return;
    EXPECT_EQ(chown(folder.c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(seteuid(kNobody), 0);
  }
  ~AsNobody() { EXPECT_EQ(seteuid(getuid()), 0); }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
};

TEST_F(SettingsFileTest, FileThatMustNotBeReadIsPutAside) {
  const SilentTrace silence;
  store("n", 1);
  ASSERT_EQ(chmod(path_.c_str(), 0), 0);
  ASSERT_EQ(unlink((path_ + ".lock").c_str()), 0);
  const AsNobody nobody(folder_.path());
  EXPECT_EQ(stored("n"), -1);
  store("n", 2);
  EXPECT_EQ(stored("n"), 2);
  EXPECT_TRUE(fs::exists(path_ + ".damaged"));
}

TEST_F(SettingsFileTest, FolderThatMustNotBeWrittenRaises) {
  const AsNobody nobody(folder_.path());
  ASSERT_EQ(chmod(folder_.path().c_str(), 0500), 0);
  const std::string opening = raisedText<Error>([&] { store("n", 1); });
  ASSERT_EQ(chmod(folder_.path().c_str(), 0700), 0);
  EXPECT_EQ(opening, "RegCreateKeyEx: Permission denied\nError code: 13");
}

TEST_F(SettingsFileTest, ExistingKeyInAFolderThatMustNotBeWrittenIsReadOnly) {
  const AsNobody nobody(folder_.path());
  store("n", 1);
  ASSERT_EQ(chmod(folder_.path().c_str(), 0500), 0);
  const std::int32_t value = stored("n");
  const std::string writing = raisedText<Error>([&] { store("n", 2); });
  Registry(store_, "Key").deleteValue("n");
  ASSERT_EQ(chmod(folder_.path().c_str(), 0700), 0);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(writing, "int RegSetValueEx: Permission denied\nError code: 13");
  EXPECT_EQ(stored("n"), 1);
}

TEST_F(SettingsFileTest, FolderThatCannotBeMadeRaises) {
  FileRegistry below(folder_.write("file", "") + "/omniset/settings.json");
  EXPECT_EQ(raisedText<Error>([&] { Registry(below, "Key"); }),
            "RegCreateKeyEx: Not a directory\nError code: 20");
}

TEST_F(SettingsFileTest, ChangeWaitsForItsTurnOnlySoLong) {
  store("n", 1);
  FileRegistry impatient(path_, std::chrono::milliseconds(30));
  Registry key(impatient, "Key");
  const int lock = open((path_ + ".lock").c_str(), O_RDWR);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  EXPECT_EQ(raisedText<Error>([&] { key.setInteger("n", 2); }),
            "int RegSetValueEx: Resource temporarily unavailable\nError code: 11");
  EXPECT_EQ(key.getInteger("n", -1), 1);
  close(lock);
  key.setInteger("n", 2);
  EXPECT_EQ(key.getInteger("n", -1), 2);
}

// Runs an action in a process of its own; its number.
template <class Action>
pid_t inChild(Action action) {
  const pid_t child = fork();
  if (child != 0) return child;
  int status = 0;
  try {
    action();
  } catch (const std::exception&) {
    status = 1;
  }
  _exit(status);
}

TEST_F(SettingsFileTest, ProcessesDoNotLoseEachOthersValues) {
  std::vector<pid_t> children;
  for (const char* name : {"a", "b", "c"}) {
    children.push_back(inChild([&] {
      for (int i = 0; i < 20; ++i) store(name + std::to_string(i), i);
    }));
  }
  for (const pid_t child : children) {
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  EXPECT_THAT(Registry(store_, "Key").valueNames(), SizeIs(60));
  EXPECT_EQ(stored("b19"), 19);
}

TEST_F(SettingsFileTest, ReaderSeesNoHalfOfAChange) {
  const CapturedTrace trace;
  store("n", 0);
  const pid_t child = inChild([&] {
    for (int i = 1; i <= 100; ++i) store("n", i);
  });
  int status = -1;
  std::int32_t last = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    const std::int32_t value = stored("n");
    EXPECT_GE(value, last);
    last = value;
  }
  EXPECT_EQ(status, 0);
  EXPECT_EQ(stored("n"), 100);
  EXPECT_EQ(trace.text(), "");
}

}  // namespace
}  // namespace omniset::test
