#include "ui/registry_keys_posix.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "core/os_error.h"
#include "ui/settings_file_posix.h"

namespace omniset {

namespace {

bool succeeded(int error) {
  if (error == 0) return true;
  setLastOsError(error);
  return false;
}

class FileRegistryKey : public RegistryKey {
 public:
  FileRegistryKey(const SettingsFile& file, std::string path)
      : file_(file), path_(std::move(path)) {}

  static std::unique_ptr<RegistryKey> open(const SettingsFile& file, const std::string& path);

  std::unique_ptr<RegistryKey> openSubKey(const std::string& name) override {
    return open(file_, path_ + "\\" + name);
  }
  bool write(const std::string& name, RegistryType type,
             std::span<const std::uint8_t> data) override;
  std::optional<RegistryType> typeOf(const std::string& name) override;
  std::optional<std::size_t> read(const std::string& name, std::span<std::uint8_t> buffer) override;
  std::vector<std::string> valueNames() override;
  bool remove(const std::string& name) override;
  bool close() override { return true; }

 private:
  std::optional<StoredValue> find(const std::string& name) const;

  SettingsFile file_;
  std::string path_;
};

// A key that is there already needs no leave to write.
std::unique_ptr<RegistryKey> FileRegistryKey::open(const SettingsFile& file,
                                                   const std::string& path) {
  StoredKeys keys;
  if (!succeeded(file.read(keys))) return nullptr;
  const auto create = [&](StoredKeys& changed) {
    changed[path];
    return 0;
  };
  if (!keys.find(path) && !succeeded(file.change(create))) return nullptr;
  return std::make_unique<FileRegistryKey>(file, path);
}

bool FileRegistryKey::write(const std::string& name, RegistryType type,
                            std::span<const std::uint8_t> data) {
  return succeeded(file_.change([&](StoredKeys& keys) {
    keys[path_][name] = {type, {data.begin(), data.end()}};
    return 0;
  }));
}

std::optional<StoredValue> FileRegistryKey::find(const std::string& name) const {
  StoredKeys keys;
  if (!succeeded(file_.read(keys))) return std::nullopt;
  const StoredKey* key = keys.find(path_);
  const StoredValue* value = key ? key->find(name) : nullptr;
  if (value) return *value;
  setLastOsError(ENOENT);
  return std::nullopt;
}

std::optional<RegistryType> FileRegistryKey::typeOf(const std::string& name) {
  const auto value = find(name);
  if (!value) return std::nullopt;
  return value->type;
}

std::optional<std::size_t> FileRegistryKey::read(const std::string& name,
                                                 std::span<std::uint8_t> buffer) {
  const auto value = find(name);
  if (!value) return std::nullopt;
  if (value->data.size() > buffer.size()) {
    setLastOsError(ERANGE);
    return std::nullopt;
  }
  std::copy(value->data.begin(), value->data.end(), buffer.begin());
  return value->data.size();
}

std::vector<std::string> FileRegistryKey::valueNames() {
  StoredKeys keys;
  std::vector<std::string> names;
  if (!succeeded(file_.read(keys))) return names;
  if (const StoredKey* key = keys.find(path_)) {
    for (const auto& entry : *key) names.push_back(entry.first);
  }
  return names;
}

bool FileRegistryKey::remove(const std::string& name) {
  return succeeded(
      file_.change([&](StoredKeys& keys) { return keys[path_].erase(name) ? 0 : ENOENT; }));
}

}  // namespace

std::unique_ptr<RegistryKey> FileRegistry::open(const std::string& path) {
  return FileRegistryKey::open(SettingsFile(path_, patience_), path);
}

// A path that is not absolute is to be ignored there.
std::string userSettingsPath() {
  const char* configuration = std::getenv("XDG_CONFIG_HOME");
  const char* home = std::getenv("HOME");
  std::string folder;
  if (configuration && *configuration == '/') {
    folder = configuration;
  } else if (home && *home) {
    folder = std::string(home) + "/.config";
  } else {
    return {};
  }
  return folder + "/omniset/settings.json";
}

std::unique_ptr<RegistryKey> UserRegistry::open(const std::string& path) {
  const std::string file = userSettingsPath();
  if (!file.empty()) return FileRegistry(file).open(path);
  setLastOsError(ENOENT);
  return nullptr;
}

}  // namespace omniset
