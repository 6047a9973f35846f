// The installation of one target: offer, disk preparation, transfer of the packages and the script,
// reboot. A session is fed with frames and timer events by the installer's thread and never blocks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "core/clock.h"
#include "core/temp_file.h"
#include "install/router_record.h"
#include "link/broadcast_endpoint.h"
#include "link/file_sender.h"
#include "link/link_connection.h"
#include "link/link_frame.h"

namespace omniset {

// What all sessions of an installer share; owned by the installer.
struct SessionServices {
  BroadcastEndpoint& endpoint;
  LinkFrame& sendFrame;
  const Clock& clock;
  TempFiles& tempFiles;
};

class RouterSession {
 public:
  enum class State { kOffer, kPreparing, kTransferring, kWaitingReboot, kFinished };

  // Writes the configuration script into a temporary file, which the destructor deletes. Raises
  // Error when no temporary file can be had; other failures make a session that has failed.
  RouterSession(const RouterRecord& record, std::string packagesFolder,
                const SessionServices& services);
  ~RouterSession();
  RouterSession(const RouterSession&) = delete;
  RouterSession& operator=(const RouterSession&) = delete;

  // The session's timer: to be called once the deadline is reached.
  void timerFired(Micros now);
  // A frame of `received` bytes from this session's target.
  void frameReceived(LinkFrame& frame, std::size_t received, Micros now);

  // When the timer fires next; 0 at once.
  Micros deadline() const { return deadline_; }
  State state() const { return state_; }
  const RouterRecord& record() const { return record_; }
  void requestReboot() { rebootRequested_ = true; }

 private:
  struct StateRow;
  static const StateRow& rowOf(State state);

  // One per state; `frame` is null for the timer.
  void stepOffer(const LinkFrame* frame, Micros now);
  void stepPreparing(const LinkFrame* frame, Micros now);
  void stepTransferring(const LinkFrame* frame, Micros now);
  void stepWaitingReboot(const LinkFrame* frame, Micros now);
  void stepFinished(const LinkFrame* frame, Micros now);

  void dispatch(const LinkFrame* frame, Micros now);
  void fail(const std::string& reason);
  void sendControlText(const std::string& text);
  void acknowledge();
  bool isAcknowledged(const LinkFrame& frame) const;

  void sendOffer(Micros now);
  void openNextFile();
  void resendFile(Micros now);
  void fileFrameAcknowledged(Micros now);
  void countBytes(int chunk);
  void allSent(Micros now);
  void sendReboot();
  void finish(const char* text);

  RouterRecord record_;
  std::string packagesFolder_;
  SessionServices services_;
  LinkConnection connection_;
  std::unique_ptr<FileSender> currentFile_;
  State state_ = State::kOffer;
  bool rebootRequested_ = false;
  Micros retransmissionTimeout_ = 0;
  Micros deadline_;
  std::uint32_t triesLeft_;
  std::string scriptFile_;
  std::size_t filesOpened_ = 0;  // of the packages followed by the script
};

}  // namespace omniset
