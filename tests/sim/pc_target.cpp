#include "pc_target.h"

#include <array>

#include "target/disk/disk_inspection.h"

namespace omniset::sim {

namespace {

constexpr std::uint64_t kPartitionAt = 2048;

}  // namespace

// Notes what the offer said on its way to the disk.
class PcTarget::Store : public DiskStore {
 public:
  explicit Store(PcTarget& pc)
      : DiskStore(
            pc.disks_, [](const std::string&) {}, BootCode{}, false,
            [&pc] { return static_cast<std::uint32_t>(pc.random_.next()); }),
        pc_(pc) {}

  void beginPreparation(bool keepConfiguration) override {
    pc_.keptConfiguration_ = keepConfiguration;
    DiskStore::beginPreparation(keepConfiguration);
  }

 private:
  PcTarget& pc_;
};

PcTarget::PcTarget(const MacAddress& mac, SimNetwork& network, EventQueue& events, Random& random)
    : mac_(mac), events_(events), random_(random), node_(network, events) {}

void PcTarget::start() {
  node_.start([this] {
    if (machine_) {
      machine_->step();
    } else {
      idle(kSecond);
    }
  });
}

void PcTarget::powerOn() {
  linkAt_ = events_.now() + random_.between(0, 3 * kSecond);
  store_ = std::make_unique<Store>(*this);
  machine_ = std::make_unique<TargetMachine>(MachineFacts{"target", "machine", "disks"}, *this,
                                             events_, *store_, console_);
  node_.wake();
}

void PcTarget::cutPower() {
  disks_.faults.isOff = true;
  machine_.reset();
  store_.reset();
  disks_.cutPower(static_cast<unsigned>(random_.next()));
}

void PcTarget::pressKey() {
  if (machine_) machine_->keyPressed();
  node_.wake();
}

const TargetSession* PcTarget::session() const {
  return machine_ ? machine_->engaged() : nullptr;
}

std::map<std::string, std::string> PcTarget::files() const {
  test::FakeDisks again;
  test::FakeDisk& disk = again.add(disk_.name, disk_.sectorCount);
  disk.medium = disk_.medium;
  again.cutPower(0);
  const auto opened = again.open(disk);
  DiskInspection inspection(*opened);
  while (!inspection.step()) continue;
  if (inspection.installation() != Installation::kComplete) return {};
  auto files = disk.files(kPartitionAt);
  files.erase(kMarkName);
  return files;
}

std::string PcTarget::fault() const {
  return disks_.faults.violations.empty() ? "" : "the disk: " + disks_.faults.violations.front();
}

bool PcTarget::hasLink(const NetworkCard& /*card*/) {
  return events_.now() >= linkAt_;
}

std::unique_ptr<UdpSocket> PcTarget::makeSocket(const NetworkCard& /*card*/) {
  return node_.socket();
}

// What comes meanwhile is lost.
void PcTarget::idle(Micros time) {
  std::array<std::uint8_t, 1> nothing{};
  UdpPeer nobody;
  while (idleSocket_->waitReadable(time, "")) idleSocket_->receiveFrom(nothing, nobody, "");
}

}  // namespace omniset::sim
