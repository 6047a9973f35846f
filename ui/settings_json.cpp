#include "ui/settings_json.h"

#include <array>
#include <limits>
#include <nlohmann/json.hpp>

#include "core/byte_cursor.h"
#include "core/format_text.h"
#include "ui/string_list.h"

namespace omniset {

namespace {

using Json = nlohmann::ordered_json;
using Bytes = std::vector<std::uint8_t>;

// The characters U+F780 to U+F7FF, which stand for the bytes 0x80 to 0xFF, are "\xEF", a byte that
// begins like the one below, and a last one.
constexpr std::uint8_t kStandInLead = 0xEF;
constexpr std::uint8_t kStandInBase = 0x9C;

constexpr std::uint32_t kLargestWord = std::numeric_limits<std::uint32_t>::max();

bool isStandIn(std::string_view text) {
  if (text.size() < 3 || static_cast<std::uint8_t>(text[0]) != kStandInLead) return false;
  const int high = static_cast<std::uint8_t>(text[1]) - kStandInBase;
  return high == 2 || high == 3;
}

bool holdsStandIn(std::string_view text) {
  for (; !text.empty(); text.remove_prefix(1)) {
    if (isStandIn(text)) return true;
  }
  return false;
}

bool isUtf8(const std::string& text) {
  try {
    static_cast<void>(Json(text).dump());
    return true;
  } catch (const Json::type_error&) {
    return false;
  }
}

std::string encoded(const std::string& text) {
  if (isUtf8(text) && !holdsStandIn(text)) return text;
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<std::uint8_t>(c);
    if (byte < 0x80) {
      result += c;
    } else {
      result += static_cast<char>(kStandInLead);
      result += static_cast<char>(kStandInBase + (byte >> 6));
      result += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return result;
}

// `text` is UTF-8.
std::string decoded(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    if (isStandIn(text)) {
      const int high = static_cast<std::uint8_t>(text[1]) - kStandInBase;
      result += static_cast<char>(high << 6 | (static_cast<std::uint8_t>(text[2]) & 0x3F));
      text.remove_prefix(3);
    } else {
      result += text.front();
      text.remove_prefix(1);
    }
  }
  return result;
}

std::string hexOf(const Bytes& data) {
  std::string hex;
  for (const std::uint8_t byte : data) hex += formatText("%02x", byte);
  return hex;
}

std::optional<std::uint8_t> digitOf(char c) {
  if (c >= '0' && c <= '9') return static_cast<std::uint8_t>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<std::uint8_t>(c - 'a' + 10);
  return std::nullopt;
}

std::optional<Bytes> bytesOf(std::string_view hex) {
  if (hex.size() % 2 != 0) return std::nullopt;
  Bytes data;
  for (; !hex.empty(); hex.remove_prefix(2)) {
    const auto high = digitOf(hex[0]);
    const auto low = digitOf(hex[1]);
    if (!high || !low) return std::nullopt;
    data.push_back(static_cast<std::uint8_t>(*high << 4 | *low));
  }
  return data;
}

Bytes integerData(std::uint32_t value) {
  Bytes data(4);
  ByteWriter(data).u32le(value);
  return data;
}

Bytes stringData(const std::string& text) {
  Bytes data(text.begin(), text.end());
  data.push_back(0);
  return data;
}

Json anyJson(const StoredValue& value) {
  Json json = Json::object();
  if (value.type != RegistryType::kBytes) json["type"] = static_cast<std::uint32_t>(value.type);
  json["bytes"] = hexOf(value.data);
  return json;
}

// The short forms are for data that they give back exactly.
Json valueJson(const StoredValue& value) {
  const Bytes& data = value.data;
  if (value.type == RegistryType::kInteger && data.size() == 4) {
    return static_cast<std::int32_t>(ByteReader(data).u32le());
  }
  if (value.type == RegistryType::kString) {
    const std::string text(asText(data).substr(0, asText(data).find('\0')));
    if (stringData(text) == data) return encoded(text);
  }
  if (value.type == RegistryType::kStringList) {
    const std::vector<std::string> strings = splitStrings(data);
    if (packedStrings(strings) == data) {
      Json list = Json::array();
      for (const std::string& string : strings) list.push_back(encoded(string));
      return list;
    }
  }
  return anyJson(value);
}

std::optional<StoredValue> parseInteger(const Json& json) {
  constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();
  const bool fits = json.is_number_unsigned() ? json.get<std::uint64_t>() <= kLargestWord
                                              : json.get<std::int64_t>() >= kLeast;
  if (!fits) return std::nullopt;
  return StoredValue{RegistryType::kInteger, integerData(json.get<std::uint32_t>())};
}

std::optional<StoredValue> parseList(const Json& json) {
  std::vector<std::string> strings;
  for (const Json& item : json) {
    if (!item.is_string()) return std::nullopt;
    strings.push_back(decoded(item.get_ref<const std::string&>()));
  }
  return StoredValue{RegistryType::kStringList, packedStrings(strings)};
}

std::optional<StoredValue> parseAny(const Json& json) {
  StoredValue value;
  const auto bytes = json.find("bytes");
  if (bytes == json.end() || !bytes->is_string()) return std::nullopt;
  const auto data = bytesOf(bytes->get_ref<const std::string&>());
  if (!data) return std::nullopt;
  value.data = *data;
  const auto type = json.find("type");
  if (type != json.end()) {
    if (!type->is_number_unsigned() || type->get<std::uint64_t>() > kLargestWord) {
      return std::nullopt;
    }
    value.type = static_cast<RegistryType>(type->get<std::uint32_t>());
  }
  return value;
}

std::optional<StoredValue> parseValue(const Json& json) {
  if (json.is_number_integer()) return parseInteger(json);
  if (json.is_string()) {
    return StoredValue{RegistryType::kString,
                       stringData(decoded(json.get_ref<const std::string&>()))};
  }
  if (json.is_array()) return parseList(json);
  if (json.is_object()) return parseAny(json);
  return std::nullopt;
}

}  // namespace

std::string settingsJson(const StoredKeys& keys) {
  Json json = Json::object();
  for (const auto& [path, key] : keys) {
    Json values = Json::object();
    for (const auto& [name, value] : key) values[encoded(name)] = valueJson(value);
    json[encoded(path)] = std::move(values);
  }
  return json.dump(2) + "\n";
}

std::optional<StoredKeys> parseSettingsJson(std::string_view text) {
  const Json json = Json::parse(text, nullptr, false);
  if (!json.is_object()) return std::nullopt;
  StoredKeys keys;
  for (const auto& [path, values] : json.items()) {
    if (!values.is_object()) return std::nullopt;
    StoredKey& key = keys[decoded(path)];
    for (const auto& [name, valueText] : values.items()) {
      const auto value = parseValue(valueText);
      if (!value) return std::nullopt;
      key[decoded(name)] = *value;
    }
  }
  return keys;
}

}  // namespace omniset
