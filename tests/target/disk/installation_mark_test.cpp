#include "target/disk/installation_mark.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "core/format_text.h"
#include "disk_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const MarkedFiles kFiles{
    {"system-2.9.7.bdl", 12345, 0x89ABCDEF}, {"a b.bdl", 4294967295, 1}, {"autorun.scr", 0, 0}};

// A mark of these lines, with the checksum that belongs to them.
std::string checkedMark(const std::string& lines) {
  Crc32 crc;
  crc.add(asBytes(lines));
  return lines + formatText("check %08x\n", static_cast<unsigned>(crc.value()));
}

std::string markOfLine(const std::string& line) {
  return checkedMark("Omniset installation 1\n" + line + "\n");
}

TEST(InstallationMark, ListsTheFiles) {
  const std::string text = makeMark(kFiles);
  const std::string lines =
      "Omniset installation 1\n"
      "89abcdef 12345 system-2.9.7.bdl\n"
      "00000001 4294967295 a b.bdl\n"
      "00000000 0 autorun.scr\n";
  EXPECT_EQ(text, checkedMark(lines));
}

TEST(InstallationMark, ComesBackAsItWasMade) {
  EXPECT_EQ(parseMark(makeMark(kFiles)), kFiles);
  EXPECT_EQ(parseMark(makeMark({})), MarkedFiles{});
}

TEST(InstallationMark, IsNoneWhenItIsCutOrChangedAnywhere) {
  const std::string text = makeMark(kFiles);
  for (std::size_t i = 0; i < text.size(); ++i) {
    EXPECT_FALSE(parseMark(text.substr(0, i))) << i;
    for (int bit = 0; bit < 8; ++bit) {
      std::string changed = text;
      changed[i] = static_cast<char>(changed[i] ^ 1 << bit);
      EXPECT_FALSE(parseMark(changed)) << i;
    }
  }
}

TEST(InstallationMark, TheTextOfAnInstallationThatHasBegunIsNone) {
  EXPECT_FALSE(parseMark(kBegunMark));
  EXPECT_FALSE(parseMark(""));
}

TEST(InstallationMark, TakesOnlyTheFormThatItIsMadeIn) {
  EXPECT_TRUE(parseMark(markOfLine("0000000a 1 x")));
  for (const char* line : {"",
                           " ",
                           "0000000a",
                           "0000000a 1",
                           "0000000a 1 ",
                           "0000000A 1 x",
                           "a 1 x",
                           "00000000a 1 x",
                           "0x00000a 1 x",
                           "0000000a 01 x",
                           "0000000a +1 x",
                           "0000000a -1 x",
                           "0000000a 4294967296 x",
                           "100000000 1 x",
                           "0000000a  1 x",
                           "0000000a\t1 x",
                           "0000000a 1x",
                           " 0000000a 1 x",
                           "0000000a 1 x\n",
                           "check 00000000"}) {
    EXPECT_FALSE(parseMark(markOfLine(line))) << line;
  }
}

TEST(InstallationMark, TakesOnlyItsFirstAndLastLine) {
  EXPECT_FALSE(parseMark(checkedMark("")));
  EXPECT_FALSE(parseMark(checkedMark("Omniset installation 2\n")));
  EXPECT_FALSE(parseMark(checkedMark("Omniset installation 1")));
  EXPECT_FALSE(parseMark(checkedMark("Omniset installation 1\n0000000a 1 x")));
  EXPECT_FALSE(parseMark(makeMark({}) + "\n"));
  EXPECT_FALSE(parseMark(makeMark({}) + makeMark({})));
}

TEST(InstallationMark, TakesNoNameThatTheStoreWouldRefuse) {
  for (const std::string& name :
       {std::string("../x"), std::string("a/b"), std::string(".x"), std::string("OMNISET.OK"),
        std::string("omniset.tmp"), std::string("a\0b", 3), std::string(201, 'n')}) {
    EXPECT_FALSE(parseMark(makeMark({{name, 1, 1}}))) << name;
  }
}

TEST(InstallationMark, HasABoundedNumberOfFiles) {
  MarkedFiles files(kMostMarkedFiles, {std::string(200, 'n'), 0xFFFFFFFF, 0});
  const std::string text = makeMark(files);
  EXPECT_LE(text.size(), kLongestMark);
  EXPECT_EQ(parseMark(text), files);
  files.push_back(files[0]);
  EXPECT_FALSE(parseMark(makeMark(files)));
}

TEST(InstallationMark, HasABoundedLength) {
  std::string lines = "Omniset installation 1\n";
  while (lines.size() <= kLongestMark) lines += "0000000a 1 " + std::string(200, 'n') + "\n";
  EXPECT_FALSE(parseMark(checkedMark(lines)));
}

TEST(InstallationMark, AnyBytesDoNoHarm) {
  std::mt19937 random(1);
  for (int i = 0; i < 20'000; ++i) {
    std::string text = i % 2 ? makeMark(kFiles) : std::string(random() % 200, ' ');
    for (int j = 0; j < 3 && !text.empty(); ++j) {
      text[random() % text.size()] = static_cast<char>(random());
    }
    const auto files = parseMark(text);
    if (files) {
      EXPECT_EQ(makeMark(*files), text);
    }
  }
}

TEST(InstallationMark, OwnNamesAreNoFilesOfAnInstallation) {
  for (const char* name : {"omniset.ok", "OmniSet.OK", "omniset.tmp", "OMNISET.TMP"}) {
    EXPECT_FALSE(isFileName(name)) << name;
  }
  EXPECT_TRUE(isFileName("omniset.bdl"));
}

}  // namespace
}  // namespace omniset::test
