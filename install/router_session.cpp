#include "install/router_session.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <limits>

#include "core/error.h"
#include "core/path.h"
#include "core/trace.h"
#include "install/configuration_script.h"
#include "link/link_protocol.h"

namespace omniset {

namespace {

constexpr std::uint32_t kOfferTries = 60;          // one a second
constexpr std::uint32_t kPreparationTries = 1800;  // keep-alives, one a second
constexpr std::uint32_t kFileTries = 60;
constexpr std::uint32_t kRebootTries = 30;  // one a second
constexpr Micros kSlowestRetransmission = kSecond;
constexpr Micros kFastestRetransmission = 10 * kMillisecond;

}  // namespace

// What a state does with an event, and how an exception in it is told; without a reason of its own
// a state fails with the exception's text.
struct RouterSession::StateRow {
  void (RouterSession::*step)(const LinkFrame* frame, Micros now);
  const char* exceptionTrace;
  const char* exceptionReason;
};

const RouterSession::StateRow& RouterSession::rowOf(State state) {
  static constexpr std::array<StateRow, 5> kRows{{
      {&RouterSession::stepOffer, "EXC while preparing: ", "could not connect to router"},
      {&RouterSession::stepPreparing, "EXC while formating: ", "could not prepare hard drive"},
      {&RouterSession::stepTransferring, "EXC while installing: ", nullptr},
      {&RouterSession::stepWaitingReboot, "EXC while rebooting: ", "could not reboot router"},
      {&RouterSession::stepFinished, "", nullptr},
  }};
  return kRows[static_cast<std::size_t>(state)];
}

RouterSession::RouterSession(const RouterRecord& record, std::string packagesFolder,
                             const SessionServices& services)
    : record_(record),
      packagesFolder_(std::move(packagesFolder)),
      services_(services),
      deadline_(services.clock.now()),
      triesLeft_(kOfferTries) {
  traceLine("script:" + record_.scriptPath);
  try {
    scriptFile_ = buildScript(record_, services_.tempFiles);
  } catch (const Failure& e) {
    fail(e.what());
    return;
  }
  record_.status = RouterStatus::kInstalling;
  record_.bytesSent = 0;
  record_.statusText = "Sending offer...";
  connection_.local = services_.endpoint.localAddress();
  connection_.peer = record_.mac;
  connection_.acknowledgement = 1;
}

RouterSession::~RouterSession() {
  traceLine("~Installator()");
  currentFile_.reset();
  if (!scriptFile_.empty()) std::remove(scriptFile_.c_str());
}

void RouterSession::timerFired(Micros now) {
  dispatch(nullptr, now);
}

void RouterSession::frameReceived(LinkFrame& frame, std::size_t received, Micros now) {
  if (acceptFrame(connection_, frame, received)) {
    dispatch(&frame, now);
    return;
  }
  if (!traceEnabled()) return;
  trace("bad packet received: ");
  dumpFrame(frame);
  const std::string_view payload = frame.payloadText();
  if (payload.empty()) return;
  trace("Data: " + std::string(payload.substr(0, payload.find('\0'))) + "\n");
}

void RouterSession::dispatch(const LinkFrame* frame, Micros now) {
  const StateRow& row = rowOf(state_);
  try {
    (this->*row.step)(frame, now);
  } catch (const std::exception& e) {
    traceLine(row.exceptionTrace + std::string(e.what()));
    fail(row.exceptionReason ? row.exceptionReason : e.what());
  }
}

void RouterSession::fail(const std::string& reason) {
  traceLine("fail: " + reason);
  record_.status = RouterStatus::kFailed;
  record_.bytesSent = 0;
  record_.statusText = "Installation failed: " + reason;
  state_ = State::kFinished;
  deadline_ = 0;
}

void RouterSession::sendControlText(const std::string& text) {
  traceLine("sending: " + text);
  sendControl(services_.endpoint, connection_, services_.sendFrame, text);
}

void RouterSession::acknowledge() {
  sendAcknowledgement(services_.endpoint, connection_, services_.sendFrame);
}

bool RouterSession::isAcknowledged(const LinkFrame& frame) const {
  return frame.header().acknowledgement == connection_.sequence;
}

void RouterSession::stepOffer(const LinkFrame* frame, Micros now) {
  if (!frame) {
    sendOffer(now);
    return;
  }
  ++connection_.sequence;
  if (!frame->payloadText().starts_with(word::kAccept)) {
    fail("bad router response");
    return;
  }
  state_ = State::kPreparing;
  triesLeft_ = kPreparationTries;
  deadline_ = 0;
  traceLine("prepare ok");
  record_.statusText = "Partitioning and formating harddrive...";
}

void RouterSession::sendOffer(Micros now) {
  if (triesLeft_ == 0) {
    fail("No response from router, timeout");
    return;
  }
  sendControlText(record_.keepConfiguration ? "OFFR\nkeep\n" : "OFFR\n");
  deadline_ = now + kSecond;
  --triesLeft_;
}

void RouterSession::stepPreparing(const LinkFrame* frame, Micros now) {
  if (frame) {
    if (!frame->payloadText().starts_with(word::kStart)) {
      fail("bad router response");
      return;
    }
    state_ = State::kTransferring;
    record_.statusText = "Installing router...";
    acknowledge();
    traceLine("format ok");
    return;
  }
  if (triesLeft_ == 0) {
    fail("No response from router, timeout");
    return;
  }
  acknowledge();
  deadline_ = now + kSecond;
  --triesLeft_;
}

void RouterSession::stepTransferring(const LinkFrame* frame, Micros now) {
  if (!currentFile_) openNextFile();
  if (frame && isAcknowledged(*frame)) {
    fileFrameAcknowledged(now);
  } else if (frame) {
    deadline_ = now + retransmissionTimeout_;
  } else {
    resendFile(now);
  }
}

void RouterSession::openNextFile() {
  const bool isScript = filesOpened_ == record_.packageFiles.size();
  const std::string name = isScript ? kScriptName : record_.packageFiles[filesOpened_];
  const std::string path = isScript ? scriptFile_ : joinPath(packagesFolder_, name);
  record_.statusText = "Transfering: " + (isScript ? std::string("configuration") : name);
  currentFile_ = std::make_unique<FileSender>(path, services_.endpoint, connection_, name);
  ++filesOpened_;
  retransmissionTimeout_ = kSlowestRetransmission;
  triesLeft_ = kFileTries;
}

void RouterSession::resendFile(Micros now) {
  if (triesLeft_ == 0) {
    fail("Connection timeout");
    return;
  }
  tracef("timeout, resend  %lld\n", static_cast<long long>(now));
  currentFile_->next(false);
  --triesLeft_;
  if (retransmissionTimeout_ < kSlowestRetransmission) retransmissionTimeout_ *= 2;
  deadline_ = now + retransmissionTimeout_;
}

void RouterSession::fileFrameAcknowledged(Micros now) {
  ++connection_.sequence;
  const int chunk = currentFile_->next(true);
  retransmissionTimeout_ = kFastestRetransmission;
  triesLeft_ = kFileTries;
  if (chunk == 0) {
    currentFile_.reset();
    if (filesOpened_ > record_.packageFiles.size()) {
      allSent(now);
      return;
    }
  } else {
    countBytes(chunk);
  }
  deadline_ = now + retransmissionTimeout_;
}

// Stops at the largest count: a target may be sent more in all.
void RouterSession::countBytes(int chunk) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  record_.bytesSent += std::min(chunk, kMost - record_.bytesSent);
}

void RouterSession::allSent(Micros now) {
  record_.status = RouterStatus::kWaitingReboot;
  state_ = State::kWaitingReboot;
  record_.statusText = "Remove floppy from router and press reboot";
  traceLine("all sent");
  deadline_ = now + kSecond;
  triesLeft_ = kRebootTries;
}

void RouterSession::stepWaitingReboot(const LinkFrame* frame, Micros now) {
  if (!frame) {
    if (rebootRequested_) sendReboot();
    deadline_ = now + kSecond;
    return;
  }
  if (frame->payload().empty()) {
    if (!isAcknowledged(*frame)) return;
    traceLine("command success");
    ++connection_.sequence;
  } else {
    if (!frame->payloadText().starts_with(word::kTerminate)) return;
    acknowledge();
    traceLine("user pressed a key on router");
  }
  finish("Installation finished successfully");
}

void RouterSession::sendReboot() {
  record_.statusText = "Sending reboot command...";
  traceLine("rebooting");
  sendControlText("TERM\nInstallation successful\n");
  if (--triesLeft_ > 0) return;
  traceLine("command failure");
  finish("No response, router must have been already rebooted");
}

void RouterSession::finish(const char* text) {
  rebootRequested_ = false;
  record_.status = RouterStatus::kFinished;
  record_.statusText = text;
  state_ = State::kFinished;
}

void RouterSession::stepFinished(const LinkFrame* /*frame*/, Micros now) {
  traceLine("finished");
  rebootRequested_ = false;
  deadline_ = now + kSecond;
}

}  // namespace omniset
