#include <windows.h>

#include <gtest/gtest.h>

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "tests/contract/system_registry.h"
#include "ui/registry.h"

namespace omniset::test {

namespace {

// Deletes a key with all that is below it; an old system deletes empty keys only.
void deleteTree(HKEY parent, const std::string& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(parent, path.c_str(), 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS) return;
  char name[256];
  while (RegEnumKeyA(key, 0, name, sizeof name) == ERROR_SUCCESS) deleteTree(key, name);
  RegCloseKey(key);
  RegDeleteKeyA(parent, path.c_str());
}

class KeyOfThisProcess : public SystemRegistry {
 public:
  KeyOfThisProcess() { deleteTree(HKEY_CURRENT_USER, path_); }
  ~KeyOfThisProcess() override { deleteTree(HKEY_CURRENT_USER, path_); }
  KeyOfThisProcess(const KeyOfThisProcess&) = delete;
  KeyOfThisProcess& operator=(const KeyOfThisProcess&) = delete;

  std::unique_ptr<RegistryKey> open(const std::string& path) override {
    return user_.open(path_ + "\\" + path);
  }

 private:
  std::string path_ = "Software\\Omniset test " + std::to_string(GetCurrentProcessId());
  UserRegistry user_;
};

TEST(Win32Registry, KeyThatCannotBeOpenedRaises) {
  UserRegistry user;
  const std::string tooLong(300, 'x');
  const std::string text = raisedText<Error>([&] { Registry(user, "Software\\" + tooLong); });
  EXPECT_TRUE(text.starts_with("RegCreateKeyEx: ")) << text;
  EXPECT_EQ(text.find("Error code: 0"), std::string::npos) << text;
}

TEST(Win32Registry, ValueWithTooLongANameRaises) {
  const auto store = makeSystemRegistry();
  Registry key(*store, "Key");
  const std::string tooLong(20'000, 'x');
  const std::string text = raisedText<Error>([&] { key.setInteger(tooLong, 1); });
  EXPECT_TRUE(text.starts_with("int RegSetValueEx: ")) << text;
  EXPECT_EQ(text.find("Error code: 0"), std::string::npos) << text;
}

TEST(Win32Registry, IsTheUsersOwn) {
  const auto store = makeSystemRegistry();
  Registry(*store, "Key").setInteger("n", 7);
  const std::string path =
      "Software\\Omniset test " + std::to_string(GetCurrentProcessId()) + "\\Key";
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key), ERROR_SUCCESS);
  DWORD type = 0;
  DWORD value = 0;
  DWORD size = sizeof value;
  RegQueryValueExA(key, "N", nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
  RegCloseKey(key);
  EXPECT_EQ(type, DWORD{REG_DWORD});
  EXPECT_EQ(value, 7u);
}

}  // namespace

std::unique_ptr<SystemRegistry> makeSystemRegistry() {
  return std::make_unique<KeyOfThisProcess>();
}

}  // namespace omniset::test
