#include "ui/registry.h"

#include <gmock/gmock.h>

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "tests/fakes/bytes_of.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_registry.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RegistryTest : public ::testing::Test {
 protected:
  void stored(const std::string& name, RegistryType type, const Bytes& data) {
    store_.keys["Key"][name] = {type, data};
  }
  const StoredValue& stored(const std::string& name) {
    const StoredValue* value = store_.keys["Key"].find(name);
    if (!value) throw std::runtime_error("not stored: " + name);
    return *value;
  }
  // What an Error of the failing fake says behind its label.
  static std::string failed(const std::string& label) {
    setLastOsError(FakeRegistry::kFailureCode);
    return Error(label).what();
  }

  FakeRegistry store_;
  Registry key_{store_, "Key"};
};

TEST_F(RegistryTest, IntegerIsAWordWithTheLowestByteFirst) {
  key_.setInteger("n", 0x01020304);
  EXPECT_EQ(stored("n"), (StoredValue{RegistryType::kInteger, {4, 3, 2, 1}}));
}

TEST_F(RegistryTest, IntegersComeBack) {
  for (const std::int32_t value : {0, -5, INT32_MAX, INT32_MIN}) {
    key_.setInteger("n", value);
    EXPECT_EQ(key_.getInteger("n", 77), value);
  }
}

TEST_F(RegistryTest, AbsentIntegerIsTheDefault) {
  EXPECT_EQ(key_.getInteger("n", -77), -77);
}

TEST_F(RegistryTest, AnyFourBytesAreAnInteger) {
  stored("text", RegistryType::kString, bytesOf({"abc\0", 4}));
  EXPECT_EQ(key_.getInteger("text", 77), 0x00636261);
}

TEST_F(RegistryTest, IntegerOfAnotherSizeIsTheDefault) {
  stored("none", RegistryType::kInteger, {});
  stored("short", RegistryType::kInteger, {1, 2, 3});
  stored("long", RegistryType::kInteger, {1, 2, 3, 4, 5});
  for (const char* name : {"none", "short", "long"}) EXPECT_EQ(key_.getInteger(name, 77), 77);
}

TEST_F(RegistryTest, StringIsStoredWithItsNul) {
  key_.setString("s", "C:\\");
  EXPECT_EQ(stored("s"), (StoredValue{RegistryType::kString, bytesOf({"C:\\\0", 4})}));
  EXPECT_EQ(key_.getString("s", "other"), "C:\\");
}

TEST_F(RegistryTest, EmptyStringIsNotAbsent) {
  key_.setString("s", "");
  EXPECT_EQ(stored("s").data, Bytes{0});
  EXPECT_EQ(key_.getString("s", "other"), "");
}

TEST_F(RegistryTest, AbsentStringIsTheDefault) {
  EXPECT_EQ(key_.getString("s", "other"), "other");
}

TEST_F(RegistryTest, StringEndsAtItsFirstNul) {
  key_.setString("s", std::string("one\0two", 7));
  EXPECT_EQ(key_.getString("s", "other"), "one");
  stored("s", RegistryType::kString, bytesOf({"one\0two\0", 8}));
  EXPECT_EQ(key_.getString("s", "other"), "one");
}

TEST_F(RegistryTest, StringWithoutNulEndsWithItsBytes) {
  stored("s", RegistryType::kString, bytesOf("cut"));
  EXPECT_EQ(key_.getString("s", "other"), "cut");
  stored("s", RegistryType::kString, {});
  EXPECT_EQ(key_.getString("s", "other"), "");
}

TEST_F(RegistryTest, StringThatFillsTheBufferIsRead) {
  const std::string longest(Registry::kLongestRead - 1, 'x');
  key_.setString("s", longest);
  EXPECT_EQ(key_.getString("s", "other"), longest);
}

TEST_F(RegistryTest, StringLongerThanTheBufferIsTheDefault) {
  key_.setString("s", std::string(Registry::kLongestRead, 'x'));
  EXPECT_EQ(key_.getString("s", "other"), "other");
}

TEST_F(RegistryTest, StringListIsOneBlock) {
  key_.setStringList("l", {"one", "two"});
  EXPECT_EQ(stored("l"), (StoredValue{RegistryType::kStringList, bytesOf({"one\0two\0\0", 9})}));
  EXPECT_THAT(key_.getStringList("l"), ElementsAre("one", "two"));
}

TEST_F(RegistryTest, EmptyStringListIsASingleNul) {
  key_.setStringList("l", {});
  EXPECT_EQ(stored("l").data, Bytes{0});
  EXPECT_THAT(key_.getStringList("l"), IsEmpty());
}

TEST_F(RegistryTest, AbsentStringListIsEmpty) {
  EXPECT_THAT(key_.getStringList("l"), IsEmpty());
}

TEST_F(RegistryTest, StringListThatFillsTheBufferIsRead) {
  const std::string longest(Registry::kLongestRead - 2, 'x');
  key_.setStringList("l", {longest});
  EXPECT_THAT(key_.getStringList("l"), ElementsAre(longest));
}

TEST_F(RegistryTest, StringListLongerThanTheBufferIsEmpty) {
  key_.setStringList("l", {std::string(Registry::kLongestRead - 1, 'x')});
  EXPECT_THAT(key_.getStringList("l"), IsEmpty());
}

TEST_F(RegistryTest, BytesAreStoredAsTheyAre) {
  key_.setBytes("b", Bytes{0, 255, 0});
  EXPECT_EQ(stored("b"), (StoredValue{RegistryType::kBytes, {0, 255, 0}}));
}

TEST_F(RegistryTest, TypeIsTheStoredOne) {
  key_.setString("s", "");
  stored("odd", RegistryType{2}, {});
  EXPECT_EQ(key_.getType("s"), RegistryType::kString);
  EXPECT_EQ(key_.getType("odd"), RegistryType{2});
}

TEST_F(RegistryTest, NamesMeetWithoutRegardToCase) {
  key_.setInteger("Previous NetMask", 24);
  EXPECT_EQ(key_.getInteger("Previous Netmask", 0), 24);
}

TEST_F(RegistryTest, ListsTheNamesOfItsValues) {
  key_.setInteger("b", 1);
  key_.setInteger("A", 1);
  EXPECT_THAT(key_.valueNames(), ElementsAre("b", "A"));
}

TEST_F(RegistryTest, DeletedValueIsAbsent) {
  key_.setInteger("n", 1);
  key_.deleteValue("N");
  EXPECT_THAT(key_.valueNames(), IsEmpty());
}

TEST_F(RegistryTest, FailureToDeleteIsNotReported) {
  key_.setInteger("n", 1);
  store_.failing = "remove n";
  key_.deleteValue("n");
  key_.deleteValue("no such value");
  EXPECT_THAT(key_.valueNames(), ElementsAre("n"));
}

TEST_F(RegistryTest, FailureToReadIsTheDefault) {
  key_.setInteger("v", 1);
  store_.failing = "read v";
  EXPECT_EQ(key_.getInteger("v", 7), 7);
  EXPECT_EQ(key_.getString("v", "other"), "other");
  EXPECT_THAT(key_.getStringList("v"), IsEmpty());
}

TEST_F(RegistryTest, SubKeyLiesBelowItsParent) {
  Registry(key_, "Sub").setInteger("n", 3);
  EXPECT_EQ(Registry(store_, "Key\\Sub").getInteger("n", 0), 3);
  EXPECT_EQ(key_.getInteger("n", 0), 0);
}

TEST_F(RegistryTest, FailureToOpenRaises) {
  store_.failing = "open Other";
  EXPECT_EQ(raisedText<Error>([&] { Registry(store_, "Other"); }), failed("RegCreateKeyEx"));
  store_.failing = "open Key\\Sub";
  EXPECT_EQ(raisedText<Error>([&] { Registry(key_, "Sub"); }), failed("RegCreateKeyEx"));
}

TEST_F(RegistryTest, FailureToWriteRaisesWithTheLabelOfTheType) {
  store_.failing = "write v";
  EXPECT_EQ(raisedText<Error>([&] { key_.setInteger("v", 1); }), failed("int RegSetValueEx"));
  EXPECT_EQ(raisedText<Error>([&] { key_.setString("v", ""); }), failed("str RegSetValueEx"));
  EXPECT_EQ(raisedText<Error>([&] { key_.setStringList("v", {}); }),
            failed("multistr RegSetValueEx"));
  EXPECT_EQ(raisedText<Error>([&] { key_.setBytes("v", {}); }), failed("bin RegSetValueEx"));
}

TEST_F(RegistryTest, TypeOfAnAbsentValueRaises) {
  EXPECT_EQ(raisedText<Error>([&] { key_.getType("v"); }),
            failed("Registry::getType RegQueryValueEx"));
}

TEST_F(RegistryTest, ClosesItsKeyOnce) {
  store_.calls.clear();
  { const Registry other(store_, "Other"); }
  EXPECT_THAT(store_.calls, ElementsAre("open Other", "close"));
  store_.calls.clear();
  {
    Registry other(store_, "Other");
    other.close();
  }
  EXPECT_THAT(store_.calls, ElementsAre("open Other", "close"));
}

TEST_F(RegistryTest, FailureToCloseRaises) {
  Registry other(store_, "Other");
  store_.failing = "close";
  EXPECT_EQ(raisedText<Error>([&] { other.close(); }), failed("RegCloseKey"));
  store_.failing.clear();
}

TEST_F(RegistryTest, FailureToCloseInTheDestructorLeavesATrace) {
  const CapturedTrace trace;
  {
    const Registry other(store_, "Other");
    store_.failing = "close";
  }
  EXPECT_EQ(trace.text(), failed("RegCloseKey") + "\n");
  store_.failing.clear();
}

}  // namespace
}  // namespace omniset::test
