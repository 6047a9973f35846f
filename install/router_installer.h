// The job that installs routers over the install link: it hears the announcements of booted targets
// and runs one session per target that is being installed, all in one thread.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "core/clock.h"
#include "core/job.h"
#include "core/mac_address.h"
#include "core/sync.h"
#include "core/temp_file.h"
#include "core/udp_socket.h"
#include "install/router_record.h"
#include "install/router_session.h"
#include "link/broadcast_endpoint.h"
#include "link/link_frame.h"
#include "link/network_interfaces.h"
#include "link/timed_sessions.h"

namespace omniset {

// What the installer needs of the system. Everything referred to outlives the installer.
struct InstallerServices {
  NetworkInterfaces& interfaces;
  std::unique_ptr<UdpSocket> socket;
  const Clock& clock;
  TempFiles& tempFiles;
};

class RouterInstaller : public Code {
 public:
  // How long other threads wait for the sessions, in milliseconds.
  static constexpr int kAccessTimeoutMs = 5000;

  // `adapter` is the index of the local adapter to use, 0 for the first. Raises SocketExc.
  RouterInstaller(int adapter, InstallerServices services);

  // The event loop, until the stop event is signalled. Raises SocketExc.
  void run() override;

  // One turn of the event loop: fires the timers that are due, waits for a datagram until the next
  // one, at most a second, and hands the datagram on. For the installer's thread.
  void step();

  // The sessions, held for the caller while it lives. For any thread.
  class Access {
   public:
    // Starts the installation of the record's target, in place of an earlier one. Raises Error when
    // no temporary file can be had.
    void install(const RouterRecord& record, const std::string& packagesFolder);
    // False when the target has no session.
    bool requestReboot(const MacAddress& mac);
    // Ends the target's session; the target is free for a new offer. False when it has none.
    bool cancel(const MacAddress& mac);
    // The record of the target's session with its present state, or null; valid while this lives.
    const RouterRecord* record(const MacAddress& mac) const;
    // The oldest announcement not yet taken.
    std::optional<RouterRecord> takeAnnouncement();

   private:
    friend class RouterInstaller;
    Access(RouterInstaller& installer, int timeoutMs)
        : installer_(installer), lock_(installer.mutex_, timeoutMs) {}

    RouterInstaller& installer_;
    ScopedLock lock_;
  };

  // Raises std::runtime_error "Mutex wait timeouted".
  Access access(int timeoutMs = kAccessTimeoutMs) { return {*this, timeoutMs}; }

 private:
  Micros runTimers();
  void datagramReceived(std::size_t received);
  void announced(const MacAddress& source, Micros now);

  const Clock& clock_;
  TempFiles& tempFiles_;
  BroadcastEndpoint endpoint_;
  LinkFrame receiveFrame_;
  LinkFrame sendFrame_;
  bool moreMayWait_ = false;  // the last turn received something
  Micros timersFired_ = 0;
  Mutex mutex_;  // guards what follows
  TimedSessions<RouterSession> sessions_;
  std::deque<RouterRecord> announcements_;
};

}  // namespace omniset
