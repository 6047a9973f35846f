#include "media/device.h"

#include <array>

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "tests/media/media_fixture.h"

namespace omniset::test {
namespace {

class DeviceCalls : public MediaFixture {
 protected:
  // The text of what the action raises when the next call of the system does not succeed.
  template <class Action>
  std::string failing(Action action) {
    volumes.faultyCall = static_cast<int>(volumes.calls.size());
    return raisedText<Failure>([&] { action(*volume); });
  }

  std::array<std::uint8_t, 12> bytes{};
  DevicePtr volume = volumes.openVolume('E');
};

TEST_F(DeviceCalls, ThatFailAreToldByWhatTheyWere) {
  EXPECT_EQ(failing([&](Device& device) { readDevice(device, bytes); }), "Read from device failed");
  EXPECT_EQ(failing([&](Device& device) { writeDevice(device, bytes); }), "Write to device failed");
  EXPECT_EQ(failing([&](Device& device) { seekDevice(device, 0); }), "Seeking device failed");
  EXPECT_EQ(failing([&](Device& device) { deviceControl(device, 1, {}, bytes); }),
            "I/O Operation failed");
  EXPECT_EQ(failing([&](Device& device) { closeDevice(device); }), "Closing device failed");
}

TEST_F(DeviceCalls, ThatSucceedTellHowMuchCame) {
  EXPECT_EQ(readDevice(*volume, bytes), bytes.size());
  EXPECT_EQ(deviceControl(*volume, 1, {}, bytes), 12u);
  seekDevice(*volume, 512);
  EXPECT_EQ(readDevice(*volume, bytes), 0u) << "at the end";
}

TEST_F(DeviceCalls, ThatWriteTooLittleHaveFailed) {
  volumes.fault = Fault::kIsShort;
  EXPECT_EQ(failing([&](Device& device) { writeDevice(device, bytes); }), "Write to device failed");
}

}  // namespace
}  // namespace omniset::test
