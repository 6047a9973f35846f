// Local drives in the main window: their rows, what the operator is asked, the job that installs
// onto one.
#include "ui/workflow/local_drives.h"

#include <gmock/gmock.h>

#include <cstdio>

#include "workflow_fixture.h"

namespace omniset::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Said = std::vector<std::string>;

constexpr std::uint32_t bitOf(char letter) {
  return 1u << (letter - 'A');
}

const std::string kEraseE =
    "Warning: Everything on drive E:\\ (64 MB, label \"CARD\") will be erased. Proceed?";

class LocalDrivesTest : public WorkflowTest {
 protected:
  // The system's drive, a floppy, a CD-ROM, a card reader and a second hard disk.
  LocalDrivesTest() {
    volumes.drives['A'];
    volumes.drives['C'].type = 3;
    volumes.drives['D'].type = 5;
    volumes.drives['E'];
    volumes.drives['F'].type = 3;
    workflow.listDrives();
  }

  const RouterRecord* drive(char letter) { return routers.find(driveAddress(letter)); }
  std::vector<std::string> labels() const {
    std::vector<std::string> labels;
    for (const auto& row : rows.rows) labels.push_back(row.texts[0]);
    return labels;
  }

  // The card reader, with the base system marked.
  void selectCard() {
    select(0);
    toggle("system");
  }
  void installOntoCard() {
    selectCard();
    workflow.install();
  }
  // What must hold when the operator or a check said no.
  void expectNothingStarted() {
    EXPECT_THAT(driveJob.started, IsEmpty());
    EXPECT_EQ("Ready", statusOf(0));
    EXPECT_EQ(nullptr, sets.find(kPreviousInstall));
    EXPECT_THAT(view.sets, IsEmpty());
    EXPECT_TRUE(temporary.names().empty());
    EXPECT_EQ(0u, remembered.address);
    for (const std::string& call : volumes.calls) {
      EXPECT_THAT(call, testing::Not(testing::AnyOf(HasSubstr("write"), HasSubstr("create"))));
    }
  }
};

}  // namespace

TEST_F(LocalDrivesTest, AreListedButForTheSystemsAndTheFloppy) {
  ASSERT_THAT(labels(), ElementsAre("E:\\", "F:\\"));
  EXPECT_EQ("Removable media", rows.at(0).texts[1]);
  EXPECT_EQ(4, rows.at(0).image);
  EXPECT_EQ("Hard disk", rows.at(1).texts[1]);
  EXPECT_EQ(3, rows.at(1).image);
  EXPECT_EQ("Ready", statusOf(0));
  EXPECT_TRUE(trace.contains("drive: E:\\"));
}

TEST_F(LocalDrivesTest, AreNotWokenUpToBeListed) {
  EXPECT_THAT(volumes.calls, testing::Each(testing::Not(HasSubstr("open"))));
}

TEST_F(LocalDrivesTest, StartWithTheRememberedRequest) {
  remembered.address = addressOf("10.0.0.1");
  remembered.baudRate = 115200;
  remembered.keepConfiguration = true;
  sets.add(kPreviousInstall, {"system"});
  volumes.drives['G'];
  workflow.drivesChanged();
  EXPECT_EQ("", fieldsOf(*drive('G')).address);
  EXPECT_EQ(115200, drive('G')->baudRate);
  EXPECT_FALSE(drive('G')->keepConfiguration);
  EXPECT_THAT(drive('G')->packages, ElementsAre("system"));
}

TEST_F(LocalDrivesTest, StayWhenTheyAreSilent) {
  clock.advance(600 * kSecond);
  workflow.poll();
  EXPECT_EQ(2u, routers.count());
}

TEST_F(LocalDrivesTest, ComeAndGoWhileTheWindowIsOpen) {
  volumes.drives.erase('E');
  volumes.drives['G'];
  workflow.drivesChanged();
  EXPECT_THAT(labels(), ElementsAre("F:\\", "G:\\"));
  EXPECT_EQ("Ready", statusOf(1));
}

TEST_F(LocalDrivesTest, LetterThatIsAnotherDriveNowHasAFreshRow) {
  volumes.drives['E'].type = 3;
  workflow.drivesChanged();
  EXPECT_THAT(labels(), ElementsAre("F:\\", "E:\\"));
  EXPECT_EQ("Hard disk", rows.at(1).texts[1]);
}

TEST_F(LocalDrivesTest, FailureToListThemIsRaisedAtTheStartAndTracedLater) {
  struct NoDrives : VolumesWithFiles {
    std::vector<std::string> driveStrings() override { throw Error("GetLogicalDriveStrings"); }
  } none;
  LocalDrives without(routers, fakeServices(none, format), driveJob, person);
  Workflow other({installer, routers, without, catalogue, sets, remembered, registry, statusBar,
                  view, person});
  EXPECT_THROW(other.listDrives(), Error);
  EXPECT_NO_THROW(other.drivesChanged());
  EXPECT_TRUE(trace.contains("looking for drives: GetLogicalDriveStrings"));
  EXPECT_EQ(2u, routers.count());
}

TEST_F(LocalDrivesTest, AnnouncementsNeverTouchThem) {
  installOntoCard();
  clock.advance(10 * kSecond);
  PlayedTarget target(*network, driveAddress('E'), "an impostor");
  target.announce();
  PlayedTarget unknown(*network, driveAddress('Q'), "another");
  unknown.announce();
  turn();
  EXPECT_THAT(labels(), ElementsAre("E:\\", "F:\\"));
  EXPECT_EQ("Installing", statusOf(0));
}

TEST_F(LocalDrivesTest, InstallationGoesThroughItsReportsToItsEnd) {
  selectCard();
  workflow.install();
  EXPECT_EQ(Said{kEraseE}, person.said);
  EXPECT_EQ("Installing", statusOf(0));
  EXPECT_FALSE(view.controls.install);
  EXPECT_TRUE(view.controls.cancel);
  driveJob.says("Formatting drive...", 0);
  turn();
  EXPECT_EQ("Formatting drive...", view.statusLine);
  EXPECT_EQ(0, view.progress);
  driveJob.says("Copying file: system.bdl", driveJob.total / 2 + 1);
  turn();
  EXPECT_EQ("Copying file: system.bdl", view.statusLine);
  EXPECT_EQ(50, view.progress);
  driveJob.completes();
  turn();
  EXPECT_EQ("OK", statusOf(0));
  EXPECT_EQ("Installation completed", view.statusLine);
  EXPECT_EQ(100, view.progress);
  EXPECT_EQ("Ready", statusOf(1));
}

TEST_F(LocalDrivesTest, JobGetsTheDriveThePackagesAndTheirSize) {
  select(1);
  toggle("routing");
  workflow.install();
  ASSERT_EQ(1u, driveJob.started.size());
  const RInfo& what = driveJob.started[0];
  EXPECT_EQ('F', what.driveLetter);
  EXPECT_EQ(folder.path(), what.packageDirectory);
  EXPECT_THAT(what.packageFiles, ElementsAre("system.bdl", "routing.bdl"));
  EXPECT_EQ(catalogue.sizeOf("system.bdl") + catalogue.sizeOf("routing.bdl"), driveJob.total);
}

TEST_F(LocalDrivesTest, WithoutAScriptTheSpeedAloneIsWritten) {
  selectCard();
  view.typed.baudRate = 115200;
  workflow.install();
  ASSERT_EQ(1u, driveJob.started.size());
  EXPECT_FALSE(driveJob.started[0].useScriptFile);
  EXPECT_EQ(115200, driveJob.started[0].baudRate);
}

TEST_F(LocalDrivesTest, OwnScriptIsGivenWithTheSpeed) {
  selectCard();
  view.typed.useScript = true;
  view.typed.scriptFile = folder.write("own.rsc", "/system reset");
  view.typed.baudRate = 19200;
  workflow.install();
  ASSERT_EQ(1u, driveJob.started.size());
  EXPECT_EQ("/system reset", driveJob.script);
  EXPECT_EQ(view.typed.scriptFile, driveJob.started[0].scriptFile);
  EXPECT_EQ(19200, driveJob.started[0].baudRate);
  driveJob.completes();
  turn();
  EXPECT_EQ("/system reset", readFile(view.typed.scriptFile));
}

// Which card of which router it would be is not known.
TEST_F(LocalDrivesTest, HaveNoAddressAndWhatIsRememberedOfRoutersStays) {
  remembered.address = addressOf("10.0.0.1");
  remembered.netmaskLength = 24;
  selectCard();
  EXPECT_EQ(FieldState::kDisabled, view.controls.address);
  EXPECT_TRUE(view.controls.baudRate);
  EXPECT_TRUE(view.controls.useScript);
  workflow.install();
  EXPECT_EQ(addressOf("10.0.0.1"), remembered.address);
  EXPECT_EQ(24, remembered.netmaskLength);
}

TEST_F(LocalDrivesTest, KeptConfigurationIsOffAndWhatIsRememberedOfRoutersStays) {
  remembered.keepConfiguration = true;
  selectCard();
  EXPECT_FALSE(view.controls.keepConfiguration);
  EXPECT_FALSE(view.typed.keepConfiguration);
  workflow.install();
  EXPECT_TRUE(remembered.keepConfiguration);
}

TEST_F(LocalDrivesTest, InstalledPackagesAndParametersAreRemembered) {
  selectCard();
  view.typed.baudRate = 115200;
  workflow.install();
  EXPECT_THAT(set(kPreviousInstall), ElementsAre("system"));
  EXPECT_EQ(115200, remembered.baudRate);
}

TEST_F(LocalDrivesTest, WithoutPackagesThereIsNothingToAsk) {
  select(0);
  workflow.install();
  EXPECT_THAT(person.said, ElementsAre("Cannot install: No packages selected"));
  expectNothingStarted();
}

TEST_F(LocalDrivesTest, NoChangesNothing) {
  selectCard();
  view.typed.baudRate = 115200;
  const ParameterFields typed = view.typed;
  person.answers = {false};
  workflow.install();
  EXPECT_EQ(Said{kEraseE}, person.said);
  EXPECT_EQ(typed, view.typed);
  expectNothingStarted();
}

TEST_F(LocalDrivesTest, DriveThatCannotBeUsedIsRefusedWithItsReason) {
  volumes.drives['E'].facts.obstacle = "it is write-protected";
  installOntoCard();
  EXPECT_EQ(Said{"Cannot install: E:\\ cannot be used: it is write-protected."}, person.said);
  EXPECT_EQ(Operator::Icon::kError, person.icons.at(0));
  expectNothingStarted();
}

TEST_F(LocalDrivesTest, PackageThatVanishedIsRefusedBeforeAnythingIsErased) {
  selectCard();
  std::remove((folder.path() + "/system.bdl").c_str());
  workflow.install();
  ASSERT_EQ(1u, person.said.size());
  EXPECT_THAT(person.said[0], HasSubstr("Cannot install: Cannot open file"));
  expectNothingStarted();
}

TEST_F(LocalDrivesTest, AnotherMediumBehindTheQuestionIsAskedAboutAgain) {
  selectCard();
  bool swapped = false;
  person.whileAsked = [&] {
    if (!swapped) volumes.drives['E'].facts.label = "HOLIDAY";
    swapped = true;
  };
  person.answers = {true, false};
  workflow.install();
  ASSERT_EQ(2u, person.said.size());
  EXPECT_THAT(person.said[1], HasSubstr("label \"HOLIDAY\""));
  expectNothingStarted();
}

TEST_F(LocalDrivesTest, DriveThatIsGoneBehindTheQuestionIsNotInstalled) {
  selectCard();
  person.whileAsked = [&] {
    volumes.drives.erase('E');
    workflow.mediaRemoved(bitOf('E'));
  };
  workflow.install();
  EXPECT_THAT(driveJob.started, IsEmpty());
  EXPECT_THAT(labels(), ElementsAre("F:\\"));
  EXPECT_EQ(nullptr, sets.find(kPreviousInstall));
}

TEST_F(LocalDrivesTest, PreviousJobIsWaitedForFiveSeconds) {
  installOntoCard();
  driveJob.says("Formatting drive...", 0);
  select(1);
  toggle("system");
  workflow.install();
  EXPECT_THAT(driveJob.waits, ElementsAre(5000, 5000));
  EXPECT_EQ(1u, driveJob.started.size());
  EXPECT_EQ("Cannot install: Another drive is still being written. Try again when it is done.",
            person.said.back());
  EXPECT_EQ("Ready", statusOf(1));
  EXPECT_EQ("Installing", statusOf(0));
}

TEST_F(LocalDrivesTest, PreviousJobThatEndsInTimeShowsItsOutcome) {
  installOntoCard();
  select(1);
  toggle("routing");
  person.whileAsked = [&] { driveJob.completes(); };
  workflow.install();
  EXPECT_EQ("OK", statusOf(0));
  EXPECT_EQ("Installing", statusOf(1));
  ASSERT_EQ(2u, driveJob.started.size());
  EXPECT_EQ('F', driveJob.started[1].driveLetter);
}

TEST_F(LocalDrivesTest, FailureIsShownWithItsReason) {
  installOntoCard();
  driveJob.says("Copying file: system.bdl", 4000);
  turn();
  driveJob.fails("Cannot copy package");
  turn();
  EXPECT_EQ("Failed", statusOf(0));
  EXPECT_EQ("Installation failed: Cannot copy package", view.statusLine);
  EXPECT_EQ(0, view.progress);
}

TEST_F(LocalDrivesTest, JobThatWasEndedFromOutsideHasFailed) {
  installOntoCard();
  driveJob.ended = true;
  turn();
  EXPECT_EQ("Failed", statusOf(0));
  EXPECT_THAT(view.statusLine, HasSubstr("Installation failed: "));
}

TEST_F(LocalDrivesTest, ThreadThatCannotBeStartedIsRaised) {
  selectCard();
  driveJob.cannotStart = true;
  EXPECT_THROW(workflow.install(), Error);
}

TEST_F(LocalDrivesTest, CancelStopsTheJob) {
  installOntoCard();
  workflow.cancel();
  EXPECT_EQ(1, driveJob.stopRequests);
  EXPECT_EQ("Installing", statusOf(0));
  driveJob.fails("Canceled");
  turn();
  EXPECT_EQ("Failed", statusOf(0));
  EXPECT_EQ("Installation failed: Canceled", view.statusLine);
}

TEST_F(LocalDrivesTest, CancelMakesAnInstalledDriveReadyForTheNextCard) {
  installOntoCard();
  driveJob.completes();
  turn();
  workflow.install();
  EXPECT_EQ(1u, driveJob.started.size());
  workflow.cancel();
  EXPECT_EQ("Ready", statusOf(0));
  EXPECT_EQ("", view.statusLine);
  EXPECT_EQ(0, view.progress);
  EXPECT_EQ(0, driveJob.stopRequests);
  workflow.install();
  EXPECT_EQ("Installing", statusOf(0));
  EXPECT_EQ(2u, driveJob.started.size());
}

TEST_F(LocalDrivesTest, TakingTheCardOutMakesItsReaderReadyForTheNextOne) {
  installOntoCard();
  driveJob.completes();
  turn();
  workflow.mediaRemoved(bitOf('F'));
  EXPECT_EQ("OK", statusOf(0));
  workflow.mediaRemoved(bitOf('E'));
  EXPECT_EQ("Ready", statusOf(0));
  EXPECT_TRUE(view.controls.install);
}

TEST_F(LocalDrivesTest, DriveThatIsPulledOutDuringItsInstallationStaysUntilItsFailureWasRead) {
  installOntoCard();
  volumes.drives.erase('E');
  workflow.mediaRemoved(bitOf('E'));
  EXPECT_EQ("Installing", statusOf(0));
  driveJob.fails("Write to device failed");
  turn();
  EXPECT_EQ("Installation failed: Write to device failed", view.statusLine);
  workflow.cancel();
  EXPECT_THAT(labels(), ElementsAre("F:\\"));
}

TEST_F(LocalDrivesTest, PackagesOfMoreThanTwoGigabytesStillHaveTheirProgress) {
  installOntoCard();
  driveJob.says("Copying file: system.bdl", std::int64_t{3} << 30);
  turn();
  EXPECT_EQ(100, view.progress);
}

TEST_F(LocalDrivesTest, EndOfTheNetworkDoesNotKeepDrivesFromBeingInstalled) {
  workflow.installerEnded();
  installOntoCard();
  EXPECT_EQ("Installing", statusOf(0));
}

TEST_F(LocalDrivesTest, TimerTouchesNothingWhileTheJobSaysNothing) {
  installOntoCard();
  turn();
  const int updates = view.updates;
  const int texts = rows.textsSet;
  for (int i = 0; i < 10; ++i) turn();
  EXPECT_EQ(updates, view.updates);
  EXPECT_EQ(texts, rows.textsSet);
}

}  // namespace omniset::test
