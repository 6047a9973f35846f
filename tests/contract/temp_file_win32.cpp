#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "core/error.h"
#include "core/temp_file.h"
#include "tests/contract/raised_text.h"

namespace omniset::test {
namespace {

// Gives the variable that leads to the temporary files another value while it lives.
class TmpVariable {
 public:
  explicit TmpVariable(const std::string& value) {
    char before[MAX_PATH] = "";
    GetEnvironmentVariableA("TMP", before, sizeof before);
    before_ = before;
    SetEnvironmentVariableA("TMP", value.c_str());
  }
  ~TmpVariable() { SetEnvironmentVariableA("TMP", before_.empty() ? nullptr : before_.c_str()); }
  TmpVariable(const TmpVariable&) = delete;
  TmpVariable& operator=(const TmpVariable&) = delete;

 private:
  std::string before_;
};

TEST(Win32TempFiles, MissingFolderRaises) {
  const TmpVariable tmp("C:\\no such folder");
  const std::string text = raisedText<Error>([] { SystemTempFiles().create("scr"); });
  EXPECT_TRUE(text.starts_with("GetTempFileName: ")) << text;
  EXPECT_EQ(text.find("Error code: 0"), std::string::npos) << text;
}

TEST(Win32TempFiles, FolderLongerThanItsRoomRaises) {
  const TmpVariable tmp("C:\\" + std::string(300, 'x'));
  const std::string text = raisedText<Error>([] { SystemTempFiles().create("scr"); });
  EXPECT_TRUE(text.starts_with("GetTempPath: ")) << text;
}

}  // namespace
}  // namespace omniset::test
