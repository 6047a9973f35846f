// The boot images in the real program: what other tools that read its resources find.
#include <gmock/gmock.h>
#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "tests/win/driver/waiting.h"

namespace omniset::test {
namespace {

constexpr int kBinaryData = 10;  // RT_RCDATA

class BootImages : public ::testing::Test {
 protected:
  BootImages() {
    const char* program = std::getenv("OMNISET_TEST_PROGRAM");
    if (!program) throw WindowFault("OMNISET_TEST_PROGRAM is not set; run tests/win/window_run");
    program_ = LoadLibraryExA(program, nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (!program_) throw WindowFault(std::string(program) + " cannot be loaded");
  }
  ~BootImages() override { FreeLibrary(program_); }

  // The content, whose length stands before it.
  std::string image(int number) const {
    const HRSRC found =
        FindResourceA(program_, MAKEINTRESOURCEA(number), MAKEINTRESOURCEA(kBinaryData));
    if (!found) throw WindowFault("there is no image " + std::to_string(number));
    const auto* stored = static_cast<const char*>(LockResource(LoadResource(program_, found)));
    std::uint32_t length = 0;
    std::memcpy(&length, stored, sizeof length);
    if (SizeofResource(program_, found) < sizeof length + length) {
      throw WindowFault("image " + std::to_string(number) + " is cut off");
    }
    return {stored + sizeof length, length};
  }

 private:
  HMODULE program_;
};

TEST_F(BootImages, ConfigurationsAreStoredToTheLetter) {
  const std::string local =
      "LABEL linux\n\tKERNEL linux\n\tAPPEND load_ramdisk=1 initrd=initrd.rgz";
  EXPECT_EQ(image(123), local + "\n");
  EXPECT_EQ(image(124), local + " -hdd-install\n");
  EXPECT_EQ(image(126), "TIMEOUT 200\nLABEL linux\n\tKERNEL linux\n\tAPPEND initrd=initrd.rgz\n");
}

TEST_F(BootImages, LoadersHaveTheirFixedLengths) {
  EXPECT_EQ(image(122).size(), 7'836u);
  EXPECT_EQ(image(125).size(), 10'824u);
  EXPECT_EQ(image(127).size(), 22'396u);
}

TEST_F(BootImages, KernelAndRamDiskAreWhole) {
  const std::string kernel = image(120);
  ASSERT_GT(kernel.size(), 0x206u);
  EXPECT_EQ(kernel.substr(0x1FE, 2), "\x55\xAA");
  EXPECT_EQ(kernel.substr(0x202, 4), "HdrS");
  EXPECT_EQ(image(121).substr(0, 2), "\x1F\x8B");
}

}  // namespace
}  // namespace omniset::test
