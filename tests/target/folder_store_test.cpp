#include "target/folder_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "store_fixture.h"

namespace omniset::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using FolderStoreTest = StoreFixture;

TEST_F(FolderStoreTest, MakesTheFolderAndThoseAboveIt) {
  FolderStore deep(joinPath(joinPath(folder.path(), "a"), "b"));
  deep.beginPreparation(false);
  EXPECT_TRUE(deep.isPrepared());
  EXPECT_TRUE(fs::is_directory(deep.path()));
}

TEST_F(FolderStoreTest, HoldsTheBytesOfAFile) {
  store.beginPreparation(false);
  std::string content(100'000, '\0');
  for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7);
  store.openFile("system.bdl", static_cast<std::int32_t>(content.size()));
  for (std::size_t at = 0; at < content.size(); at += 1452) write(content.substr(at, 1452));
  store.closeFile();
  EXPECT_THAT(files(), ElementsAre("system.bdl"));
  EXPECT_EQ(contentOf("system.bdl"), content);
}

TEST_F(FolderStoreTest, HoldsAnEmptyFile) {
  store.beginPreparation(false);
  put("autorun.scr", "");
  EXPECT_THAT(files(), ElementsAre("autorun.scr"));
  EXPECT_EQ(contentOf("autorun.scr"), "");
}

TEST_F(FolderStoreTest, TakesNamesWithBlanksAndForeignLetters) {
  store.beginPreparation(false);
  put("a b-2.9 (x86).bdl", "1");
  put("r\xC3\xA9seau.bdl", "2");
  EXPECT_EQ(files().size(), 2u);
  EXPECT_EQ(contentOf("a b-2.9 (x86).bdl"), "1");
}

TEST_F(FolderStoreTest, TakesTheLongestName) {
  store.beginPreparation(false);
  put(std::string(200, 'n'), "x");
  EXPECT_THAT(files(), ElementsAre(std::string(200, 'n')));
}

TEST_F(FolderStoreTest, RefusesNamesThatLeadElsewhere) {
  store.beginPreparation(false);
  for (const char* name : {"", ".", "..", "../x", "a/b", "/x", "..\\x", "a\\b", "\\x", "C:x",
                           "C:\\x", "x:stream", ".hidden", ".omniset-store", ".omniset-part"}) {
    EXPECT_THAT(refusal(name), HasSubstr("A file of this name is not taken")) << name;
  }
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(FolderStoreTest, RefusesNamesWithControlCharacters) {
  store.beginPreparation(false);
  for (const std::string name : {"a\nb", "a\rb", "\x1B[2J", "a\tb", "a\x7F"}) {
    EXPECT_THAT(refusal(name), HasSubstr("not taken")) << name;
  }
  EXPECT_THAT(refusal(std::string("a\0b", 3)), HasSubstr("not taken"));
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(FolderStoreTest, RefusesNamesThatAreTooLong) {
  store.beginPreparation(false);
  EXPECT_THAT(refusal(std::string(201, 'n')), HasSubstr("not taken"));
  EXPECT_THAT(refusal(std::string(300, 'n')), HasSubstr("not taken"));
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(FolderStoreTest, ADirectoryOfThatNameStaysAndTheFileIsRefused) {
  store.beginPreparation(false);
  fs::create_directories(joinPath(folder.path(), "x"));
  folder.write(joinPath("x", "inside"), "mine");
  store.openFile("x", 1);
  write("1");
  EXPECT_EQ(failureOf([&] { store.closeFile(); }), "Cannot write x");
  EXPECT_EQ(contentOf(joinPath("x", "inside")), "mine");
  EXPECT_THAT(folder.names(), ElementsAre(".omniset-store", "x"));
}

TEST_F(FolderStoreTest, RefusesAFolderWithFilesOfOthers) {
  folder.write("thesis.txt", "precious");
  for (const bool keep : {false, true}) {
    EXPECT_THAT(failureOf([&] { store.beginPreparation(keep); }),
                HasSubstr("holds files of others; name an empty or a new folder."));
  }
  EXPECT_THAT(folder.names(), ElementsAre("thesis.txt"));
  EXPECT_EQ(contentOf("thesis.txt"), "precious");
}

TEST_F(FolderStoreTest, RefusesAFolderThatIsAFile) {
  FolderStore file(folder.write("file", "precious"));
  EXPECT_THAT(failureOf([&] { file.claim(); }), HasSubstr("Cannot make the folder"));
  EXPECT_EQ(contentOf("file"), "precious");
}

TEST_F(FolderStoreTest, RefusesAFolderThatCannotBeMade) {
  FolderStore below(joinPath(folder.write("file", "precious"), "store"));
  EXPECT_THAT(failureOf([&] { below.claim(); }), HasSubstr("Cannot make the folder"));
}

TEST_F(FolderStoreTest, RefusesAFolderWithoutAName) {
  FolderStore nameless("");
  EXPECT_THAT(failureOf([&] { nameless.claim(); }), HasSubstr("Cannot make the folder"));
}

TEST_F(FolderStoreTest, ClaimsAnEmptyFolderForLater) {
  store.claim();
  put("a.bdl", "old");
  FolderStore later(folder.path());
  later.claim();
  EXPECT_THAT(files(), ElementsAre("a.bdl"));
}

TEST_F(FolderStoreTest, ANewInstallationDeletesTheFilesOfTheOneBefore) {
  store.beginPreparation(false);
  put("a.bdl", "1");
  put("b.bdl", "2");
  FolderStore later(folder.path());
  later.beginPreparation(false);
  EXPECT_THAT(folder.names(), ElementsAre(".omniset-store"));
}

TEST_F(FolderStoreTest, ANewInstallationLeavesFoldersAlone) {
  store.beginPreparation(false);
  fs::create_directories(joinPath(folder.path(), "sub"));
  folder.write(joinPath("sub", "inside"), "mine");
  store.beginPreparation(false);
  EXPECT_EQ(contentOf(joinPath("sub", "inside")), "mine");
}

TEST_F(FolderStoreTest, KeepsTheFilesWhenAsked) {
  store.beginPreparation(false);
  put("a.bdl", "1");
  FolderStore later(folder.path());
  later.beginPreparation(true);
  EXPECT_THAT(files(), ElementsAre("a.bdl"));
  EXPECT_EQ(contentOf("a.bdl"), "1");
}

TEST_F(FolderStoreTest, AFileReplacesTheOldOneOfThatName) {
  store.beginPreparation(false);
  put("a.bdl", "a long old content");
  store.beginPreparation(true);
  put("a.bdl", "new");
  EXPECT_THAT(files(), ElementsAre("a.bdl"));
  EXPECT_EQ(contentOf("a.bdl"), "new");
}

TEST_F(FolderStoreTest, AHalfReceivedFileDoesNotCount) {
  store.beginPreparation(false);
  store.openFile("a.bdl", 1000);
  write("half");
  EXPECT_THAT(files(), IsEmpty());
  store.abandon();
  EXPECT_THAT(folder.names(), ElementsAre(".omniset-store"));
}

TEST_F(FolderStoreTest, AHalfReceivedFileLeavesTheOldOneOfThatName) {
  store.beginPreparation(false);
  put("a.bdl", "old");
  store.openFile("a.bdl", 1000);
  write("half");
  EXPECT_EQ(contentOf("a.bdl"), "old");
  store.abandon();
  EXPECT_EQ(contentOf("a.bdl"), "old");
  EXPECT_THAT(folder.names(), ElementsAre(".omniset-store", "a.bdl"));
}

TEST_F(FolderStoreTest, AHalfReceivedFileGoesWithTheStore) {
  {
    FolderStore leaving(folder.path());
    leaving.beginPreparation(false);
    leaving.openFile("a.bdl", 1000);
  }
  EXPECT_THAT(folder.names(), ElementsAre(".omniset-store"));
}

TEST_F(FolderStoreTest, TheNextFileDropsOneThatWasLeftOpen) {
  store.beginPreparation(false);
  store.openFile("a.bdl", 1000);
  write("half of a");
  put("b.bdl", "b");
  EXPECT_THAT(folder.names(), ElementsAre(".omniset-store", "b.bdl"));
  EXPECT_EQ(contentOf("b.bdl"), "b");
}

TEST_F(FolderStoreTest, AFileWhileItIsReceivedDoesNotTouchAnotherOfAnyName) {
  store.beginPreparation(false);
  put("a.bdl.part", "complete");
  store.openFile("a.bdl", 1000);
  write("half");
  store.abandon();
  EXPECT_EQ(contentOf("a.bdl.part"), "complete");
}

TEST_F(FolderStoreTest, ARestartedStoreForgetsAFileThatACrashLeft) {
  store.beginPreparation(false);
  folder.write(".omniset-part", "left by a crash");
  FolderStore later(folder.path());
  later.beginPreparation(true);
  later.openFile("a.bdl", 1);
  later.closeFile();
  EXPECT_THAT(folder.names(), ElementsAre(".omniset-store", "a.bdl"));
  EXPECT_EQ(contentOf("a.bdl"), "");
}

TEST_F(FolderStoreTest, AbandonsNothingTwice) {
  store.beginPreparation(false);
  put("a.bdl", "1");
  store.abandon();
  store.abandon();
  EXPECT_THAT(files(), ElementsAre("a.bdl"));
}

TEST_F(FolderStoreTest, AFolderThatWentAwayIsMadeAgain) {
  store.claim();
  fs::remove_all(folder.path());
  store.beginPreparation(false);
  put("a.bdl", "1");
  EXPECT_EQ(contentOf("a.bdl"), "1");
}

TEST_F(FolderStoreTest, AFolderThatWentAwayMeanwhileFails) {
  store.beginPreparation(false);
  fs::remove_all(folder.path());
  EXPECT_EQ(refusal("a.bdl"), "Cannot create a.bdl");
}

}  // namespace
}  // namespace omniset::test
