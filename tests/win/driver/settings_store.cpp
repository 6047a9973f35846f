#include "tests/win/driver/settings_store.h"

#include <algorithm>

#include "tests/win/driver/waiting.h"

namespace omniset::test {

namespace {

constexpr DWORD kLargest = 65'536;

class Key {
 public:
  explicit Key(const char* path) {
    const LONG error = RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS,
                                       nullptr, &key_, nullptr);
    if (error) throw WindowFault(std::string("cannot open the key ") + path);
  }
  ~Key() { RegCloseKey(key_); }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  void set(const std::string& name, DWORD type, const std::string& bytes) {
    const LONG error =
        RegSetValueExA(key_, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                       static_cast<DWORD>(bytes.size()));
    if (error) throw WindowFault("cannot store \"" + name + "\"");
  }

  std::optional<std::string> get(const std::string& name, DWORD wantedType) const {
    std::string bytes(kLargest, '\0');
    DWORD type = 0;
    DWORD size = kLargest;
    if (RegQueryValueExA(key_, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()),
                         &size) ||
        type != wantedType) {
      return std::nullopt;
    }
    bytes.resize(size);
    return bytes;
  }

  std::vector<std::string> names() const {
    std::vector<std::string> names;
    char name[256] = "";
    DWORD size = sizeof name;
    for (DWORD i = 0; !RegEnumValueA(key_, i, name, &size, nullptr, nullptr, nullptr, nullptr);
         ++i) {
      names.emplace_back(name, size);
      size = sizeof name;
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  HKEY key_ = nullptr;
};

std::string withEnd(const std::string& text) {
  return text + '\0';
}

}  // namespace

void clearSettings() {
  RegDeleteKeyA(HKEY_CURRENT_USER, kSetsKey);
  RegDeleteKeyA(HKEY_CURRENT_USER, kMainKey);
}

void storeNumber(const std::string& name, DWORD value) {
  const std::string bytes(reinterpret_cast<const char*>(&value), sizeof value);
  Key(kMainKey).set(name, REG_DWORD, bytes);
}

void storeText(const std::string& name, const std::string& value) {
  Key(kMainKey).set(name, REG_SZ, withEnd(value));
}

void storeSet(const std::string& name, const std::vector<std::string>& packages) {
  std::string block;
  for (const std::string& package : packages) block += withEnd(package);
  Key(kSetsKey).set(name, REG_MULTI_SZ, withEnd(block));
}

std::optional<DWORD> storedNumber(const std::string& name) {
  const auto bytes = Key(kMainKey).get(name, REG_DWORD);
  if (!bytes || bytes->size() != sizeof(DWORD)) return std::nullopt;
  DWORD value = 0;
  std::copy(bytes->begin(), bytes->end(), reinterpret_cast<char*>(&value));
  return value;
}

std::optional<std::string> storedText(const std::string& name) {
  const auto bytes = Key(kMainKey).get(name, REG_SZ);
  if (!bytes) return std::nullopt;
  return bytes->substr(0, bytes->find('\0'));
}

std::optional<std::vector<std::string>> storedSet(const std::string& name) {
  const auto bytes = Key(kSetsKey).get(name, REG_MULTI_SZ);
  if (!bytes) return std::nullopt;
  std::vector<std::string> packages;
  for (std::size_t at = 0; at < bytes->size() && (*bytes)[at] != '\0';) {
    packages.push_back(bytes->substr(at, bytes->find('\0', at) - at));
    at += packages.back().size() + 1;
  }
  return packages;
}

std::vector<std::string> storedSetNames() {
  return Key(kSetsKey).names();
}

}  // namespace omniset::test
