// Where the present user's settings are.
#include <stdlib.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "tests/fakes/temp_folder.h"
#include "ui/registry.h"
#include "ui/registry_keys_posix.h"

namespace omniset::test {
namespace {

// Gives a variable another value, or none, while it lives.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* before = getenv(name)) before_ = before;
    set(value);
  }
  ~Variable() { set(before_ ? before_->c_str() : nullptr); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  void set(const char* value) const {
    if (value) {
      setenv(name_, value, 1);
    } else {
      unsetenv(name_);
    }
  }

  const char* name_;
  std::optional<std::string> before_;
};

TEST(UserSettings, AreInTheConfigurationFolder) {
  const Variable home("HOME", "/home/someone");
  const Variable configuration("XDG_CONFIG_HOME", "/elsewhere");
  EXPECT_EQ(userSettingsPath(), "/elsewhere/omniset/settings.json");
}

TEST(UserSettings, AreInTheHomeFolderOtherwise) {
  const Variable home("HOME", "/home/someone");
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative"}) {
    const Variable configuration("XDG_CONFIG_HOME", value);
    EXPECT_EQ(userSettingsPath(), "/home/someone/.config/omniset/settings.json");
  }
}

TEST(UserSettings, AreWrittenThere) {
  const TempFolder folder;
  const Variable configuration("XDG_CONFIG_HOME", folder.path().c_str());
  UserRegistry store;
  Registry(store, "Key").setInteger("n", 1);
  EXPECT_EQ(readFile(folder.path() + "/omniset/settings.json"),
            "{\n  \"Key\": {\n    \"n\": 1\n  }\n}\n");
}

TEST(UserSettings, CannotBeOpenedWithoutAHome) {
  const Variable home("HOME", nullptr);
  const Variable configuration("XDG_CONFIG_HOME", nullptr);
  UserRegistry store;
  EXPECT_EQ(raisedText<Error>([&] { Registry(store, "Key"); }),
            "RegCreateKeyEx: No such file or directory\nError code: 2");
}

}  // namespace
}  // namespace omniset::test
