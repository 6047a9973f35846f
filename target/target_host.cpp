#include "target/target_host.h"

namespace omniset {

void TargetHost::add(TargetIdentity identity, TargetStore& store, TargetConsole& console) {
  const MacAddress mac = identity.mac;
  sessions_.add(mac, std::make_unique<TargetSession>(std::move(identity), endpoint_, store, console,
                                                     clock_.now()));
}

void TargetHost::step(Micros longestWait) {
  const Micros now = clock_.now();
  if (const Micros absent = now - listenedUntil_; absent > TargetSession::kShortAbsence) {
    sessions_.forEach([absent](TargetSession& session) { session.wasAbsent(absent); });
  }
  sessions_.fireDue(now);
  const Micros wait = sessions_.timeToNext(now, longestWait);
  const int received = endpoint_.waitDatagram(frame_.bytes, wait);
  listenedUntil_ = clock_.now();
  if (received < static_cast<int>(kFrameHeaderLength)) return;
  sessions_.with(frame_.header().destination, [&](TargetSession& session) {
    session.frameReceived(frame_, static_cast<std::size_t>(received), listenedUntil_);
  });
}

void TargetHost::keyPressed() {
  const Micros now = clock_.now();
  sessions_.forEach([now](TargetSession& session) { session.keyPressed(now); });
}

bool TargetHost::allEnded() {
  bool ended = true;
  sessions_.forEach([&](const TargetSession& session) {
    ended = ended && session.state() == TargetSession::State::kEnded;
  });
  return ended;
}

}  // namespace omniset
