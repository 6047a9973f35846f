#include "world.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "hosted_target.h"
#include "install/configuration_script.h"
#include "install/router_installer.h"
#include "patient_operator.h"
#include "pc_target.h"
#include "tests/fakes/fake_network_interfaces.h"
#include "tests/fakes/temp_folder.h"
#include "unattended_operator.h"

namespace omniset::sim {

namespace {

constexpr MacAddress kInstallerMac{{0x02, 0, 0, 0, 0, 1}};
constexpr Micros kOperatorPoll = 250 * kMillisecond;
constexpr Micros kKeyboardPoll = kSecond;
constexpr Micros kLookAfter = 20 * kSecond;
constexpr int kForgottenTurns = 5;
constexpr Micros kTimeLimit = 24 * 3600 * kSecond;

class World {
 public:
  World(const Scenario& scenario, const PackageFolder& packages);
  std::string run();

 private:
  struct Target {
    const TargetPlan* plan;
    std::unique_ptr<SimTarget> machine;
    int turnsForgotten = 0;  // how often it was seen installed without a session
  };

  std::unique_ptr<InstallOperator> makeOperator();
  void addTargets();
  std::unique_ptr<SimTarget> makeTarget(const TargetPlan& plan);
  void schedule(Target& target);
  void restart(Target& target);
  void pollOperator();
  void pollKeyboard(Target& target);
  void lookAfter(Target& target);
  void sendForeign();
  std::vector<std::uint8_t> foreignDatagram();
  std::vector<std::uint8_t> foreignFrame();
  MacAddress someMac(bool asSource);
  std::string inspect(const TargetPlan& plan, const RouterRecord& record) const;
  std::string expectedScript(const RouterRecord& record) const;

  const Scenario& scenario_;
  const PackageFolder& packages_;
  Random random_;
  EventQueue events_;
  SimNetwork network_;
  test::TempFolder scripts_;
  test::FakeTempFiles tempFiles_{scripts_};
  test::FakeNetworkInterfaces interfaces_{{{"eth0", kInstallerMac}}};
  SimNode installerNode_;
  std::vector<std::unique_ptr<TargetComputer>> computers_;
  std::map<MacAddress, Target> targets_;
  std::optional<RouterInstaller> installer_;
  std::unique_ptr<InstallOperator> operator_;
};

World::World(const Scenario& scenario, const PackageFolder& packages)
    : scenario_(scenario),
      packages_(packages),
      random_(scenario.seed),
      network_(events_, random_, scenario.faults),
      installerNode_(network_, events_) {
  installer_.emplace(0,
                     InstallerServices{interfaces_, installerNode_.socket(), events_, tempFiles_});
  operator_ = makeOperator();
  addTargets();
}

std::unique_ptr<InstallOperator> World::makeOperator() {
  const auto look = [this](const TargetPlan& plan, const RouterRecord& record) {
    return inspect(plan, record);
  };
  if (scenario_.unattended) {
    return std::make_unique<UnattendedOperator>(scenario_, packages_, *installer_, events_, look);
  }
  return std::make_unique<PatientOperator>(scenario_, packages_, *installer_, look);
}

void World::addTargets() {
  for (const TargetPlan& plan : scenario_.targets) {
    Target target{&plan, makeTarget(plan), 0};
    schedule(targets_.emplace(plan.mac, std::move(target)).first->second);
  }
}

std::unique_ptr<SimTarget> World::makeTarget(const TargetPlan& plan) {
  if (plan.isPc) return std::make_unique<PcTarget>(plan.mac, network_, events_, random_);
  if (targets_.size() % static_cast<std::size_t>(scenario_.targetsPerComputer) == 0 ||
      computers_.empty()) {
    computers_.push_back(std::make_unique<TargetComputer>(network_, events_));
  }
  return std::make_unique<HostedTarget>(plan.mac, *computers_.back(), events_,
                                        plan.preparationTime);
}

void World::schedule(Target& target) {
  const TargetPlan& plan = *target.plan;
  events_.after(plan.powerOn, [&target] { target.machine->powerOn(); });
  for (const Micros moment : plan.restarts) {
    events_.after(plan.powerOn + moment, [this, &target] { restart(target); });
  }
  for (const Micros moment : plan.diskFaults) {
    events_.after(plan.powerOn + moment, [&target] { target.machine->failNextWrite(); });
  }
  for (const Micros moment : plan.cancels) {
    events_.after(plan.powerOn + moment, [this, &plan] { operator_->cancel(plan.mac); });
  }
  if (plan.pressesKey) pollKeyboard(target);
  lookAfter(target);
}

void World::restart(Target& target) {
  target.machine->cutPower();
  events_.after(random_.between(kSecond / 10, 20 * kSecond),
                [&target] { target.machine->powerOn(); });
}

void World::pollKeyboard(Target& target) {
  const TargetSession* session = target.machine->session();
  if (session && session->state() == TargetSession::State::kInstalled) {
    target.machine->pressKey();
    return;
  }
  events_.after(kKeyboardPoll, [this, &target] { pollKeyboard(target); });
}

// A session may end when only its last acknowledgement is missing. The target is installed then,
// and somebody sees it on its screen, or has pressed a key already.
void World::lookAfter(Target& target) {
  using State = TargetSession::State;
  const MacAddress& mac = target.plan->mac;
  const TargetSession* session = target.machine->session();
  const bool installed =
      session && (session->state() == State::kInstalled || session->state() == State::kEnded);
  const bool forgotten = installed && operator_->isWaiting(mac);
  target.turnsForgotten = forgotten ? target.turnsForgotten + 1 : 0;
  if (target.turnsForgotten == kForgottenTurns && target.machine->files().contains(kScriptName)) {
    operator_->foundInstalled(mac);
    return;
  }
  // A stranger's word made it reboot with nothing installed: it boots the installer system again.
  if (target.turnsForgotten == kForgottenTurns) target.machine->powerOn();
  events_.after(kLookAfter, [this, &target] { lookAfter(target); });
}

void World::pollOperator() {
  operator_->poll();
  events_.after(kOperatorPoll, [this] { pollOperator(); });
}

void World::sendForeign() {
  network_.send(foreignDatagram(), random_.chance(0.9) ? kInstallPort : std::uint16_t{5001});
  const auto mean = static_cast<Micros>(kSecond / scenario_.foreignPerSecond);
  events_.after(random_.between(1, 2 * mean), [this] { sendForeign(); });
}

std::vector<std::uint8_t> World::foreignDatagram() {
  if (random_.chance(0.7)) return foreignFrame();
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(random_.between(0, 5000)));
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random_.next());
  return bytes;
}

// A well-formed frame from somebody who has no part in the installations.
std::vector<std::uint8_t> World::foreignFrame() {
  static const std::vector<std::string> kPayloads{"",
                                                  "DSCV\n",
                                                  "DSCV\na\nb\nlabel\n",
                                                  "DSCV",
                                                  "YACK\n",
                                                  "STRT\n",
                                                  "TERM\n",
                                                  "OFFR\n",
                                                  "FILE\nx\n5\n",
                                                  "FILE\n../x\n-1\n",
                                                  std::string(1024, 'D'),
                                                  "DSCV\n" + std::string(1400, '\n')};
  const std::string& payload = random_.oneOf(kPayloads);
  LinkFrame frame;
  FrameHeader header;
  header.source = someMac(true);
  header.destination = someMac(false);
  header.isAck = random_.chance(0.5);
  header.channel = static_cast<std::uint8_t>(random_.between(0, 2));
  header.payloadLength = static_cast<std::uint16_t>(payload.size());
  header.sequence = static_cast<std::uint16_t>(random_.between(0, 6));
  header.acknowledgement = static_cast<std::uint16_t>(random_.between(0, 6));
  frame.setHeader(header);
  std::copy(payload.begin(), payload.end(), frame.payloadRoom().begin());
  const auto datagram = frame.datagram();
  return {datagram.begin(), datagram.end()};
}

MacAddress World::someMac(bool asSource) {
  if (random_.chance(0.1)) return {};
  if (asSource || random_.chance(0.2)) {
    return {{0x06, 0, 0, 0, 0, static_cast<std::uint8_t>(random_.between(1, 9))}};
  }
  if (random_.chance(0.5)) return kInstallerMac;
  return random_.oneOf(scenario_.targets).mac;
}

std::string World::expectedScript(const RouterRecord& record) const {
  if (record.keepConfiguration) return {};
  return record.useOwnScript ? packages_.scriptContent : generatedScript(record);
}

std::string World::inspect(const TargetPlan& plan, const RouterRecord& record) const {
  std::map<std::string, std::string> expected{{kScriptName, expectedScript(record)}};
  for (const std::string& name : record.packageFiles) {
    expected[name] = packages_.contents.at(name);
  }
  std::size_t total = 0;
  for (const auto& [name, content] : expected) total += content.size();
  const SimTarget& target = *targets_.at(plan.mac).machine;
  if (target.files() != expected) return "the files differ from those sent";
  if (target.keptConfiguration() != record.keepConfiguration) return "the offer was misunderstood";
  if (!target.fault().empty()) return target.fault();
  const bool counted = record.status != RouterStatus::kReady;
  if (counted && record.bytesSent != static_cast<std::int32_t>(total)) {
    return "the bytes are miscounted";
  }
  return {};
}

std::string World::run() {
  installerNode_.start([this] { installer_->step(); });
  for (const auto& [mac, target] : targets_) target.machine->start();
  pollOperator();
  if (scenario_.foreignPerSecond > 0) sendForeign();
  const Micros end = events_.now() + kTimeLimit;
  while (!operator_->done() && operator_->fault().empty()) {
    if (!events_.step() || events_.now() > end) return "comes to no end";
  }
  if (!operator_->fault().empty()) return operator_->fault();
  operator_.reset();
  installer_.reset();
  return scripts_.names().empty() ? "" : "a temporary file is left";
}

}  // namespace

std::string runScenario(const Scenario& scenario, const PackageFolder& packages) {
  return World(scenario, packages).run();
}

}  // namespace omniset::sim
