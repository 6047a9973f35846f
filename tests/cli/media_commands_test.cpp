// Whole runs of the commands "disk" and "floppy" on drives in memory.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/bad_input.h"
#include "cli/disk_command.h"
#include "cli/exit_status.h"
#include "cli/floppy_command.h"
#include "core/path.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_volumes.h"
#include "tests/fakes/temp_folder.h"
#include "tests/tools/bdl_builder.h"

namespace omniset::test {

namespace {

class MediaCommands : public testing::Test {
 protected:
  MediaCommands() {
    add("system.bdl", {.name = "system", .description = "Base"});
    add("routing.bdl", {.name = "routing", .description = "R", .dependencies = {{"system", 0, 0}}});
    add("other.bdl", {.name = "other", .description = "O"});
    volumes.drives['E'].files["old.txt"] = bytesOf("what was there");
    volumes.drives['F'].files["precious.txt"] = bytesOf("keep me");
    volumes.drives['A'].facts = {1'474'560, "", "", ""};
    disk.folder = folder.path();
    disk.select = {"routing"};
    disk.yes = true;
    floppy.label = "lab";
    floppy.yes = true;
  }

  void add(const std::string& name, const BdlPackage& package) {
    const std::string content = buildBdl(package);
    folder.write(name, content);
    volumes.files[joinPath(folder.path(), name)] = bytesOf(content);
  }

  int runDisk() {
    return makeDisk(disk, {'E', "E:\\", {}}, false, {out, err}, fakeServices(volumes, format));
  }
  int runFloppy() {
    return makeFloppy(floppy, {'A', "A:\\", {}}, false, {out, err}, fakeServices(volumes, format));
  }

  std::string refusalOfDisk() {
    const FakeDrive before = volumes.drives.at('E');
    try {
      runDisk();
    } catch (const BadInput& e) {
      EXPECT_EQ(volumes.drives.at('E'), before);
      EXPECT_TRUE(format.commandLines.empty());
      return e.what();
    }
    return "made";
  }

  std::vector<std::string> filesOn(char letter) {
    std::vector<std::string> names;
    for (const auto& [name, content] : volumes.drives.at(letter).files) names.push_back(name);
    return names;
  }

  bool says(const std::string& part) { return err.str().find(part) != std::string::npos; }

  SilentTrace silent;
  TempFolder folder;
  FakeVolumes volumes;
  FakeFormat format{volumes};
  DiskOptions disk;
  FloppyOptions floppy;
  std::ostringstream out, err;
};

using Names = std::vector<std::string>;

}  // namespace

TEST_F(MediaCommands, DiskGetsThePackagesWithWhatTheyNeed) {
  disk.baudRate = 115200;
  EXPECT_EQ(runDisk(), kExitDone);
  EXPECT_EQ(filesOn('E'), (Names{"autorun.scr", "initrd.rgz", "ldlinux.sys", "linux", "routing.bdl",
                                 "syslinux.cfg", "system.bdl"}));
  EXPECT_EQ(volumes.drives['E'].files["autorun.scr"],
            bytesOf("\n/port set [/port find] baud-rate=115200\n"));
  EXPECT_EQ(filesOn('F'), Names{"precious.txt"});
  EXPECT_EQ(out.str(), "E:\\  ok      Installation completed\n");
  EXPECT_TRUE(
      says("Erasing: E:\\ (64 MB, label \"CARD\"), contents: FAT16 volume\n"
           "Writing: the installer system and 2 packages (0 KB): system 1.0, routing 1.0; "
           "serial ports at 115200 baud\n"))
      << err.str();
  EXPECT_TRUE(says("The disk is ready. Put it into the router")) << err.str();
}

TEST_F(MediaCommands, DiskGetsTheOperatorsScript) {
  disk.script = folder.write("own.rsc", "/system reboot\n");
  volumes.files[disk.script] = bytesOf("/system reboot\n");
  EXPECT_EQ(runDisk(), kExitDone);
  EXPECT_EQ(volumes.drives['E'].files["autorun.scr"], bytesOf("/system reboot\n"));
  EXPECT_TRUE(says("; the script " + disk.script + "\n")) << err.str();
}

TEST_F(MediaCommands, WithoutYesNothingIsWritten) {
  disk.yes = false;
  floppy.yes = false;
  const auto before = volumes.drives;
  EXPECT_EQ(runDisk(), kExitBadInput);
  EXPECT_EQ(runFloppy(), kExitBadInput);
  EXPECT_EQ(volumes.drives, before);
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(err.str(),
            "Would erase: E:\\ (64 MB, label \"CARD\"), contents: FAT16 volume\n"
            "Would write: the installer system and 2 packages (0 KB): system 1.0, routing 1.0\n"
            "Nothing was written; add --yes to do it.\n"
            "Would erase: A:\\ (1440 KB, no label)\n"
            "Would write: the installer system and the label \"lab\"\n"
            "Nothing was written; add --yes to do it.\n");
}

TEST_F(MediaCommands, DriveWithAnObstacleIsRefusedUntouched) {
  volumes.drives['E'].facts.obstacle = "it is mounted on /mnt";
  EXPECT_EQ(refusalOfDisk(), "E:\\ cannot be used: it is mounted on /mnt.");
  volumes.drives['E'].facts.obstacle.clear();
  volumes.drives['E'].facts.bytes = 1'000;
  EXPECT_TRUE(refusalOfDisk().starts_with("E:\\ is too small"));
}

TEST_F(MediaCommands, UnreadableScriptIsRefusedUntouched) {
  disk.script = folder.path() + "/none.rsc";
  EXPECT_NE(refusalOfDisk().find("none.rsc' cannot be read"), std::string::npos);
}

TEST_F(MediaCommands, FailureIsTheResult) {
  format.startFailure = "Cannot start format";
  EXPECT_EQ(runDisk(), kExitFailed);
  EXPECT_EQ(out.str(), "E:\\  failed  Cannot start format\n");
  EXPECT_TRUE(says("E:\\  failed: Cannot start format\n")) << err.str();
  EXPECT_TRUE(says("The disk is not usable: mend what failed and run the command again."));
}

TEST_F(MediaCommands, JsonEndsWithTheResult) {
  disk.json = true;
  EXPECT_EQ(runDisk(), kExitDone);
  std::istringstream lines(out.str());
  nlohmann::json last;
  for (std::string line; std::getline(lines, line);) last = nlohmann::json::parse(line);
  EXPECT_EQ(last, nlohmann::json::parse(R"({"event":"result","device":"E:\\","ok":true,
                                            "text":"Installation completed"})"));
}

TEST_F(MediaCommands, FloppyGetsTheSystemAndTheLabel) {
  EXPECT_EQ(runFloppy(), kExitDone);
  EXPECT_EQ(filesOn('A'),
            (Names{"initrd.rgz", "label.txt", "ldlinux.sys", "linux", "syslinux.cfg"}));
  EXPECT_EQ(volumes.drives['A'].files["label.txt"], bytesOf("lab"));
  EXPECT_EQ(out.str(), "A:\\  ok      Completed\n");
  EXPECT_TRUE(says("The floppy is ready. Start the PC from it")) << err.str();
}

TEST_F(MediaCommands, DiskInPlaceOfAFloppyIsRefusedUntouched) {
  volumes.drives['A'].files["old.txt"] = bytesOf("what was there");
  volumes.drives['A'].facts.bytes = std::uint64_t{64} << 20;
  try {
    runFloppy();
    FAIL() << "made";
  } catch (const BadInput& e) {
    EXPECT_STREQ(e.what(), "A:\\ is no floppy: it has 64 MB.");
  }
  EXPECT_EQ(filesOn('A'), Names{"old.txt"});
  EXPECT_TRUE(format.commandLines.empty());
}

TEST_F(MediaCommands, FloppyThatFailsSaysWhy) {
  format.startFailure = "Cannot start format";
  EXPECT_EQ(runFloppy(), kExitFailed);
  EXPECT_EQ(out.str(), "A:\\  failed  Cannot start format\n");
}

}  // namespace omniset::test
