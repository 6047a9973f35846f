#include "boot_client.h"

#include <algorithm>
#include <utility>

#include "tests/boot/tftp_datagrams.h"

namespace omniset::test {

namespace {

constexpr std::uint16_t kBootpServer = 67;
constexpr std::uint16_t kBootpClient = 68;
constexpr std::uint16_t kTftp = 69;

constexpr Micros kAskInterval = kSecond;
constexpr int kAskTries = 5;
// As boot firmware does; each repetition waits twice as long.
constexpr Micros kRequestInterval = 230 * kMillisecond;
constexpr int kRequestTries = 5;
constexpr Micros kAckInterval = 1100 * kMillisecond;
constexpr int kAckTries = 8;
constexpr Micros kRestart = 3 * kSecond;

constexpr std::uint8_t kOpcodeData = 3;
constexpr std::uint8_t kOpcodeOptionAck = 6;

}  // namespace

BootClient::BootClient(BootNetwork& network, Plan plan)
    : network_(network), plan_(std::move(plan)), livesLeft_(plan_.lives), port_(plan_.firstPort) {
  network_.listen(kBootpClient, [this, alive = alive_](const Bytes& datagram, std::uint16_t) {
    if (*alive) replied(datagram);
  });
}

BootClient::~BootClient() {
  *alive_ = false;
}

void BootClient::later(Micros delay, void (BootClient::*action)()) {
  network_.events().after(delay, [this, action, turn = ++turn_, alive = alive_] {
    if (*alive && turn == turn_) (this->*action)();
  });
}

void BootClient::start() {
  boot();
}

void BootClient::boot() {
  files_.clear();
  asked_ = 0;
  tries_ = 0;
  asking_ = true;
  ask();
}

void BootClient::ask() {
  network_.sendToService(plan_.request, kBootpClient, kBootpServer);
  later(kAskInterval << tries_, &BootClient::askAgain);
}

void BootClient::askAgain() {
  if (++tries_ == kAskTries) {
    fail();
  } else {
    ask();
  }
}

void BootClient::replied(const Bytes& datagram) {
  const bool isMine =
      datagram.size() > 240 && datagram[0] == 2 &&
      std::equal(plan_.mac.bytes.begin(), plan_.mac.bytes.end(), datagram.begin() + 28);
  if (!isMine || !asking_) return;
  tries_ = 0;
  if (++asked_ < plan_.asks) {
    later(kAskInterval, &BootClient::ask);
  } else {
    asking_ = false;
    fetch();
  }
}

void BootClient::fetch() {
  tries_ = 0;
  block_ = 0;
  serverPort_ = 0;
  file_.clear();
  network_.hangUp(port_);
  ++port_;
  network_.listen(port_, [this, alive = alive_](const Bytes& datagram, std::uint16_t fromPort) {
    if (*alive) received(datagram, fromPort);
  });
  requestedAt_ = network_.events().now();
  sendRequest();
}

void BootClient::sendRequest() {
  network_.sendToService(readRequest(plan_.files[files_.size()], plan_.options), port_, kTftp);
  later(kRequestInterval << tries_, &BootClient::requestAgain);
}

void BootClient::requestAgain() {
  if (++tries_ == kRequestTries) {
    fail();
  } else {
    sendRequest();
  }
}

void BootClient::received(const Bytes& datagram, std::uint16_t fromPort) {
  if (datagram.size() < 2) return;
  if (serverPort_ == 0) {
    serverPort_ = fromPort;
    slowestFirstAnswer_ = std::max(slowestFirstAnswer_, network_.events().now() - requestedAt_);
  }
  if (fromPort != serverPort_) return;
  if (datagram[1] == kOpcodeOptionAck && block_ == 0) {
    tries_ = 0;
    acknowledge();
  } else if (datagram[1] == kOpcodeData && datagram.size() >= 4) {
    receivedData(datagram);
  }
}

void BootClient::receivedData(const Bytes& datagram) {
  const auto number = static_cast<std::uint16_t>(datagram[2] << 8 | datagram[3]);
  if (number == static_cast<std::uint16_t>(block_ + 1)) {
    tries_ = 0;
    ++block_;
    file_.insert(file_.end(), datagram.begin() + 4, datagram.end());
    acknowledge();
    if (datagram.size() < 4 + 512) fileCame();
  } else if (number == block_) {
    acknowledge();
  }
}

void BootClient::acknowledge() {
  network_.sendToService(acknowledgement(block_), port_, serverPort_);
  later(kAckInterval, &BootClient::acknowledgeAgain);
}

void BootClient::acknowledgeAgain() {
  if (++tries_ == kAckTries) {
    fail();
  } else {
    acknowledge();
  }
}

void BootClient::fileCame() {
  files_.push_back(file_);
  everything_.push_back(file_);
  ++turn_;
  if (isDone()) {
    network_.hangUp(port_);
  } else {
    fetch();
  }
}

void BootClient::fail() {
  ++turn_;
  asking_ = false;
  network_.hangUp(port_);
  if (--livesLeft_ > 0) later(kRestart, &BootClient::boot);
}

}  // namespace omniset::test
