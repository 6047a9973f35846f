#include "media/format_drive.h"

#include "core/error.h"
#include "tests/media/media_fixture.h"

namespace omniset::test {
namespace {

using ::testing::HasSubstr;
using Behaviour = FakeFormat::Behaviour;

class FormattingADrive : public MediaFixture {
 protected:
  // The failure's text, or nothing.
  std::string run() {
    try {
      formatDrive(fakeServices(volumes, format), 'E', stopEvent);
      return {};
    } catch (const std::exception& failure) {
      return failure.what();
    }
  }

  Event stopEvent{true, false};
};

TEST_F(FormattingADrive, StartsTheSystemsCommandForAnEmptyFatVolume) {
  EXPECT_EQ(run(), "");
  EXPECT_EQ(trace.text(),
            "app: C:\\WINNT\\system32\\format.com\n"
            "cmd: C:\\WINNT\\system32\\format.com E: /FS:FAT /Q /X /V:\n"
            "format before\nformat done\n");
}

TEST_F(FormattingADrive, OnWindows9xStartsTheOneOfTheWindowsFolder) {
  volumes.system = {false, 4, 10};
  run();
  EXPECT_THAT(trace.text(), HasSubstr("cmd: C:\\WINDOWS\\Command\\format.com E: /Q /V:xxx\n"));
}

TEST_F(FormattingADrive, AnswersBothQuestions) {
  run();
  EXPECT_EQ(format.fed, "\r\nn\r\n");
}

TEST_F(FormattingADrive, TracesWhatTheCommandSaysUpToALimit) {
  format.output = "Insert new disk for drive E:\n" + std::string(20'000, '.');
  EXPECT_EQ(run(), "");
  EXPECT_THAT(trace.text(), HasSubstr("format before\nInsert new disk for drive E:\n"));
  EXPECT_EQ(std::count(trace.text().begin(), trace.text().end(), '.'), 2 * 8196 - 29 + 2);
  EXPECT_TRUE(format.output.empty());
}

TEST_F(FormattingADrive, EndsACommandThatHangsAfterFiveMinutes) {
  format.behaviour = Behaviour::kHangs;
  EXPECT_EQ(run(), "Format timeout");
  EXPECT_EQ(format.waitedMs, 300'000);
  EXPECT_EQ(format.terminated, 1);
  EXPECT_EQ(format.openProcesses, 0);
  EXPECT_THAT(trace.text(), ::testing::EndsWith("format before\nformat timeout\n"));
}

TEST_F(FormattingADrive, EndsTheCommandWhenItIsAskedToStop) {
  format.behaviour = Behaviour::kHangs;
  stopEvent.set();
  EXPECT_EQ(run(), "Canceled");
  EXPECT_LE(format.waitedMs, 1000);
  EXPECT_EQ(format.terminated, 1);
}

TEST_F(FormattingADrive, SaysWhenTheCommandCannotBeEnded) {
  format.behaviour = Behaviour::kCannotBeEnded;
  EXPECT_THAT(run(), ::testing::StartsWith("TerminateProcess: "));
  EXPECT_EQ(format.openProcesses, 0);
}

TEST_F(FormattingADrive, FailsWhenTheWaitFails) {
  format.behaviour = Behaviour::kWaitFails;
  EXPECT_EQ(run(), "Format failed");
  EXPECT_EQ(format.openProcesses, 0);
}

TEST_F(FormattingADrive, FailsWithoutPipesOrCommand) {
  for (const char* text : {"Cannot setup format", "Cannot setup format2", "Cannot start format"}) {
    format.startFailure = text;
    EXPECT_EQ(run(), text);
  }
}

TEST_F(FormattingADrive, FailsWhenAHandleCannotBeClosed) {
  format.closes = false;
  EXPECT_EQ(run(), "Closing device failed");
}

}  // namespace
}  // namespace omniset::test
