#include "cli/arguments.h"

#include "parse_arguments.h"

namespace omniset::test {

TEST(Arguments, PackagesTakesAFolder) {
  const auto options = understood<PackagesOptions>("packages some/folder");
  EXPECT_EQ(options.folder, "some/folder");
  EXPECT_FALSE(options.json);
  EXPECT_TRUE(understood<PackagesOptions>("packages x --json").json);
}

TEST(Arguments, PackagesWithoutAFolderIsRefused) {
  expectComplaint("packages", "Say which folder to list: omniset-cli packages FOLDER.");
}

TEST(Arguments, RoutersListensFiveSecondsUnlessTold) {
  EXPECT_EQ(understood<RoutersOptions>("routers").listen, 5 * kSecond);
  const auto options = understood<RoutersOptions>("routers --seconds 12 --interface eth1 --json");
  EXPECT_EQ(options.listen, 12 * kSecond);
  EXPECT_EQ(options.interfaceName, "eth1");
  EXPECT_TRUE(options.json);
}

TEST(Arguments, SecondsAreAWholeNumberFromOne) {
  for (const char* bad : {"0", "-3", "1.5", "abc", "1000001", "5s", "99999999999999"}) {
    expectComplaint(std::string("routers --seconds ") + bad, "is not a number of seconds");
  }
}

TEST(Arguments, TraceIsAFlagOfEachCommand) {
  for (const char* line : {"packages x", "routers", "install --packages x --select-all --all",
                           "boot --client 10.0.0.7", "drives",
                           "floppy --device A:", "disk --device E: --packages x --select-all"}) {
    EXPECT_FALSE(std::get<Arguments>(parseArguments(words(line))).trace);
    EXPECT_TRUE(std::get<Arguments>(parseArguments(words(std::string(line) + " --trace"))).trace);
  }
}

TEST(Arguments, NoCommandIsRefusedWithTheCommands) {
  expectComplaint("", "Say what to do: packages, routers, install, boot, drives, disk or floppy.");
}

TEST(Arguments, UnknownWordsAreRefusedWithTheWayToHelp) {
  expectComplaint("frobnicate", "frobnicate");
  expectComplaint("frobnicate", "Run \"omniset-cli --help\" for help.");
  expectComplaint("install --frobnicate", "--frobnicate");
  expectComplaint("install --frobnicate", "Run \"omniset-cli install --help\" for help.");
  expectComplaint("routers extra", "extra");
}

TEST(Arguments, OptionWithoutItsValueIsRefused) {
  expectComplaint("routers --seconds", "--seconds");
}

TEST(Arguments, ComplaintsShowNoControlCharacters) {
  const auto parsed = parseArguments({"routers", "--seconds", "\x1b[2J"});
  const EarlyEnd end = std::get<EarlyEnd>(parsed);
  EXPECT_EQ(end.text.find('\x1b'), std::string::npos);
  const auto unknown = parseArguments({"routers", "\x1b[2J"});
  EXPECT_EQ(std::get<EarlyEnd>(unknown).text.find('\x1b'), std::string::npos);
}

TEST(Arguments, VersionIsPrinted) {
  const EarlyEnd end = ended("--version");
  EXPECT_EQ(end.exitCode, kExitDone);
  EXPECT_TRUE(end.text.starts_with("omniset-cli "));
}

TEST(Arguments, HelpNamesTheCommands) {
  const EarlyEnd end = ended("--help");
  EXPECT_EQ(end.exitCode, kExitDone);
  for (const char* command :
       {"packages", "routers", "install", "boot", "drives", "disk", "floppy"}) {
    EXPECT_NE(end.text.find(command), std::string::npos);
  }
}

TEST(Arguments, HelpOfEachCommandHasAnExampleOfItAndFitsATerminal) {
  for (const std::string command :
       {"packages", "routers", "install", "boot", "drives", "disk", "floppy"}) {
    const EarlyEnd end = ended(command + " --help");
    EXPECT_EQ(end.exitCode, kExitDone);
    EXPECT_NE(end.text.find("Usage: omniset-cli " + command), std::string::npos);
    EXPECT_NE(end.text.find("  omniset-cli " + command + " "), std::string::npos);
    std::istringstream lines(end.text);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
  }
}

}  // namespace omniset::test
