#include "target/target_machine.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace omniset {

namespace {

constexpr Micros kLongestWait = 200 * kMillisecond;
constexpr Micros kLinkLookInterval = 500 * kMillisecond;
// The sockets of several cards are waited on in turn.
constexpr Micros kTurnOfACard = 10 * kMillisecond;
// More than a socket keeps of ordinary frames; a flood must not hold the loop.
constexpr int kMostDrained = 2000;

}  // namespace

std::string TargetMachine::Port::title() const {
  return card.driver.empty() ? card.name : card.name + " (" + card.driver + ")";
}

TargetMachine::TargetMachine(MachineFacts facts, NetworkCards& cards, const Clock& clock,
                             TargetStore& store, TargetConsole& console)
    : facts_(std::move(facts)),
      cards_(cards),
      clock_(clock),
      store_(store),
      console_(console),
      listenedUntil_(clock.now()) {
  for (NetworkCard& card : cards_.bringUp()) {
    ports_.emplace_back().card = std::move(card);
    const Port& port = ports_.back();
    console_.say(port.card.mac,
                 port.title() + ", " + port.card.mac.text() + ": waiting for its link.");
  }
}

void TargetMachine::step() {
  watchLinks();
  if (engaged_) {
    serve(*engaged_, kLongestWait);
  } else {
    serveAll();
  }
}

void TargetMachine::serveAll() {
  bool waited = false;
  for (Port& port : ports_) {
    if (!port.hasLink || !port.session) continue;
    serve(port, kTurnOfACard);
    waited = true;
    if (engaged_) return;
  }
  if (!waited) cards_.idle(kLongestWait);
}

void TargetMachine::serve(Port& port, Micros longestWait) {
  const Micros now = clock_.now();
  if (const Micros absent = now - listenedUntil_; absent > TargetSession::kShortAbsence) {
    port.session->wasAbsent(absent);
  }
  if (port.session->deadline() <= now) port.session->timerFired(now);
  receive(port, std::clamp<Micros>(port.session->deadline() - now, 1, longestWait));
  if (port.session) noteEngagement(port);
}

void TargetMachine::receive(Port& port, Micros wait) {
  try {
    const int received = port.endpoint->waitDatagram(frame_.bytes, wait);
    listenedUntil_ = clock_.now();
    if (received < static_cast<int>(kFrameHeaderLength)) return;
    if (frame_.header().destination != port.card.mac) return;
    port.session->frameReceived(frame_, static_cast<std::size_t>(received), listenedUntil_);
  } catch (const std::exception& e) {
    close(port, e.what());
  }
}

// While one card is engaged the others are silent. What came there meanwhile is out of date.
void TargetMachine::noteEngagement(Port& port) {
  if (port.session->isEngaged()) {
    engaged_ = &port;
  } else if (engaged_ == &port) {
    engaged_ = nullptr;
    for (Port& other : ports_) {
      if (other.session && &other != &port) drain(other);
    }
  }
}

void TargetMachine::drain(Port& port) {
  try {
    for (int left = kMostDrained; left > 0; --left) {
      if (port.endpoint->waitDatagram(frame_.bytes, 1) < 0) return;
    }
  } catch (const std::exception& e) {
    close(port, e.what());
  }
}

// The card is tried again when its link is looked at next.
void TargetMachine::close(Port& port, const std::string& reason) {
  console_.say(port.card.mac, port.title() + ": " + reason);
  port.session.reset();
  port.endpoint.reset();
  port.hasLink = false;
  if (engaged_ != &port) return;
  engaged_ = nullptr;
  try {
    store_.abandon();
  } catch (const std::exception& e) {
    console_.say(port.card.mac, e.what());
  }
}

void TargetMachine::watchLinks() {
  const Micros now = clock_.now();
  if (now < nextLook_) return;
  nextLook_ = now + kLinkLookInterval;
  for (Port& port : ports_) {
    const bool hasLink = cards_.hasLink(port.card);
    if (hasLink && !port.hasLink) linkCame(port);
    if (!hasLink && port.hasLink) linkWent(port);
  }
}

void TargetMachine::linkCame(Port& port) {
  try {
    if (!port.session) {
      port.endpoint = std::make_unique<BroadcastEndpoint>(port.card.mac, nullptr, kInstallPort,
                                                          cards_.makeSocket(port.card));
      port.session = std::make_unique<TargetSession>(
          TargetIdentity{port.card.mac, facts_.product + " " + port.title(), facts_.machine,
                         facts_.disks},
          *port.endpoint, store_, console_, clock_.now());
    }
    port.hasLink = true;
    console_.say(port.card.mac, "Announcing on " + port.title() + ".");
  } catch (const std::exception& e) {
    close(port, e.what());
  }
}

void TargetMachine::linkWent(Port& port) {
  port.hasLink = false;
  console_.say(port.card.mac, port.title() + ": the link is gone. Is the cable in?");
}

void TargetMachine::keyPressed() {
  if (engaged_) engaged_->session->keyPressed(clock_.now());
}

void TargetMachine::describeDisks(const std::string& disks) {
  facts_.disks = disks;
  for (Port& port : ports_) {
    if (port.session) port.session->describeDisks(disks);
  }
}

bool TargetMachine::mayReboot() const {
  return engaged() && engaged()->state() == TargetSession::State::kEnded;
}

}  // namespace omniset
