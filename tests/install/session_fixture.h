// A session of one target, fed with frames and timer events by the test.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "install/router_session.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/temp_folder.h"
#include "tests/install/scripted_target.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {

struct SessionFixture : ::testing::Test {
  using State = RouterSession::State;

  SessionFixture() {
    record.mac = kTargetMac;
    record.label = "router";
    record.lastSeen = link.clock.now();
  }

  // Makes the session from `record`; the trace so far is forgotten.
  void start() {
    session = std::make_unique<RouterSession>(
        record, packages.path(), SessionServices{link.endpoint, sendFrame, link.clock, tempFiles});
    trace.clear();
  }
  void startTo(State state) {
    start();
    if (state == State::kOffer) return;
    fire();
    says("YACK\n");
    if (state != State::kPreparing) {
      fire();
      says("STRT\n");
    }
    if (state == State::kWaitingReboot) sendAll();
    trace.clear();
  }
  // Acknowledges file frames until all are sent.
  void sendAll() {
    while (session->state() == State::kTransferring) {
      fire();
      while (listened_ < link.sentCount()) acknowledges();
    }
  }

  // The session's timer, when it is due.
  void fire() {
    link.clock.advance(std::max<Micros>(session->deadline() - now(), 0));
    session->timerFired(now());
  }
  void hear(LinkFrame frame) { session->frameReceived(frame, frame.datagram().size(), now()); }
  // The target hears all that was sent, then speaks.
  void says(std::string_view text) {
    listen();
    hear(target.says(text));
  }
  void acknowledges() {
    listen();
    hear(target.acknowledges());
  }

  Micros now() const { return link.clock.now(); }
  LinkFrame lastSent() const { return link.sent(link.sentCount() - 1); }
  const RouterRecord& state() const { return session->record(); }

  void expectFailed(const std::string& reason) const {
    EXPECT_EQ(session->state(), State::kFinished);
    EXPECT_EQ(state().status, RouterStatus::kFailed);
    EXPECT_EQ(state().statusText, "Installation failed: " + reason);
    EXPECT_EQ(state().bytesSent, 0);
    EXPECT_EQ(session->deadline(), 0);
  }
  void expectPureAcknowledgement(const LinkFrame& frame, int number) const {
    EXPECT_EQ(link.network->sent.back().bytes.size(), 20u);
    EXPECT_TRUE(frame.header().isAck);
    EXPECT_EQ(frame.header().channel, 0);
    EXPECT_EQ(frame.header().acknowledgement, number);
  }

  LinkFixture link;
  CapturedTrace trace;
  TempFolder packages;
  TempFolder temporary;
  FakeTempFiles tempFiles{temporary};
  LinkFrame sendFrame;
  RouterRecord record;
  ScriptedTarget target;
  std::unique_ptr<RouterSession> session;

 private:
  void listen() {
    for (; listened_ < link.sentCount(); ++listened_) target.hears(link.sent(listened_));
  }

  std::size_t listened_ = 0;
};

}  // namespace omniset::test
