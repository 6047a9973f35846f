#include "ui/registry.h"

#include <array>
#include <optional>

#include "core/byte_cursor.h"
#include "core/error.h"
#include "core/trace.h"
#include "ui/string_list.h"

namespace omniset {

namespace {

std::unique_ptr<RegistryKey> opened(std::unique_ptr<RegistryKey> key) {
  if (!key) throw Error("RegCreateKeyEx");
  return key;
}

}  // namespace

Registry::Registry(RegistryRoot& root, const std::string& path) : key_(opened(root.open(path))) {}

Registry::Registry(Registry& parent, const std::string& subKey)
    : key_(opened(parent.key_->openSubKey(subKey))) {}

Registry::~Registry() {
  if (key_ && !key_->close()) traceLine(Error("RegCloseKey").what());
}

void Registry::close() {
  const std::unique_ptr<RegistryKey> closing = std::move(key_);
  if (!closing->close()) throw Error("RegCloseKey");
}

void Registry::write(const char* failure, const std::string& name, RegistryType type,
                     std::span<const std::uint8_t> data) {
  if (!key_->write(name, type, data)) throw Error(failure);
}

void Registry::setInteger(const std::string& name, std::int32_t value) {
  std::array<std::uint8_t, 4> word{};
  ByteWriter(word).u32le(static_cast<std::uint32_t>(value));
  write("int RegSetValueEx", name, RegistryType::kInteger, word);
}

void Registry::setString(const std::string& name, const std::string& value) {
  const std::string_view text = value.c_str();
  std::vector<std::uint8_t> data(text.begin(), text.end());
  data.push_back(0);
  write("str RegSetValueEx", name, RegistryType::kString, data);
}

void Registry::setStringList(const std::string& name, const std::vector<std::string>& values) {
  write("multistr RegSetValueEx", name, RegistryType::kStringList, packedStrings(values));
}

void Registry::setBytes(const std::string& name, std::span<const std::uint8_t> value) {
  write("bin RegSetValueEx", name, RegistryType::kBytes, value);
}

RegistryType Registry::getType(const std::string& name) {
  const std::optional<RegistryType> type = key_->typeOf(name);
  if (!type) throw Error("Registry::getType RegQueryValueEx");
  return *type;
}

std::int32_t Registry::getInteger(const std::string& name, std::int32_t absent) {
  std::array<std::uint8_t, 4> word{};
  if (key_->read(name, word) != word.size()) return absent;
  return static_cast<std::int32_t>(ByteReader(word).u32le());
}

std::string Registry::getString(const std::string& name, const std::string& absent) {
  std::array<std::uint8_t, kLongestRead> buffer{};
  const auto size = key_->read(name, buffer);
  if (!size) return absent;
  const std::string_view text = asText(std::span(buffer).first(*size));
  return std::string(text.substr(0, text.find('\0')));
}

std::vector<std::string> Registry::getStringList(const std::string& name) {
  std::array<std::uint8_t, kLongestRead> buffer{};
  const auto size = key_->read(name, buffer);
  if (!size) return {};
  return splitStrings(std::span(buffer).first(*size));
}

std::vector<std::string> Registry::valueNames() {
  return key_->valueNames();
}

void Registry::deleteValue(const std::string& name) {
  key_->remove(name);
}

}  // namespace omniset
