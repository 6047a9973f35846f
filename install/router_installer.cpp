#include "install/router_installer.h"

#include "install/announcement.h"

namespace omniset {

namespace {

constexpr int kLockTimeoutMs = 10'000;
constexpr Micros kLongestWait = kSecond;
// How late timers may be while there is always something to receive.
constexpr Micros kLongestDelay = kSecond / 4;
// An announcement that comes this long after the one from which an installation was started can
// only come from a target that has started over.
constexpr Micros kRestartAfter = 5 * kSecond;
// A target announces itself again every second, so that nothing is lost by dropping some; this
// keeps a flood from filling the memory.
constexpr std::size_t kMostAnnouncements = 4096;

MacAddress adapterAddress(NetworkInterfaces& interfaces, int adapter) {
  const std::vector<MacAddress> found = findInterfaces(interfaces);
  const auto index = static_cast<std::size_t>(adapter);
  return index < found.size() ? found[index] : found.back();
}

}  // namespace

RouterInstaller::RouterInstaller(int adapter, InstallerServices services)
    : clock_(services.clock),
      tempFiles_(services.tempFiles),
      endpoint_(adapterAddress(services.interfaces, adapter), nullptr, kInstallPort,
                std::move(services.socket)) {}

void RouterInstaller::run() {
  while (!stopEvent().wait(0)) step();
}

void RouterInstaller::step() {
  const Micros wait = runTimers();
  const int received = endpoint_.waitDatagram(receiveFrame_.bytes, wait);
  moreMayWait_ = received >= 0;
  if (received >= 0) datagramReceived(static_cast<std::size_t>(received));
}

// Returns how long to wait for the next timer. What has arrived is looked at first, for a while:
// when one round of all sessions takes longer than their timers, the acknowledgements are there
// already, and repeating every frame would make the next round longer still.
Micros RouterInstaller::runTimers() {
  const Micros now = clock_.now();
  const ScopedLock lock(mutex_, kLockTimeoutMs);
  if (!moreMayWait_ || now - timersFired_ >= kLongestDelay) {
    sessions_.fireDue(now);
    timersFired_ = now;
  }
  // Timers that have just fired count too: a repetition after 10 ms must not wait a second.
  return sessions_.timeToNext(now, kLongestWait);
}

void RouterInstaller::datagramReceived(std::size_t received) {
  if (received < kFrameHeaderLength) return;
  const FrameHeader header = receiveFrame_.header();
  if (received - kFrameHeaderLength != header.payloadLength) return;
  if (header.source.isWildcard()) return;
  const Micros now = clock_.now();
  if (header.destination.isWildcard()) {
    announced(header.source, now);
    return;
  }
  const ScopedLock lock(mutex_, kLockTimeoutMs);
  sessions_.with(header.source, [&](RouterSession& session) {
    session.frameReceived(receiveFrame_, received, now);
  });
}

void RouterInstaller::announced(const MacAddress& source, Micros now) {
  const auto announcement = parseAnnouncement(receiveFrame_.payloadText());
  if (!announcement) return;
  RouterRecord record;
  record.mac = source;
  record.label = announcement->label;
  record.lastSeen = now;
  const ScopedLock lock(mutex_, kLockTimeoutMs);
  const RouterSession* session = sessions_.find(source);
  if (session && now - session->record().lastSeen > kRestartAfter) sessions_.remove(source);
  if (announcements_.size() < kMostAnnouncements) announcements_.push_back(std::move(record));
}

// The record may be that of the session that is replaced, which therefore goes last.
void RouterInstaller::Access::install(const RouterRecord& record,
                                      const std::string& packagesFolder) {
  RouterInstaller& i = installer_;
  const MacAddress mac = record.mac;
  const SessionServices services{i.endpoint_, i.sendFrame_, i.clock_, i.tempFiles_};
  i.sessions_.add(mac, std::make_unique<RouterSession>(record, packagesFolder, services));
}

bool RouterInstaller::Access::requestReboot(const MacAddress& mac) {
  return installer_.sessions_.with(mac, [](RouterSession& session) { session.requestReboot(); });
}

bool RouterInstaller::Access::cancel(const MacAddress& mac) {
  return installer_.sessions_.remove(mac);
}

const RouterRecord* RouterInstaller::Access::record(const MacAddress& mac) const {
  const RouterSession* session = installer_.sessions_.find(mac);
  return session ? &session->record() : nullptr;
}

std::optional<RouterRecord> RouterInstaller::Access::takeAnnouncement() {
  auto& queue = installer_.announcements_;
  if (queue.empty()) return std::nullopt;
  std::optional<RouterRecord> record(std::move(queue.front()));
  queue.pop_front();
  return record;
}

}  // namespace omniset
