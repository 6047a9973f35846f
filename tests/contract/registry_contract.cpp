// What the settings rely on, from the system's store as well as from the fake.
#include <gmock/gmock.h>

#include "tests/contract/system_registry.h"
#include "tests/fakes/fake_registry.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

using Bytes = std::vector<std::uint8_t>;

class SystemStore {
 public:
  RegistryRoot& root() { return *store_; }

 private:
  std::unique_ptr<SystemRegistry> store_ = makeSystemRegistry();
};

class FakeStore {
 public:
  RegistryRoot& root() { return store_; }

 private:
  FakeRegistry store_;
};

template <class Store>
class RegistryContract : public ::testing::Test {
 protected:
  std::unique_ptr<RegistryKey> open(const std::string& path) { return store_.root().open(path); }
  static void write(RegistryKey& key, const std::string& name, const Bytes& data,
                    RegistryType type = RegistryType::kBytes) {
    ASSERT_TRUE(key.write(name, type, data));
  }
  static std::optional<Bytes> read(RegistryKey& key, const std::string& name,
                                   std::size_t room = 4096) {
    Bytes buffer(room);
    const auto size = key.read(name, buffer);
    if (!size) return std::nullopt;
    buffer.resize(*size);
    return buffer;
  }

  Store store_;
};

using AllStores = ::testing::Types<SystemStore, FakeStore>;
TYPED_TEST_SUITE(RegistryContract, AllStores);

TYPED_TEST(RegistryContract, KeepsBytesAndTypes) {
  const auto key = this->open("Key");
  ASSERT_TRUE(key);
  const Bytes string{'a', 'b', 0};
  const Bytes list{'a', 0, 'b', 'c', 0, 0};
  const Bytes word{1, 2, 3, 250};
  const Bytes bytes{0, 255, 128};
  this->write(*key, "string", string, RegistryType::kString);
  this->write(*key, "list", list, RegistryType::kStringList);
  this->write(*key, "word", word, RegistryType::kInteger);
  this->write(*key, "bytes", bytes, RegistryType::kBytes);
  EXPECT_EQ(this->read(*key, "string"), string);
  EXPECT_EQ(this->read(*key, "list"), list);
  EXPECT_EQ(this->read(*key, "word"), word);
  EXPECT_EQ(this->read(*key, "bytes"), bytes);
  EXPECT_EQ(key->typeOf("string"), RegistryType::kString);
  EXPECT_EQ(key->typeOf("list"), RegistryType::kStringList);
  EXPECT_EQ(key->typeOf("word"), RegistryType::kInteger);
  EXPECT_EQ(key->typeOf("bytes"), RegistryType::kBytes);
}

TYPED_TEST(RegistryContract, KeepsAnEmptyList) {
  const auto key = this->open("Key");
  this->write(*key, "list", {0}, RegistryType::kStringList);
  EXPECT_EQ(this->read(*key, "list"), Bytes{0});
}

TYPED_TEST(RegistryContract, KeepsAValueOfNoBytes) {
  const auto key = this->open("Key");
  this->write(*key, "none", {});
  EXPECT_EQ(this->read(*key, "none"), Bytes{});
  EXPECT_EQ(key->typeOf("none"), RegistryType::kBytes);
}

TYPED_TEST(RegistryContract, AbsentValueIsAFailureWithACode) {
  const auto key = this->open("Key");
  setLastOsError(0);
  EXPECT_FALSE(this->read(*key, "v"));
  EXPECT_NE(lastOsError(), 0);
  setLastOsError(0);
  EXPECT_FALSE(key->typeOf("v"));
  EXPECT_NE(lastOsError(), 0);
}

TYPED_TEST(RegistryContract, ReplacesValueAndType) {
  const auto key = this->open("Key");
  this->write(*key, "v", {1, 2, 3, 4}, RegistryType::kInteger);
  this->write(*key, "v", {'x', 0}, RegistryType::kString);
  EXPECT_EQ(this->read(*key, "v"), (Bytes{'x', 0}));
  EXPECT_EQ(key->typeOf("v"), RegistryType::kString);
  EXPECT_THAT(key->valueNames(), ElementsAre("v"));
}

TYPED_TEST(RegistryContract, NamesOfValuesMeetWithoutRegardToCase) {
  const auto key = this->open("Key");
  this->write(*key, "Previous NetMask", {1});
  this->write(*key, "PREVIOUS NETMASK", {2});
  EXPECT_EQ(this->read(*key, "Previous Netmask"), Bytes{2});
  EXPECT_THAT(key->valueNames(), ElementsAre("Previous NetMask"));
  EXPECT_TRUE(key->remove("previous netmask"));
  EXPECT_THAT(key->valueNames(), IsEmpty());
}

TYPED_TEST(RegistryContract, NamesOfKeysMeetWithoutRegardToCase) {
  this->write(*this->open("Some\\Key"), "v", {1});
  EXPECT_EQ(this->read(*this->open("SOME\\key"), "v"), Bytes{1});
}

TYPED_TEST(RegistryContract, ValueThatFillsTheBufferIsRead) {
  const auto key = this->open("Key");
  this->write(*key, "v", {1, 2, 3});
  EXPECT_EQ(this->read(*key, "v", 3), (Bytes{1, 2, 3}));
}

TYPED_TEST(RegistryContract, ValueLargerThanTheBufferIsNotRead) {
  const auto key = this->open("Key");
  this->write(*key, "bytes", {1, 2, 3});
  this->write(*key, "string", {'a', 'b', 0}, RegistryType::kString);
  EXPECT_FALSE(this->read(*key, "bytes", 2));
  EXPECT_FALSE(this->read(*key, "string", 2));
  EXPECT_EQ(key->typeOf("bytes"), RegistryType::kBytes);
}

TYPED_TEST(RegistryContract, KeepsLargeValues) {
  const auto key = this->open("Key");
  Bytes large(20'000, 'x');
  large.back() = 0;
  this->write(*key, "v", large, RegistryType::kString);
  EXPECT_FALSE(this->read(*key, "v"));
  EXPECT_EQ(this->read(*key, "v", large.size()), large);
}

TYPED_TEST(RegistryContract, ListsAllValuesAndNoKeys) {
  const auto key = this->open("Key");
  EXPECT_THAT(key->valueNames(), IsEmpty());
  const std::string longName(300, 'n');
  for (const std::string& name : {std::string("b"), std::string("A"), longName}) {
    this->write(*key, name, {1});
  }
  this->write(*key->openSubKey("sub"), "other", {1});
  EXPECT_THAT(key->valueNames(), UnorderedElementsAre("b", "A", longName));
}

TYPED_TEST(RegistryContract, RemovesTheNamedValueOnly) {
  const auto key = this->open("Key");
  this->write(*key, "a", {1});
  this->write(*key, "b", {2});
  EXPECT_TRUE(key->remove("a"));
  EXPECT_FALSE(key->remove("a"));
  EXPECT_THAT(key->valueNames(), ElementsAre("b"));
}

TYPED_TEST(RegistryContract, SubKeyIsThePathBelowItsParent) {
  const auto parent = this->open("Key");
  this->write(*parent->openSubKey("Package Sets"), "v", {1});
  EXPECT_EQ(this->read(*this->open("Key\\Package Sets"), "v"), Bytes{1});
  EXPECT_FALSE(this->read(*parent, "v"));
}

TYPED_TEST(RegistryContract, SubKeyOutlivesItsParent) {
  auto parent = this->open("Key");
  const auto child = parent->openSubKey("Sub");
  EXPECT_TRUE(parent->close());
  parent.reset();
  this->write(*child, "v", {1});
  EXPECT_EQ(this->read(*child, "v"), Bytes{1});
}

TYPED_TEST(RegistryContract, WritesAreSeenThroughOtherKeysAtOnce) {
  const auto one = this->open("Key");
  const auto other = this->open("Key");
  this->write(*one, "v", {1});
  EXPECT_EQ(this->read(*other, "v"), Bytes{1});
  this->write(*other, "v", {2});
  EXPECT_EQ(this->read(*one, "v"), Bytes{2});
}

TYPED_TEST(RegistryContract, ValuesStayWhenTheKeyIsClosed) {
  const auto key = this->open("Key");
  this->write(*key, "v", {1});
  EXPECT_TRUE(key->close());
  EXPECT_EQ(this->read(*this->open("Key"), "v"), Bytes{1});
}

}  // namespace
}  // namespace omniset::test
