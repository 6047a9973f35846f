// A store of settings in memory. Its keys need it for as long as they live.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "core/os_error.h"
#include "ui/stored_values.h"

namespace omniset::test {

class FakeRegistry : public RegistryRoot {
 public:
  std::unique_ptr<RegistryKey> open(const std::string& path) override;

  StoredKeys keys;                 // what is stored
  std::vector<std::string> calls;  // "open KEY", "write NAME", "read NAME", "remove NAME", "close"
  std::string failing;             // the call of this text fails
  static constexpr long kFailureCode = 5;

  // Notes the call; false, with the last error set, when it fails.
  bool allows(const std::string& call) {
    calls.push_back(call);
    if (call != failing) return true;
    setLastOsError(kFailureCode);
    return false;
  }
};

class FakeRegistryKey : public RegistryKey {
 public:
  FakeRegistryKey(FakeRegistry& store, std::string path) : store_(store), path_(std::move(path)) {}

  std::unique_ptr<RegistryKey> openSubKey(const std::string& name) override {
    return store_.open(path_ + "\\" + name);
  }
  bool write(const std::string& name, RegistryType type,
             std::span<const std::uint8_t> data) override {
    if (!store_.allows("write " + name)) return false;
    store_.keys[path_][name] = {type, {data.begin(), data.end()}};
    return true;
  }
  std::optional<RegistryType> typeOf(const std::string& name) override {
    const StoredValue* value = find(name);
    if (!value) return std::nullopt;
    return value->type;
  }
  std::optional<std::size_t> read(const std::string& name,
                                  std::span<std::uint8_t> buffer) override {
    const StoredValue* value = find(name);
    if (!value || value->data.size() > buffer.size()) return std::nullopt;
    std::copy(value->data.begin(), value->data.end(), buffer.begin());
    return value->data.size();
  }
  std::vector<std::string> valueNames() override {
    std::vector<std::string> names;
    for (const auto& entry : store_.keys[path_]) names.push_back(entry.first);
    return names;
  }
  bool remove(const std::string& name) override {
    return store_.allows("remove " + name) && store_.keys[path_].erase(name);
  }
  bool close() override { return store_.allows("close"); }

 private:
  const StoredValue* find(const std::string& name) {
    if (!store_.allows("read " + name)) return nullptr;
    const StoredValue* value = store_.keys[path_].find(name);
    if (!value) setLastOsError(FakeRegistry::kFailureCode);
    return value;
  }

  FakeRegistry& store_;
  std::string path_;
};

inline std::unique_ptr<RegistryKey> FakeRegistry::open(const std::string& path) {
  if (!allows("open " + path)) return nullptr;
  keys[path];
  return std::make_unique<FakeRegistryKey>(*this, path);
}

}  // namespace omniset::test
