// The target's side of an installation: announces itself, answers an offer, prepares its store,
// takes the files, and ends on the installer's reboot command or on a key. Fed with frames and
// timer events, it never blocks but for what its store does.
//
// The installer takes an answer without a payload for a bad one while it offers and while the disk
// is prepared; so a repeated offer is answered by repeating "YACK", or not at all, never by a pure
// acknowledgement.
#pragma once

#include <cstddef>
#include <string>

#include "core/clock.h"
#include "link/broadcast_endpoint.h"
#include "link/file_receiver.h"
#include "link/link_connection.h"
#include "link/link_frame.h"
#include "target/target_console.h"
#include "target/target_store.h"

namespace omniset {

// What a target tells of itself in its announcements: texts of one line. Line ends are sent as
// blanks, and what is longer than 200 bytes is cut.
struct TargetIdentity {
  MacAddress mac;
  std::string label;
  std::string machine;  // processor and memory
  std::string disks;
};

class TargetSession {
 public:
  enum class State {
    kAnnouncing,
    kAccepting,  // repeats "YACK" until it is acknowledged
    kPreparing,  // the store is being made ready
    kStarting,   // repeats "STRT" until it is acknowledged or a file header comes
    kAwaitingFile,
    kReceiving,
    kInstalled,    // all files are here; waits for the reboot command or a key
    kTerminating,  // a key was pressed: repeats "TERM" until it is acknowledged
    kEnding,       // acknowledges repetitions of the reboot command for a little while
    kEnded,        // the target may reboot now
    kFailed,       // rests, then announces itself anew
  };

  // Endpoint, store and console outlive the session.
  TargetSession(TargetIdentity identity, BroadcastEndpoint& endpoint, TargetStore& store,
                TargetConsole& console, Micros now);

  void timerFired(Micros now);
  // Any datagram; those that are not for this target, or not of its installer, change nothing.
  void frameReceived(LinkFrame& frame, std::size_t received, Micros now);
  // For so long nobody listened, because something else took its time, such as the store: the
  // installer's silence says nothing then. Times up to kShortAbsence need not be told.
  static constexpr Micros kShortAbsence = kSecond;
  void wasAbsent(Micros duration);
  // What its announcements say of the disks from now on.
  void describeDisks(const std::string& disks);
  // A key was pressed on the target's console; heeded once everything is installed.
  void keyPressed(Micros now);

  Micros deadline() const { return deadline_; }
  State state() const { return state_; }
  // From the offer on until it announces itself again; also while it rests after a failure.
  bool isEngaged() const { return state_ != State::kAnnouncing; }

 private:
  struct StateRow;
  static const StateRow& rowOf(State state);

  void announce(Micros now);
  void announceLater(const std::string& reason, Micros now);
  void repeatControl(Micros now);
  void pollPreparation(Micros now);
  void sendTermination(Micros now);
  void endLingering(Micros now);
  void restart(Micros now);
  void idle(Micros now);

  void takeOffer(LinkFrame& frame, std::size_t received, Micros now);
  void takeAcceptance(LinkFrame& frame, std::size_t received, Micros now);
  void takeKeepAlive(LinkFrame& frame, std::size_t received, Micros now);
  void takeStart(LinkFrame& frame, std::size_t received, Micros now);
  void takeFileHeader(LinkFrame& frame, std::size_t received, Micros now);
  void takeFileData(LinkFrame& frame, std::size_t received, Micros now);
  void takeTermination(LinkFrame& frame, std::size_t received, Micros now);
  void takeRepetition(LinkFrame& frame, std::size_t received, Micros now);

  bool isInstallerGone(Micros now) const;
  bool isFromInstaller(const FrameHeader& header, std::size_t received) const;
  bool acknowledgesUs(const LinkFrame& frame, std::size_t received) const;
  void beginPreparation(Micros now);
  void fileOpened(Micros now);
  void fileComplete(Micros now);
  void terminated(Micros now);
  void change(State state, Micros now, Micros delay = 0);
  void fail(const std::string& reason, Micros now);
  void say(const std::string& sentence);

  TargetIdentity identity_;
  BroadcastEndpoint& endpoint_;
  TargetStore& store_;
  TargetConsole& console_;
  LinkConnection connection_;
  FileReceiver receiver_;
  LinkFrame sendFrame_;
  State state_ = State::kAnnouncing;
  Micros deadline_;
  Micros lastHeard_ = 0;     // the last frame of our installer
  Micros lastProgress_ = 0;  // the last one that brought the installation on
  bool keepConfiguration_ = false;
  int triesLeft_ = 0;
};

}  // namespace omniset
