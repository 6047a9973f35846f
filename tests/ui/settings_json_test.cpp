#include "ui/settings_json.h"

#include <gmock/gmock.h>

#include "tests/fakes/bytes_of.h"

namespace omniset::test {
namespace {

using ::testing::HasSubstr;

StoredKeys oneValue(const std::string& name, const StoredValue& value) {
  StoredKeys keys;
  keys["Key"][name] = value;
  return keys;
}

std::string jsonOf(const StoredValue& value) {
  return settingsJson(oneValue("v", value));
}

// The value that such a text of a value gives; nothing when it is refused.
std::optional<StoredValue> parsed(const std::string& value) {
  const auto keys = parseSettingsJson("{\"Key\": {\"v\": " + value + "}}");
  if (!keys) return std::nullopt;
  return *keys->find("Key")->find("v");
}

TEST(SettingsJson, IsReadable) {
  StoredKeys keys;
  StoredKey& key = keys["SOFTWARE\\Key"];
  key["Rect X"] = {RegistryType::kInteger, {0xFB, 0xFF, 0xFF, 0xFF}};
  key["Package Path"] = {RegistryType::kString, bytesOf({"C:\\\0", 4})};
  key["Some set"] = {RegistryType::kStringList, bytesOf({"one\0two\0\0", 9})};
  key["Some bytes"] = {RegistryType::kBytes, {0, 255}};
  key["Other"] = {RegistryType{2}, {16}};
  keys["Empty"];
  EXPECT_EQ(settingsJson(keys), R"({
  "SOFTWARE\\Key": {
    "Rect X": -5,
    "Package Path": "C:\\",
    "Some set": [
      "one",
      "two"
    ],
    "Some bytes": {
      "bytes": "00ff"
    },
    "Other": {
      "type": 2,
      "bytes": "10"
    }
  },
  "Empty": {}
}
)");
  EXPECT_EQ(parseSettingsJson(settingsJson(keys)), keys);
}

TEST(SettingsJson, AnyDataOfAnyTypeComesBack) {
  const std::vector<Bytes> samples{{},
                                   {0},
                                   {0, 0},
                                   {1, 2, 3},
                                   {1, 2, 3, 4},
                                   {255, 255, 255, 255},
                                   {'a', 0},
                                   {'a', 0, 0},
                                   {'a', 0, 'b', 0, 0},
                                   {'a', 0, 0, 'b', 0, 0},
                                   {0xC3, 0xA4, 0, 0},
                                   {0xE4, 0xFF, 0x80, 'x', 0, 0},
                                   {0xE4, 0}};
  for (const std::uint32_t type : {0u, 1u, 2u, 3u, 4u, 7u, 0xFFFFFFFFu}) {
    for (const Bytes& data : samples) {
      const StoredKeys keys = oneValue("v", {RegistryType{type}, data});
      EXPECT_EQ(parseSettingsJson(settingsJson(keys)), keys) << settingsJson(keys);
    }
  }
}

TEST(SettingsJson, TextThatIsNotUtf8ComesBack) {
  // The last ones are UTF-8 and hold a character that stands for a byte elsewhere.
  for (const char* text : {"\xE4", "\xC3\xA4", "\xC3", "a\xFFz\xC3\xA4", "\xED\xA0\x80",
                           "\xEF\x9E\x80", "\xEF\x9F\xBF\xC3\xA4", "\xEF\x9E"}) {
    Bytes data = bytesOf(text);
    data.push_back(0);
    StoredKeys keys = oneValue(text, {RegistryType::kString, data});
    data.push_back(0);
    keys[text]["list"] = {RegistryType::kStringList, data};
    EXPECT_EQ(parseSettingsJson(settingsJson(keys)), keys) << settingsJson(keys);
  }
}

TEST(SettingsJson, Utf8StaysAsItIs) {
  EXPECT_THAT(jsonOf({RegistryType::kString, bytesOf({"Gr\xC3\xBC\xC3\x9F\x65\0", 8})}),
              HasSubstr("\"Gr\xC3\xBC\xC3\x9F\x65\""));
}

TEST(SettingsJson, IntegersMayBeWrittenWithoutSign) {
  EXPECT_EQ(parsed("4294967295"), (StoredValue{RegistryType::kInteger, {255, 255, 255, 255}}));
  EXPECT_EQ(parsed("-2147483648"), (StoredValue{RegistryType::kInteger, {0, 0, 0, 128}}));
}

TEST(SettingsJson, ListForgetsEmptyStrings) {
  EXPECT_EQ(parsed("[\"\", \"a\"]"),
            (StoredValue{RegistryType::kStringList, bytesOf({"a\0\0", 3})}));
}

TEST(SettingsJson, NamesMeetWithoutRegardToCase) {
  const auto keys = parseSettingsJson(R"({"Key": {"v": 1, "V": 2}, "KEY": {"w": 3}})");
  ASSERT_TRUE(keys);
  StoredKeys expected;
  expected["Key"]["v"] = {RegistryType::kInteger, {2, 0, 0, 0}};
  expected["Key"]["w"] = {RegistryType::kInteger, {3, 0, 0, 0}};
  EXPECT_EQ(*keys, expected);
}

TEST(SettingsJson, RefusesWhatIsNoJson) {
  for (const char* text : {"", " ", "{", "{}x", "{\"Key\": {\"v\": 1}", "\xFF", "{\"\xE4\": {}}"}) {
    EXPECT_FALSE(parseSettingsJson(text)) << text;
  }
}

TEST(SettingsJson, RefusesAnotherShape) {
  for (const char* text : {"[]", "1", "null", "{\"Key\": 1}", "{\"Key\": []}", "{\"Key\": null}"}) {
    EXPECT_FALSE(parseSettingsJson(text)) << text;
  }
}

TEST(SettingsJson, RefusesValuesOfNoType) {
  for (const char* value :
       {"null", "true", "1.5", "4294967296", "-2147483649", "18446744073709551615", "[1]",
        "[[\"a\"]]", "{}", "{\"type\": 1}", "{\"bytes\": 1}", "{\"bytes\": \"0\"}",
        "{\"bytes\": \"0g\"}", "{\"bytes\": \"00\", \"type\": -1}",
        "{\"bytes\": \"00\", \"type\": 4294967296}", "{\"bytes\": \"00\", \"type\": \"1\"}"}) {
    EXPECT_FALSE(parsed(value)) << value;
  }
}

TEST(SettingsJson, SurvivesDeepNesting) {
  const std::string deep(100'000, '[');
  EXPECT_FALSE(parseSettingsJson(deep));
  EXPECT_FALSE(parsed(deep + std::string(deep.size(), ']')));
}

}  // namespace
}  // namespace omniset::test
