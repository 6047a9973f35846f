#include "payload/loader/disk/volume_parameter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace omniset::loader::test {
namespace {

CommandLine commandLineOf(const std::string& text) {
  CommandLine line{};
  std::copy(text.begin(), text.end(), line.begin());
  return line;
}

TEST(AppendVolume, HasEightDigits) {
  CommandLine line = commandLineOf("initrd=initrd.rgz -hdd-install");
  EXPECT_TRUE(appendVolume(line, 0x1A2B3C4D));
  EXPECT_STREQ(line.data(), "initrd=initrd.rgz -hdd-install omniset.volume=1A2B3C4D");
}

TEST(AppendVolume, SmallNumbersHaveThemToo) {
  CommandLine line = commandLineOf("a");
  EXPECT_TRUE(appendVolume(line, 0));
  EXPECT_TRUE(appendVolume(line, 0xF0));
  EXPECT_STREQ(line.data(), "a omniset.volume=00000000 omniset.volume=000000F0");
}

TEST(AppendVolume, WithoutRoomNothingIsAppended) {
  constexpr std::size_t kAppended = 24;
  const std::size_t longest = CommandLine{}.size() - 1 - kAppended;
  CommandLine line = commandLineOf(std::string(longest, 'x'));
  EXPECT_TRUE(appendVolume(line, 1));
  EXPECT_EQ(std::string(line.data()).size(), line.size() - 1);
  line = commandLineOf(std::string(longest + 1, 'x'));
  EXPECT_FALSE(appendVolume(line, 1));
  EXPECT_EQ(line.data(), std::string(longest + 1, 'x'));
}

}  // namespace
}  // namespace omniset::loader::test
