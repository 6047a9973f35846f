// Each single call of the system fails or does half of its work, in turn.
#include <algorithm>

#include "core/error.h"
#include "tests/media/media_fixture.h"

namespace omniset::test {
namespace {

using Calls = std::vector<std::string>;

// Beginnings of calls as the fake notes them, and what their failure is to be told as.
using Texts = std::vector<std::pair<const char*, const char*>>;

const Texts kTexts = {
    {"open volume", "Cannot open device"},
    {"open disk", "Cannot open physical device"},
    {"open absolute disk", "Cannot open device"},
    {"open first.rsc", "Cannot open script"},
    {"open written", "cannot be read back"},
    {"open", "Cannot open file"},
    {"look at", "Cannot open file"},
    {"absolute read", "Read 95 failed"},
    {"absolute write", "Write 95 failed"},
    {"absolute close", "Closing device failed"},
    {"control", "IOCTL_GET_DEVICE_NUMBER failed"},
    {"seek", "Seeking device failed"},
    {"size", "Cannot get file size"},
    {"flush", "Write to device failed"},
    {"create", "Cannot create file"},
    {"overwrite", "Cannot copy package"},
    {"close", "Closing device failed"},
    {"write", "Write to device failed"},
    {"read", "Read from device failed"},
};

// While all is read back, these differ.
const Texts kTextsOfChecking = {
    {"read E:\\", "cannot be read back"},
    {"read A:\\", "cannot be read back"},
    {"read volume", "cannot be read back"},
};

const char* textOf(const Texts& texts, const std::string& call) {
  for (const auto& [start, text] : texts) {
    if (call.starts_with(start)) return text;
  }
  return nullptr;
}

bool isChecking(const Calls& calls, std::size_t number) {
  return std::any_of(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(number),
                     [](const std::string& call) { return call.starts_with("flush"); });
}

// A package's size is taken first, and with its close the copying begins.
bool isCopying(const Calls& calls, std::size_t number) {
  const std::string& call = calls[number];
  if (!call.ends_with(".bdl")) return false;
  const std::string name = call.substr(call.find_last_of("/\\") + 1);
  return std::any_of(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(number),
                     [&](const std::string& before) {
                       return before.starts_with("close") && before.ends_with(name);
                     });
}

std::string expectedText(const Calls& calls, std::size_t number) {
  const std::string& call = calls[number];
  if (isChecking(calls, number)) {
    if (const char* text = textOf(kTextsOfChecking, call)) return text;
  } else if (isCopying(calls, number)) {
    return "Cannot copy package";
  }
  return textOf(kTexts, call);
}

class DriveFaults : public MediaFixture {
 protected:
  static RInfo fullInfo() {
    RInfo what = plainInfo();
    what.useScriptFile = true;
    what.scriptFile = "first.rsc";
    what.baudRate = 9600;
    return what;
  }

  void expectNothingElseTouched(const FakeVolumes& fresh, char letter) {
    EXPECT_EQ(volumes.openDevices, 0);
    EXPECT_EQ(format.openProcesses, 0);
    EXPECT_EQ(volumes.files, fresh.files);
    for (const auto& [other, drive] : fresh.drives) {
      if (other == letter) continue;
      EXPECT_EQ(volumes.drives.at(other), drive) << other;
    }
  }

  // Runs it once whole, and then with each of its calls failing.
  void failEach(char letter, const std::function<std::string()>& run) {
    const FakeVolumes fresh = volumes;
    ASSERT_EQ(run(), "");
    const Calls calls = volumes.calls;
    ASSERT_GT(calls.size(), 40u);
    for (const Fault fault : {Fault::kFails, Fault::kIsShort}) {
      for (std::size_t number = 0; number < calls.size(); ++number) {
        SCOPED_TRACE(std::to_string(number) + " " + calls[number]);
        volumes = fresh;
        volumes.faultyCall = static_cast<int>(number);
        volumes.fault = fault;
        const std::string text = run();
        // Half of a read is no failure: the rest comes with the next.
        if (fault == Fault::kIsShort && calls[number].starts_with("read")) {
          EXPECT_EQ(text, "");
        } else {
          EXPECT_THAT(text, ::testing::EndsWith(expectedText(calls, number)));
        }
        expectNothingElseTouched(fresh, letter);
      }
    }
  }
};

TEST_F(DriveFaults, OfEveryCallEndInItsTextAndLeaveEverythingElse) {
  failEach('E', [&] {
    const DriveReport report = make(fullInfo());
    EXPECT_EQ(report.state, lastFailure.empty() ? RouterStatus::kFinished : RouterStatus::kFailed);
    return lastFailure;
  });
}

TEST_F(DriveFaults, OfAFloppyToo) {
  failEach('A', [&] {
    const FloppyProgress progress = makeFloppy("veltrona");
    EXPECT_EQ(progress.statusText, lastFailure.empty() ? "Completed" : lastFailure);
    return lastFailure;
  });
}

TEST_F(DriveFaults, OfAFloppyOnWindows98Too) {
  volumes.system = {false, 4, 10};
  failEach('A', [&] {
    makeFloppy("veltrona");
    return lastFailure;
  });
}

// A call that hangs while the operator gives up: whichever it is, little is done behind it.
TEST_F(DriveFaults, AStopDuringAnyCallEndsTheJobSoonBehindIt) {
  constexpr std::size_t kMostCallsBehind = 20;
  const FakeVolumes fresh = volumes;
  make(fullInfo());
  const Calls calls = volumes.calls;
  const std::size_t count = calls.size();
  std::size_t canceled = 0;
  for (std::size_t number = 0; number < count; ++number) {
    SCOPED_TRACE(calls[number]);
    volumes = fresh;
    DriveMaker maker(fullInfo(), fakeServices(volumes, format), 16);
    volumes.onCall = [&] {
      if (volumes.calls.size() == number + 1) maker.stopEvent().set();
    };
    try {
      maker.run();
      EXPECT_LE(count - number, kMostCallsBehind);
    } catch (const Failure& failure) {
      EXPECT_STREQ(failure.what(), "Canceled");
      ++canceled;
    }
    EXPECT_LE(volumes.calls.size(), number + kMostCallsBehind);
    volumes.onCall = nullptr;
    expectNothingElseTouched(fresh, 'E');
  }
  EXPECT_GT(canceled, count / 2);
}

}  // namespace
}  // namespace omniset::test
