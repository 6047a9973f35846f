// How the program starts, stays the only one, and ends.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>

#include "tests/win/driver/top_windows.h"
#include "tests/win/driver/udp_port.h"
#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr DWORD kFailed = 0xFFFFFFFF;

using Program = WindowTest;

std::ptrdiff_t placeOf(const Texts& lines, const std::string& line) {
  const auto found = std::find(lines.begin(), lines.end(), line);
  return found == lines.end() ? -1 : found - lines.begin();
}

std::shared_ptr<Process> startProgram(const std::string& outputFile) {
  return std::make_shared<Process>(std::getenv("OMNISET_TEST_PROGRAM"), outputFile);
}

TEST_F(Program, EndsWithCode0WhenItsWindowIsClosed) {
  startWindow();
  EXPECT_EQ(window().end(), 0u);
}

TEST_F(Program, TracesTheStepsOfItsEndInOrder) {
  startWindow();
  endWindow();
  const Texts lines = window().process().outputLines();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "exit");
  ASSERT_GE(placeOf(lines, "wm_close"), 0);
  EXPECT_LT(placeOf(lines, "wm_close"), placeOf(lines, "run out"));
  EXPECT_LT(placeOf(lines, "run out"), placeOf(lines, "exit"));
}

TEST_F(Program, EndsWhileARouterIsInstalled) {
  startWithRouter();
  freezeTarget();
  window().toggle("system");
  window().click(IDC_INSTALL);
  awaitStatus("Installing");
  EXPECT_EQ(window().end(), 0u);
  EXPECT_EQ(window().process().outputLines().back(), "exit");
}

TEST_F(Program, RefusesToRunTwice) {
  startWindow();
  const std::shared_ptr<Process> second = startProgram(path("second.txt"));
  DrivenMessageBox box(awaitTopWindow(*second, "Error"), second);
  EXPECT_EQ(box.text(), "Veltrona Router Install Server is already running");
  EXPECT_EQ(box.buttons(), Texts{"OK"});
  box.answer("OK");
  EXPECT_EQ(second->waitForEnd(), 0u);
  EXPECT_TRUE(second->outputLines().empty());
  EXPECT_TRUE(window().hasOnlyMainWindow());
}

TEST_F(Program, RunsAgainAfterItWasKilled) {
  startWindow();
  window().process().kill();
  startWindow();
  EXPECT_TRUE(window().hasOnlyMainWindow());
}

TEST_F(Program, SaysWhyItCannotListenOnItsPort) {
  const UdpPort occupant(5000);
  const std::shared_ptr<Process> program = startProgram(path("trace.txt"));
  DrivenMessageBox box(awaitTopWindow(*program, "Exception"), program);
  EXPECT_THAT(box.text(), HasSubstr("bind"));
  EXPECT_EQ(box.buttons(), Texts{"OK"});
  box.answer("OK");
  EXPECT_EQ(program->waitForEnd(), kFailed);
  EXPECT_EQ(placeOf(program->outputLines(), "run out"), -1);
  EXPECT_EQ(program->outputLines().back(), "exit");
}

}  // namespace
}  // namespace omniset::test
