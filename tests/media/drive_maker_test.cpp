#include "media/drive_maker.h"

#include <thread>

#include "core/error.h"
#include "core/thread.h"
#include "tests/media/media_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

class MakingADrive : public MediaFixture {};

TEST_F(MakingADrive, PutsTheInstallerSystemThePackagesAndTheScriptOnIt) {
  EXPECT_EQ(make(plainInfo()).statusText, "Installation completed");
  EXPECT_THAT(
      volumes.drives['E'].files,
      ElementsAre(Pair("autorun.scr", bytesOf("")), Pair("initrd.rgz", bytesOf("image 121")),
                  Pair("ldlinux.sys", bytesOf("image 122")), Pair("linux", bytesOf("image 120")),
                  Pair("routing-2.9.bdl", bytesOf("routes")),
                  Pair("syslinux.cfg", bytesOf("image 124")),
                  Pair("system-2.9.bdl", bytesOf("the system"))));
}

TEST_F(MakingADrive, WritesItsFilesInTheOrderOfTheirUse) {
  make(plainInfo());
  std::vector<std::string> created;
  for (const std::string& call : volumes.calls) {
    if (call.starts_with("create ")) created.push_back(call.substr(7));
    if (call.starts_with("overwrite ")) created.push_back(call.substr(10));
  }
  EXPECT_THAT(created,
              ElementsAre("E:\\linux", "E:\\initrd.rgz", "E:\\ldlinux.sys", "E:\\syslinux.cfg",
                          "E:\\system-2.9.bdl", "E:\\routing-2.9.bdl", "E:\\autorun.scr"));
}

TEST_F(MakingADrive, ReportsItsEndWithAllBytes) {
  const DriveReport report = make(plainInfo());
  EXPECT_EQ(report.state, RouterStatus::kFinished);
  EXPECT_EQ(report.totalBytes, 1000);
  EXPECT_EQ(report.bytesDone, 1000);
}

// The bytes of a package count when the next one begins.
TEST_F(MakingADrive, ReportsEachStepWithWhatIsDone) {
  DriveMaker maker(plainInfo(), fakeServices(volumes, format), 1000);
  std::vector<std::string> reports;
  volumes.onCall = [&] {
    while (const auto report = maker.reports().pop()) {
      EXPECT_EQ(report->state, RouterStatus::kInstalling);
      EXPECT_EQ(report->totalBytes, 1000);
      reports.push_back(std::to_string(report->bytesDone) + " " + report->statusText);
    }
  };
  maker.run();
  EXPECT_THAT(reports,
              ElementsAre("0 Formatting drive...", "0 Copying system files...",
                          "0 Copying file: system-2.9.bdl", "10 Copying file: routing-2.9.bdl",
                          "16 Checking what was written..."));
}

TEST_F(MakingADrive, CallsTheSystemInThisOrder) {
  RInfo what = plainInfo();
  what.packageFiles = {"system-2.9.bdl"};
  what.useScriptFile = true;
  what.scriptFile = "first.rsc";
  what.baudRate = 9600;
  make(what);
  const auto whole = [](const std::string& file) {
    return std::vector<std::string>{"create " + file, "write " + file, "close " + file};
  };
  std::vector<std::string> expected = {"open volume E",  "control 2d1080 volume E",
                                       "close volume E", "open disk 3",
                                       "seek disk 3",    "write disk 3",
                                       "close disk 3"};
  const auto then = [&](const std::vector<std::string>& calls) {
    expected.insert(expected.end(), calls.begin(), calls.end());
  };
  for (const char* name : {"linux", "initrd.rgz", "ldlinux.sys", "syslinux.cfg"}) {
    then(whole(std::string("E:\\") + name));
  }
  const std::string package = joinPath("packages", "system-2.9.bdl");
  const std::string copy = "E:\\system-2.9.bdl";
  then({"look at " + package, "size " + package, "close " + package, "open " + package,
        "overwrite " + copy, "read " + package, "write " + copy, "read " + package, "close " + copy,
        "close " + package});
  // The script has 10,001 bytes, which come in pieces of 4096.
  then({"create E:\\autorun.scr", "open first.rsc"});
  for (int piece = 0; piece < 3; ++piece) then({"read first.rsc", "write E:\\autorun.scr"});
  then({"read first.rsc", "close first.rsc", "write E:\\autorun.scr", "close E:\\autorun.scr"});
  then({"open volume E", "seek volume E", "read volume E", "seek volume E", "write volume E",
        "close volume E", "flush E"});
  ASSERT_GT(volumes.calls.size(), expected.size());
  volumes.calls.resize(expected.size());
  EXPECT_EQ(volumes.calls, expected);
}

TEST_F(MakingADrive, ReadsEverythingBack) {
  make(plainInfo());
  std::vector<std::string> opened;
  for (const std::string& call : volumes.calls) {
    if (call.starts_with("open written ")) opened.push_back(call.substr(13));
  }
  EXPECT_THAT(opened,
              ElementsAre("E:\\linux", "E:\\initrd.rgz", "E:\\ldlinux.sys", "E:\\syslinux.cfg",
                          "E:\\system-2.9.bdl", "E:\\routing-2.9.bdl", "E:\\autorun.scr"));
}

TEST_F(MakingADrive, FailsForABootSectorThatDoesNotReadBack) {
  volumes.corrupt = [](const std::string& name, Bytes& bytes) {
    if (name == "volume E") bytes[300] ^= 1;
  };
  EXPECT_EQ(make(plainInfo()).statusText, "The boot sector differs from what was written");
}

// A call of the system that hangs holds the job, and nobody else; then it ends by itself.
TEST_F(MakingADrive, EndsBehindACallThatHung) {
  Event isHanging(true, false);
  Event goesOn(true, false);
  volumes.onCall = [&] {
    if (!volumes.drives['E'].files.contains("ldlinux.sys")) return;
    isHanging.set();
    goesOn.wait();
  };
  constexpr int kStopMs = 10;
  Thread<DriveMaker, RInfo> thread("drive maker", kStopMs, plainInfo(),
                                   fakeServices(volumes, format), 1000);
  thread.start();
  ASSERT_TRUE(isHanging.wait(10'000));
  thread.stop();
  EXPECT_EQ(thread.exitCode(), ThreadBase::kStillActive);
  EXPECT_TRUE(trace.contains("ignoring 'terminate': drive maker"));
  goesOn.set();
  while (thread.exitCode() == ThreadBase::kStillActive) std::this_thread::yield();
  EXPECT_EQ(thread.job().reports().pop()->statusText, "Canceled");
  EXPECT_EQ(volumes.openDevices, 0);
}

TEST_F(MakingADrive, WipesTheBootRecordBeforeTheFormat) {
  format.behaviour = FakeFormat::Behaviour::kDoesNothing;
  volumes.drives['E'].files.clear();
  volumes.drives['E'].firstSector = formattedSector(5);
  make(plainInfo());
  // Without a format nothing but the boot sector's own bytes came over the zeros.
  EXPECT_EQ(volumes.drives['E'].firstSector[20], 0);
  EXPECT_EQ(volumes.drives['E'].firstSector[511], 0);
}

TEST_F(MakingADrive, LeavesTheParameterBlockOfTheFormat) {
  make(plainInfo());
  const DriveSector& sector = volumes.drives['E'].firstSector;
  EXPECT_TRUE(
      std::equal(sector.begin() + 11, sector.begin() + 62, formattedSector(1).begin() + 11));
  EXPECT_TRUE(
      std::equal(sector.begin() + 62, sector.begin() + 510, bootSectorTemplate.begin() + 62));
}

TEST_F(MakingADrive, TouchesNoOtherDrive) {
  const FakeDrive neighbour = volumes.drives['F'];
  make(plainInfo());
  EXPECT_EQ(volumes.drives['F'], neighbour);
}

TEST_F(MakingADrive, TracesWhereTheVolumeIs) {
  make(plainInfo());
  EXPECT_THAT(trace.text(), HasSubstr("device number:3\npartition number:2\n"));
}

TEST_F(MakingADrive, FormatsOnceOnWindows2000AndTwiceOnXpAnd2003) {
  const auto formatsOn = [&](SystemVersion system) {
    volumes.system = system;
    format.commandLines.clear();
    make(plainInfo());
    return format.commandLines.size();
  };
  EXPECT_EQ(formatsOn({true, 5, 0}), 1u);
  EXPECT_EQ(formatsOn({true, 5, 1}), 2u);
  EXPECT_EQ(formatsOn({true, 5, 2}), 2u);
  EXPECT_EQ(formatsOn({true, 6, 1}), 1u);
}

TEST_F(MakingADrive, WithASpeedAloneTheScriptIsItsLine) {
  RInfo what = plainInfo();
  what.baudRate = 115200;
  make(what);
  EXPECT_EQ(fileOn('E', "autorun.scr"), "\n/port set [/port find] baud-rate=115200\n");
}

TEST_F(MakingADrive, CopiesTheOperatorsScriptByteForByteAndAppendsTheSpeed) {
  RInfo what = plainInfo();
  what.useScriptFile = true;
  what.scriptFile = "first.rsc";
  make(what);
  EXPECT_EQ(fileOn('E', "autorun.scr"), std::string(10'000, 's') + "\n");
  what.baudRate = 9600;
  make(what);
  EXPECT_EQ(fileOn('E', "autorun.scr"),
            std::string(10'000, 's') + "\n\n/port set [/port find] baud-rate=9600\n");
}

TEST_F(MakingADrive, AScriptThatIsNotUsedIsNotRead) {
  RInfo what = plainInfo();
  what.scriptFile = "no such file";
  EXPECT_EQ(make(what).state, RouterStatus::kFinished);
}

TEST_F(MakingADrive, FailsForAMissingScript) {
  RInfo what = plainInfo();
  what.useScriptFile = true;
  what.scriptFile = "gone.rsc";
  make(what);
  EXPECT_EQ(lastFailure, "Cannot open script");
}

// Its size is taken first.
TEST_F(MakingADrive, FailsForAPackageThatIsGone) {
  volumes.files.erase(joinPath("packages", "routing-2.9.bdl"));
  const DriveReport report = make(plainInfo());
  EXPECT_EQ(lastFailure, "Cannot open file");
  EXPECT_EQ(report.state, RouterStatus::kFailed);
  EXPECT_EQ(report.statusText, "Cannot open file");
  EXPECT_EQ(report.bytesDone, 10);
}

TEST_F(MakingADrive, FailsWhereTheFormatLeftFiles) {
  format.behaviour = FakeFormat::Behaviour::kDoesNothing;
  volumes.drives['E'].files["linux"] = bytesOf("protected");
  make(plainInfo());
  EXPECT_EQ(lastFailure, "Cannot create file");
}

TEST_F(MakingADrive, FailsWithTheNameOfAFileThatDoesNotReadBack) {
  for (const std::string name : {"linux", "initrd.rgz", "ldlinux.sys", "syslinux.cfg",
                                 "system-2.9.bdl", "routing-2.9.bdl", "autorun.scr"}) {
    volumes.corrupt = [&](const std::string& path, Bytes& bytes) {
      if (path == "E:\\" + name) bytes.back() ^= 1;
    };
    RInfo what = plainInfo();
    what.baudRate = 9600;
    EXPECT_EQ(make(what).statusText, "E:\\" + name + " differs from what was written");
  }
}

TEST_F(MakingADrive, EndsWhenItIsAskedTo) {
  DriveMaker maker(plainInfo(), fakeServices(volumes, format), 16);
  format.behaviour = FakeFormat::Behaviour::kHangs;
  maker.stopEvent().set();
  EXPECT_THROW(maker.run(), Failure);
  EXPECT_EQ(maker.reports().pop()->statusText, "Canceled");
  EXPECT_EQ(format.terminated, 1);
  EXPECT_EQ(format.openProcesses, 0);
}

}  // namespace
}  // namespace omniset::test
