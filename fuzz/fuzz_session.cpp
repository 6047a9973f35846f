// Plays two hostile targets against an installer with sessions in progress. Whatever they send and
// however time passes, the loop goes on, and the session of a third target, which nobody spoke for,
// and a new session work afterwards.
// Input: records of an operation (low 3 bits; bit 3: the second hostile target), see play().
#include <memory>

#include "core/trace.h"
#include "fuzz/fuzz_input.h"
#include "install/router_installer.h"
#include "tests/fakes/fake_network_interfaces.h"
#include "tests/fakes/temp_folder.h"
#include "tests/install/scripted_target.h"

namespace {

using namespace omniset;
using fuzz::FuzzInput;
using fuzz::require;

constexpr MacAddress kHostile[] = {{{0x02, 0, 0, 0, 1, 1}}, {{0x02, 0, 0, 0, 1, 2}}};
constexpr MacAddress kHonest{{0x02, 0x51, 0xA7, 0x3C, 1, 3}};
constexpr MacAddress kLater{{0x02, 0x51, 0xA7, 0x3C, 1, 4}};
constexpr int kFewTurns = 4;
constexpr int kMostTurns = 1000;
constexpr std::size_t kLongestDatagram = 4096;

// Folders that serve all runs of the process.
struct Folders {
  Folders() { packages.write("a.bdl", std::string(3000, 'a')); }
  test::TempFolder packages;
  test::TempFolder temporary;
};

Folders& folders() {
  static Folders instance;
  return instance;
}

class Game {
 public:
  Game() {
    network_->clock = &clock_;
    install(kHonest, {});
    serveHonest([this] { return statusOf(kHonest) == RouterStatus::kWaitingReboot; });
    for (const MacAddress& mac : kHostile) install(mac, {"a.bdl"});
    step();
  }

  void play(FuzzInput& input) {
    while (input.left() > 0) {
      const std::uint8_t operation = input.u8();
      const std::size_t who = operation >> 3 & 1;
      playOne(operation & 7, who, input);
      step();
    }
  }

  // The sessions that nobody attacked still work.
  void finish() {
    network_->toReceive.clear();
    require(installer_.access().requestReboot(kHonest));
    serveHonest([this] { return statusOf(kHonest) == RouterStatus::kFinished; });
    require(honest_.rebooted());
    while (installer_.access().takeAnnouncement()) continue;
    install(kLater, {});
    // A turn looks first at what is still waiting to be received.
    for (int turn = 0; !laterIsOffered(); ++turn) {
      require(turn < kFewTurns);
      step();
    }
  }

 private:
  bool laterIsOffered() const {
    const auto& sent = network_->sent;
    return std::any_of(sent.begin(), sent.end(), [](const auto& datagram) {
      const LinkFrame frame = test::frameFrom(datagram.bytes);
      return frame.header().destination == kLater && frame.payloadText() == "OFFR\n";
    });
  }

  void playOne(int operation, std::size_t who, FuzzInput& input) {
    test::ScriptedTarget& target = hostile_[who];
    switch (operation) {
      case 0:  // any datagram that does not claim to come from the others
        deliverRaw(input.bytes(input.u16() % (kLongestDatagram + 1)));
        break;
      case 1:  // the next frame with any text
        network_->deliver(target.says(asText(input.bytes(input.u8()))).datagram());
        break;
      case 2:
        network_->deliver(target.acknowledges().datagram());
        break;
      case 3:
        network_->deliver(target.announcement().datagram());
        break;
      case 4:  // time passes
        clock_.advance(input.u16() * kMillisecond);
        break;
      case 5:
        installer_.access().requestReboot(target.mac());
        break;
      case 6:
        installer_.access().cancel(target.mac());
        break;
      default:
        install(target.mac(), {"a.bdl"});
        target = test::ScriptedTarget(target.mac());
        break;
    }
  }

  void deliverRaw(std::span<const std::uint8_t> bytes) {
    std::vector<std::uint8_t> padded(bytes.begin(), bytes.end());
    padded.resize(std::max(bytes.size(), kFrameHeaderLength));
    const MacAddress source = test::frameFrom(padded).header().source;
    if (source == kHonest || source == kLater) return;
    network_->deliver(bytes);
  }

  void install(const MacAddress& mac, std::vector<std::string> files) {
    RouterRecord record;
    record.mac = mac;
    record.lastSeen = clock_.now();
    record.packageFiles = std::move(files);
    installer_.access().install(record, folders().packages.path());
  }

  // One turn of the loop; the hostile targets hear what was sent.
  void step() {
    network_->sent.clear();
    installer_.step();
    for (const auto& datagram : network_->sent) {
      for (auto& target : hostile_) target.hears(test::frameFrom(datagram.bytes));
    }
  }

  template <class Done>
  void serveHonest(Done done) {
    for (int turn = 0; !done(); ++turn) {
      require(turn < kMostTurns);
      step();
      for (const auto& datagram : network_->sent) {
        const auto answer = honest_.answerTo(test::frameFrom(datagram.bytes));
        if (answer) network_->deliver(answer->datagram());
      }
    }
  }

  RouterStatus statusOf(const MacAddress& mac) {
    const auto access = installer_.access();
    const RouterRecord* record = access.record(mac);
    require(record != nullptr);
    return record->status;
  }

  test::FakeClock clock_;
  std::shared_ptr<test::FakeNetwork> network_ = std::make_shared<test::FakeNetwork>();
  test::FakeNetworkInterfaces interfaces_{{{"eth0", test::kInstallerMac}}};
  test::FakeTempFiles tempFiles_{folders().temporary};
  test::ScriptedTarget hostile_[2]{test::ScriptedTarget(kHostile[0]),
                                   test::ScriptedTarget(kHostile[1])};
  test::InstallingTarget honest_{kHonest};
  RouterInstaller installer_{
      0, InstallerServices{interfaces_, std::make_unique<test::FakeUdpSocket>(network_), clock_,
                           tempFiles_}};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  setTraceSink(nullptr);
  FuzzInput input(data, size);
  Game game;
  game.play(input);
  game.finish();
  return 0;
}
