#include "ui/workflow/package_sets.h"

#include <gmock/gmock.h>

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_registry.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsNull;
using ::testing::Pointee;

class PackageSetsTest : public ::testing::Test {
 protected:
  FakeRegistry store_;
  Registry key_{store_, "Sets"};
  PackageSets sets_;
};

// Packages whose list takes up that many bytes in the store.
std::vector<std::string> listOf(std::size_t bytes) {
  return {std::string(bytes - 2, 'x')};
}

TEST_F(PackageSetsTest, FindsWhatWasAdded) {
  sets_.add("Router x", {"system", "ppp"});
  EXPECT_THAT(sets_.find("Router x"), Pointee(ElementsAre("system", "ppp")));
  EXPECT_THAT(sets_.find("Router"), IsNull());
}

TEST_F(PackageSetsTest, ReplacingTellsWhetherTheNameIsNew) {
  EXPECT_TRUE(sets_.replace(kPreviousInstall, {"a"}));
  EXPECT_FALSE(sets_.replace(kPreviousInstall, {"b"}));
  EXPECT_THAT(sets_.find("Previous Install"), Pointee(ElementsAre("b")));
}

TEST_F(PackageSetsTest, ErasedSetIsGone) {
  sets_.add("one", {"a"});
  sets_.erase("one");
  sets_.erase("two");
  EXPECT_THAT(sets_.names(), IsEmpty());
}

TEST_F(PackageSetsTest, NamesAreInTheOrderOfTheirBytes) {
  for (const char* name : {"b", "a", "B", "\xE4", "A"}) sets_.add(name, {"p"});
  EXPECT_THAT(sets_.names(), ElementsAre("A", "B", "a", "b", "\xE4"));
}

TEST_F(PackageSetsTest, ComeBackFromTheStore) {
  sets_.add("one", {"system"});
  sets_.add(kPreviousInstall, {"ppp", "system", "dhcp"});
  sets_.store(key_);
  PackageSets loaded;
  loaded.load(key_);
  EXPECT_THAT(loaded.names(), ElementsAre(kPreviousInstall, "one"));
  EXPECT_THAT(loaded.find(kPreviousInstall), Pointee(ElementsAre("ppp", "system", "dhcp")));
  EXPECT_THAT(loaded.find("one"), Pointee(ElementsAre("system")));
}

TEST_F(PackageSetsTest, EmptyStoreHasNone) {
  sets_.load(key_);
  EXPECT_THAT(sets_.names(), IsEmpty());
}

TEST_F(PackageSetsTest, StoringDeletesNothing) {
  key_.setStringList("older", {"a"});
  sets_.add("newer", {"b"});
  sets_.store(key_);
  EXPECT_THAT(key_.valueNames(), ElementsAre("older", "newer"));
}

TEST_F(PackageSetsTest, OfNamesThatDifferInCaseTheLaterOneIsStored) {
  sets_.add("router x", {"later"});
  sets_.add("Router x", {"earlier"});
  EXPECT_THAT(sets_.names(), ElementsAre("Router x", "router x"));
  sets_.store(key_);
  PackageSets loaded;
  loaded.load(key_);
  EXPECT_THAT(loaded.names(), ElementsAre("Router x"));
  EXPECT_THAT(loaded.find("Router x"), Pointee(ElementsAre("later")));
}

TEST_F(PackageSetsTest, LongestReadableSetComesBack) {
  const CapturedTrace trace;
  sets_.add("long", listOf(Registry::kLongestRead));
  sets_.store(key_);
  PackageSets loaded;
  loaded.load(key_);
  EXPECT_THAT(loaded.find("long"), Pointee(listOf(Registry::kLongestRead)));
  EXPECT_EQ(trace.text(), "");
}

TEST_F(PackageSetsTest, SetTooLongToBeReadIsStoredWithATrace) {
  const CapturedTrace trace;
  sets_.add("long", listOf(Registry::kLongestRead + 1));
  sets_.store(key_);
  EXPECT_EQ(trace.text(), "package set is too long to be read again: long\n");
  EXPECT_EQ(store_.keys["Sets"]["long"].data.size(), Registry::kLongestRead + 1);
}

TEST_F(PackageSetsTest, ValueThatCannotBeReadStaysInTheStore) {
  key_.setStringList("long", listOf(Registry::kLongestRead + 1));
  key_.setStringList("empty", {});
  key_.setStringList("good", {"a"});
  const StoredKey before = store_.keys["Sets"];
  const CapturedTrace trace;
  sets_.load(key_);
  EXPECT_THAT(sets_.names(), ElementsAre("good"));
  EXPECT_EQ(trace.text(), "package set cannot be read: long\npackage set cannot be read: empty\n");
  sets_.store(key_);
  EXPECT_EQ(store_.keys["Sets"], before);
}

TEST_F(PackageSetsTest, FailureToStoreRaises) {
  sets_.add("one", {"a"});
  store_.failing = "write one";
  const std::string text = raisedText<Error>([&] { sets_.store(key_); });
  EXPECT_TRUE(text.starts_with("multistr RegSetValueEx: ")) << text;
}

}  // namespace
}  // namespace omniset::test
