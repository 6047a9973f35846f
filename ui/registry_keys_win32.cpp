#include <windows.h>

#include <utility>

#include "core/os_error.h"
#include "ui/registry_keys.h"

namespace omniset {

namespace {

// Enough for the longest name that a value may have, in any code page.
constexpr std::size_t kNameRoom = 2 * 16'384;

// These calls return their error code.
bool succeeded(LONG code) {
  if (code == ERROR_SUCCESS) return true;
  setLastOsError(code);
  return false;
}

class Win32RegistryKey : public RegistryKey {
 public:
  explicit Win32RegistryKey(HKEY key) : key_(key) {}
  ~Win32RegistryKey() override {
    if (key_) RegCloseKey(key_);
  }
  Win32RegistryKey(const Win32RegistryKey&) = delete;
  Win32RegistryKey& operator=(const Win32RegistryKey&) = delete;

  static std::unique_ptr<RegistryKey> open(HKEY parent, const std::string& path);

  std::unique_ptr<RegistryKey> openSubKey(const std::string& name) override {
    return open(key_, name);
  }
  bool write(const std::string& name, RegistryType type,
             std::span<const std::uint8_t> data) override;
  std::optional<RegistryType> typeOf(const std::string& name) override;
  std::optional<std::size_t> read(const std::string& name, std::span<std::uint8_t> buffer) override;
  std::vector<std::string> valueNames() override;
  bool remove(const std::string& name) override {
    return succeeded(RegDeleteValueA(key_, name.c_str()));
  }
  bool close() override { return succeeded(RegCloseKey(std::exchange(key_, nullptr))); }

 private:
  HKEY key_;
};

std::unique_ptr<RegistryKey> Win32RegistryKey::open(HKEY parent, const std::string& path) {
  char className[] = "REG_SZ";
  HKEY key = nullptr;
  const LONG code = RegCreateKeyExA(parent, path.c_str(), 0, className, REG_OPTION_NON_VOLATILE,
                                    KEY_ALL_ACCESS, nullptr, &key, nullptr);
  if (!succeeded(code)) return nullptr;
  return std::make_unique<Win32RegistryKey>(key);
}

bool Win32RegistryKey::write(const std::string& name, RegistryType type,
                             std::span<const std::uint8_t> data) {
  return succeeded(RegSetValueExA(key_, name.c_str(), 0, static_cast<DWORD>(type), data.data(),
                                  static_cast<DWORD>(data.size())));
}

std::optional<RegistryType> Win32RegistryKey::typeOf(const std::string& name) {
  DWORD type = 0;
  const LONG code = RegQueryValueExA(key_, name.c_str(), nullptr, &type, nullptr, nullptr);
  if (!succeeded(code)) return std::nullopt;
  return static_cast<RegistryType>(type);
}

std::optional<std::size_t> Win32RegistryKey::read(const std::string& name,
                                                  std::span<std::uint8_t> buffer) {
  auto size = static_cast<DWORD>(buffer.size());
  const LONG code = RegQueryValueExA(key_, name.c_str(), nullptr, nullptr, buffer.data(), &size);
  if (!succeeded(code)) return std::nullopt;
  return size;
}

std::vector<std::string> Win32RegistryKey::valueNames() {
  std::vector<std::string> names;
  std::vector<char> name(kNameRoom);
  for (DWORD index = 0;; ++index) {
    auto length = static_cast<DWORD>(name.size());
    const LONG code =
        RegEnumValueA(key_, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
    if (code != ERROR_SUCCESS) return names;
    names.emplace_back(name.data(), length);
  }
}

}  // namespace

std::unique_ptr<RegistryKey> UserRegistry::open(const std::string& path) {
  return Win32RegistryKey::open(HKEY_CURRENT_USER, path);
}

}  // namespace omniset
