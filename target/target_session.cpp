#include "target/target_session.h"

#include <algorithm>
#include <array>
#include <exception>
#include <string_view>
#include <utility>

#include "link/link_protocol.h"

namespace omniset {

namespace {

constexpr Micros kAnnouncementInterval = kSecond;
constexpr Micros kRepetitionInterval = kSecond;
constexpr Micros kPreparationPoll = 100 * kMillisecond;
// The installer sends something at least every 1.28 s while it installs.
constexpr Micros kInstallerGoneAfter = 30 * kSecond;
// However much it sends: nobody who means to install lets a frame wait that long.
constexpr Micros kNoProgressLimit = 120 * kSecond;
constexpr Micros kRestAfterFailure = 10 * kSecond;
constexpr Micros kLingering = 3 * kSecond;
constexpr int kTerminationTries = 5;
// The installer looks at the first 1024 bytes of an announcement, and the label comes last.
constexpr std::size_t kLongestLine = 200;

void makeLine(std::string& text) {
  text.resize(std::min(text.size(), kLongestLine));
  std::replace(text.begin(), text.end(), '\n', ' ');
}

// Is the word one of the lines behind the first?
bool hasLine(std::string_view text, std::string_view word) {
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    text.remove_prefix(end + 1);
    if (text.substr(0, text.find('\n')) == word) return true;
  }
  return false;
}

}  // namespace

// What a state does on its timer and with a frame, what it repeats meanwhile, and whether the
// installer's silence ends it.
struct TargetSession::StateRow {
  void (TargetSession::*timer)(Micros now);
  void (TargetSession::*frame)(LinkFrame& frame, std::size_t received, Micros now);
  const char* repeats;
  bool needsInstaller;
};

const TargetSession::StateRow& TargetSession::rowOf(State state) {
  using T = TargetSession;
  static constexpr std::array<StateRow, 11> kRows{{
      /* kAnnouncing   */ {&T::announce, &T::takeOffer, nullptr, false},
      /* kAccepting    */ {&T::repeatControl, &T::takeAcceptance, "YACK\n", true},
      /* kPreparing    */ {&T::pollPreparation, &T::takeKeepAlive, nullptr, true},
      /* kStarting     */ {&T::repeatControl, &T::takeStart, "STRT\n", true},
      /* kAwaitingFile */ {&T::idle, &T::takeFileHeader, nullptr, true},
      /* kReceiving    */ {&T::idle, &T::takeFileData, nullptr, true},
      /* kInstalled    */ {&T::idle, &T::takeFileHeader, nullptr, false},
      /* kTerminating  */ {&T::sendTermination, &T::takeTermination, "TERM\n", false},
      /* kEnding       */ {&T::endLingering, &T::takeRepetition, nullptr, false},
      /* kEnded        */ {&T::idle, nullptr, nullptr, false},
      /* kFailed       */ {&T::restart, nullptr, nullptr, false},
  }};
  return kRows[static_cast<std::size_t>(state)];
}

TargetSession::TargetSession(TargetIdentity identity, BroadcastEndpoint& endpoint,
                             TargetStore& store, TargetConsole& console, Micros now)
    : identity_(std::move(identity)),
      endpoint_(endpoint),
      store_(store),
      console_(console),
      receiver_(endpoint, connection_),
      deadline_(now) {
  connection_.local = identity_.mac;
  makeLine(identity_.label);
  makeLine(identity_.machine);
  makeLine(identity_.disks);
}

void TargetSession::timerFired(Micros now) {
  const StateRow& row = rowOf(state_);
  try {
    if (isInstallerGone(now)) {
      say("The installer is gone. Announcing again.");
      restart(now);
    } else {
      (this->*row.timer)(now);
    }
  } catch (const std::exception& e) {
    state_ == State::kAnnouncing ? announceLater(e.what(), now) : fail(e.what(), now);
  }
}

void TargetSession::frameReceived(LinkFrame& frame, std::size_t received, Micros now) {
  const StateRow& row = rowOf(state_);
  if (!row.frame || received < kFrameHeaderLength) return;
  if (isFromInstaller(frame.header(), received)) lastHeard_ = now;
  try {
    (this->*row.frame)(frame, received, now);
  } catch (const std::exception& e) {
    fail(e.what(), now);
  }
}

void TargetSession::keyPressed(Micros now) {
  if (state_ != State::kInstalled) return;
  triesLeft_ = kTerminationTries;
  change(State::kTerminating, now);
}

void TargetSession::wasAbsent(Micros duration) {
  lastHeard_ += duration;
  lastProgress_ += duration;
  // What failed after it had taken its time is followed by a whole rest.
  if (state_ == State::kFailed) deadline_ += duration;
}

void TargetSession::describeDisks(const std::string& disks) {
  identity_.disks = disks;
  makeLine(identity_.disks);
}

void TargetSession::change(State state, Micros now, Micros delay) {
  state_ = state;
  deadline_ = now + delay;
  lastProgress_ = now;
}

void TargetSession::say(const std::string& sentence) {
  console_.say(identity_.mac, sentence);
}

void TargetSession::fail(const std::string& reason, Micros now) {
  try {
    store_.abandon();
  } catch (const std::exception& e) {
    say(e.what());
  }
  say("Installation failed: " + reason);
  change(State::kFailed, now, kRestAfterFailure);
}

void TargetSession::restart(Micros now) {
  if (state_ == State::kFailed) say("Announcing again.");
  store_.abandon();
  connection_.reset();
  connection_.local = identity_.mac;
  change(State::kAnnouncing, now);
}

void TargetSession::idle(Micros now) {
  deadline_ = now + kSecond;
}

bool TargetSession::isInstallerGone(Micros now) const {
  if (!rowOf(state_).needsInstaller) return false;
  if (now - lastHeard_ >= kInstallerGoneAfter) return true;
  return state_ != State::kPreparing && now - lastProgress_ >= kNoProgressLimit;
}

bool TargetSession::isFromInstaller(const FrameHeader& header, std::size_t received) const {
  return connection_.isBound() && header.source == connection_.peer &&
         header.destination == identity_.mac &&
         received == kFrameHeaderLength + header.payloadLength;
}

// A pure acknowledgement of the frame that we sent last.
bool TargetSession::acknowledgesUs(const LinkFrame& frame, std::size_t received) const {
  const FrameHeader header = frame.header();
  return isFromInstaller(header, received) && header.isAck && header.payloadLength == 0 &&
         header.acknowledgement == connection_.sequence;
}

void TargetSession::announce(Micros now) {
  const std::string text =
      "DSCV\n" + identity_.machine + "\n" + identity_.disks + "\n" + identity_.label + "\n";
  sendControl(endpoint_, connection_, sendFrame_, text, false);
  deadline_ = now + kAnnouncementInterval;
}

// No installation has failed, and other cards of the PC go on.
void TargetSession::announceLater(const std::string& reason, Micros now) {
  say(identity_.label + " cannot be announced: " + reason);
  deadline_ = now + kRestAfterFailure;
}

// The connection is bound only by an offer that is addressed to us: an unbound connection takes
// announcements of other targets too, and their numbers must not count.
void TargetSession::takeOffer(LinkFrame& frame, std::size_t received, Micros now) {
  const FrameHeader header = frame.header();
  if (header.destination != identity_.mac || header.source.isWildcard()) return;
  if (!frame.payloadText().starts_with(word::kOffer)) return;
  if (!acceptFrame(connection_, frame, received)) return;
  connection_.peer = header.source;
  ++connection_.sequence;
  lastHeard_ = now;
  keepConfiguration_ = hasLine(frame.payloadText(), word::kKeep);
  say("Offer from " + header.source.text() +
      (keepConfiguration_ ? ", keeping the configuration." : "."));
  change(State::kAccepting, now);
}

// "YACK" or "STRT".
void TargetSession::repeatControl(Micros now) {
  sendControl(endpoint_, connection_, sendFrame_, rowOf(state_).repeats);
  deadline_ = now + kRepetitionInterval;
}

void TargetSession::takeAcceptance(LinkFrame& frame, std::size_t received, Micros now) {
  if (acknowledgesUs(frame, received)) {
    ++connection_.sequence;
    beginPreparation(now);
  } else if (isRepetition(connection_, frame, received)) {
    // It may be the offer of another installation, after the first one was given up.
    keepConfiguration_ = hasLine(frame.payloadText(), word::kKeep);
    repeatControl(now);
  }
}

void TargetSession::beginPreparation(Micros now) {
  say("Preparing the disk...");
  change(State::kPreparing, now);
  store_.beginPreparation(keepConfiguration_);
}

// The keep-alives of the installer need no answer.
void TargetSession::takeKeepAlive(LinkFrame& /*frame*/, std::size_t /*received*/, Micros /*now*/) {}

void TargetSession::pollPreparation(Micros now) {
  if (!store_.isPrepared()) {
    deadline_ = now + kPreparationPoll;
    return;
  }
  say("The disk is ready.");
  change(State::kStarting, now);
}

void TargetSession::takeStart(LinkFrame& frame, std::size_t received, Micros now) {
  if (acknowledgesUs(frame, received)) {
    ++connection_.sequence;
    change(State::kAwaitingFile, now, kSecond);
    return;
  }
  // A late offer: nothing else came before "STRT" is answered.
  if (isRepetition(connection_, frame, received)) return;
  takeFileHeader(frame, received, now);
}

void TargetSession::takeFileHeader(LinkFrame& frame, std::size_t received, Micros now) {
  switch (receiver_.takeHeader(frame, received)) {
    case FileReceiver::Header::kNone:
      return;
    case FileReceiver::Header::kFile:
      fileOpened(now);
      return;
    case FileReceiver::Header::kTerminated:
      terminated(now);
      return;
  }
}

// A header that comes while "STRT" is still repeated acknowledges it.
void TargetSession::fileOpened(Micros now) {
  if (state_ == State::kStarting) ++connection_.sequence;
  store_.openFile(receiver_.name(), receiver_.size());
  say("Receiving " + receiver_.name() + ", " + std::to_string(receiver_.size()) + " bytes.");
  change(State::kReceiving, now, kSecond);
  if (receiver_.isComplete()) fileComplete(now);
  receiver_.acknowledge();
}

void TargetSession::takeFileData(LinkFrame& frame, std::size_t received, Micros now) {
  // A late acknowledgement of "STRT" says nothing about the file.
  if (received == kFrameHeaderLength) return;
  const auto data = receiver_.takeData(frame, received);
  if (data.empty()) return;
  lastProgress_ = now;
  store_.write(data);
  console_.progress(identity_.mac, receiver_.name(), receiver_.bytesReceived(), receiver_.size());
  if (receiver_.isComplete()) fileComplete(now);
  receiver_.acknowledge();
}

void TargetSession::fileComplete(Micros now) {
  store_.closeFile();
  if (receiver_.name() != kScriptName) {
    change(State::kAwaitingFile, now, kSecond);
    return;
  }
  store_.finish();
  say("All is installed. Waiting for the reboot command; press a key to reboot now.");
  change(State::kInstalled, now, kSecond);
}

void TargetSession::terminated(Micros now) {
  receiver_.acknowledge();
  say("Rebooting.");
  change(State::kEnding, now, kLingering);
}

void TargetSession::sendTermination(Micros now) {
  if (triesLeft_ == 0) {
    say("Rebooting without the installer's word.");
    change(State::kEnded, now);
    return;
  }
  --triesLeft_;
  repeatControl(now);
}

void TargetSession::takeTermination(LinkFrame& frame, std::size_t received, Micros now) {
  if (acknowledgesUs(frame, received)) {
    ++connection_.sequence;
    say("Rebooting.");
    change(State::kEnded, now);
    return;
  }
  takeFileHeader(frame, received, now);
}

void TargetSession::takeRepetition(LinkFrame& frame, std::size_t received, Micros /*now*/) {
  if (isRepetition(connection_, frame, received)) receiver_.acknowledge();
}

void TargetSession::endLingering(Micros now) {
  change(State::kEnded, now);
}

}  // namespace omniset
