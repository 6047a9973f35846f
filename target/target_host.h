// The event loop of one or more targets on one socket.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "core/clock.h"
#include "link/broadcast_endpoint.h"
#include "link/link_frame.h"
#include "link/timed_sessions.h"
#include "target/target_session.h"

namespace omniset {

class TargetHost {
 public:
  // Both outlive the host.
  TargetHost(BroadcastEndpoint& endpoint, const Clock& clock)
      : endpoint_(endpoint), clock_(clock), listenedUntil_(clock.now()) {}

  // Adds a target, which announces itself at once.
  void add(TargetIdentity identity, TargetStore& store, TargetConsole& console);

  // One turn of the loop: fires the timers that are due, waits for a datagram until the next one,
  // at most `longestWait`, and hands the datagram to its target. Raises SocketExc.
  void step(Micros longestWait);

  // A key was pressed on the console of all targets.
  void keyPressed();

  // True when every target may reboot.
  bool allEnded();

  const TargetSession* find(const MacAddress& mac) const { return sessions_.find(mac); }
  void remove(const MacAddress& mac) { sessions_.remove(mac); }

 private:
  BroadcastEndpoint& endpoint_;
  const Clock& clock_;
  TimedSessions<TargetSession> sessions_;
  LinkFrame frame_;
  Micros listenedUntil_;
};

}  // namespace omniset
