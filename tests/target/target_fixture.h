// One target and the installer's frames to it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "target_fakes.h"
#include "tests/fakes/captured_trace.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {

using State = TargetSession::State;

// Names the instances of tests that run in several states.
inline std::string stateName(const ::testing::TestParamInfo<State>& instance) {
  static const std::map<State, std::string> kNames{{State::kAnnouncing, "Announcing"},
                                                   {State::kAccepting, "Accepting"},
                                                   {State::kPreparing, "Preparing"},
                                                   {State::kStarting, "Starting"},
                                                   {State::kAwaitingFile, "AwaitingFile"},
                                                   {State::kReceiving, "Receiving"},
                                                   {State::kInstalled, "Installed"},
                                                   {State::kTerminating, "Terminating"},
                                                   {State::kEnding, "Ending"},
                                                   {State::kEnded, "Ended"},
                                                   {State::kFailed, "Failed"}};
  return kNames.at(instance.param);
}

constexpr const char* kInstalledSentence =
    "All is installed. Waiting for the reboot command; press a key to reboot now.";

inline LinkFrame offer(std::string_view text = "OFFR\n") {
  return makeFrame(kInstallerMac, kTargetMac, 1, 1, text);
}
// The installer's pure acknowledgement.
inline LinkFrame acknowledgementOf(int number) {
  return makeFrame(kInstallerMac, kTargetMac, 2, number);
}
inline LinkFrame fileHeader(int sequence, const std::string& name, int size) {
  return makeFrame(kInstallerMac, kTargetMac, sequence, kNoAck,
                   "FILE\n" + name + "\n" + std::to_string(size) + "\n");
}
inline LinkFrame fileData(int sequence, std::string_view bytes) {
  return makeFrame(kInstallerMac, kTargetMac, sequence, kNoAck, bytes, kDataChannel);
}
inline LinkFrame rebootCommand(int sequence) {
  return makeFrame(kInstallerMac, kTargetMac, sequence, 3, "TERM\nInstallation successful\n");
}

struct TargetFixture : ::testing::Test {
  // Lets time pass; the timer fires whenever it is due.
  void pass(Micros time) {
    const Micros end = link.clock.now() + time;
    while (session.deadline() <= end) {
      link.clock.advance(std::max(Micros{0}, session.deadline() - link.clock.now()));
      session.timerFired(link.clock.now());
    }
    link.clock.advance(end - link.clock.now());
  }

  void receive(LinkFrame frame) { receive(frame, frame.datagram().size()); }
  // A datagram of that many bytes, whatever its header says.
  void receive(LinkFrame frame, std::size_t received) {
    session.frameReceived(frame, received, link.clock.now());
  }

  // What was sent since the last call.
  std::vector<LinkFrame> takeSent() {
    std::vector<LinkFrame> frames;
    for (const auto& datagram : link.network->sent) frames.push_back(frameFrom(datagram.bytes));
    link.network->sent.clear();
    return frames;
  }
  std::vector<std::string> takeSentTexts() {
    std::vector<std::string> texts;
    for (const LinkFrame& frame : takeSent()) texts.emplace_back(frame.payloadText());
    return texts;
  }
  // The one frame sent since the last call is a pure acknowledgement of that frame.
  void expectAcknowledged(int number) {
    const auto sent = takeSent();
    ASSERT_EQ(sent.size(), 1u);
    const FrameHeader header = sent[0].header();
    EXPECT_TRUE(header.isAck);
    EXPECT_EQ(header.payloadLength, 0);
    EXPECT_EQ(header.channel, kControlChannel);
    EXPECT_EQ(header.acknowledgement, number);
    EXPECT_EQ(header.source, kTargetMac);
    EXPECT_EQ(header.destination, kInstallerMac);
  }
  void expectAnnouncedAnew() {
    const auto sent = takeSent();
    ASSERT_FALSE(sent.empty());
    const FrameHeader header = sent[0].header();
    EXPECT_EQ(sent[0].payloadText().substr(0, 5), "DSCV\n");
    EXPECT_EQ(header.source, kTargetMac);
    EXPECT_EQ(header.destination, kNobody);
    EXPECT_EQ(header.sequence, 1);
    EXPECT_FALSE(header.isAck);
  }

  // Brings a new session into a state, the shortest way, and forgets what was sent and said.
  void reach(State state) {
    static const std::map<State, std::vector<State>> kWays = ways();
    for (const State step : kWays.at(state)) enter(step);
    ASSERT_EQ(session.state(), state);
    takeSent();
    console.sentences.clear();
    store.calls.clear();
  }

  LinkFixture link;
  FakeStore store;
  FakeConsole console;
  SilentTrace silence;
  TargetSession session{{kTargetMac, "lab-7", "Linux x86_64", "one disk"},
                        link.endpoint,
                        store,
                        console,
                        link.clock.now()};

 private:
  static std::map<State, std::vector<State>> ways() {
    std::map<State, std::vector<State>> ways;
    std::vector<State> way;
    for (const State state : {State::kAnnouncing, State::kAccepting, State::kPreparing,
                              State::kStarting, State::kAwaitingFile}) {
      way.push_back(state);
      ways[state] = way;
    }
    for (const State state : {State::kReceiving, State::kInstalled, State::kFailed}) {
      ways[state] = way;
      ways[state].push_back(state);
    }
    way = ways[State::kInstalled];
    for (const State state : {State::kTerminating, State::kEnding}) {
      ways[state] = way;
      ways[state].push_back(state);
    }
    ways[State::kEnded] = ways[State::kEnding];
    ways[State::kEnded].push_back(State::kEnded);
    return ways;
  }

  // One step from the state before on the way.
  void enter(State state) {
    switch (state) {
      case State::kAnnouncing:
        return pass(0);
      case State::kAccepting:
        receive(offer());
        return pass(0);
      case State::kPreparing:
        store.prepared = false;
        receive(acknowledgementOf(2));
        return pass(0);
      case State::kStarting:
        store.prepared = true;
        return pass(kSecond);
      case State::kAwaitingFile:
        return receive(acknowledgementOf(3));
      case State::kReceiving:
        return receive(fileHeader(2, "system.bdl", 2000));
      case State::kInstalled:
        return receive(fileHeader(2, "autorun.scr", 0));
      case State::kTerminating:
        session.keyPressed(link.clock.now());
        return pass(0);
      case State::kEnding:
        return receive(rebootCommand(3));
      case State::kEnded:
        return pass(10 * kSecond);
      case State::kFailed:
        return receive(fileHeader(2, "system.bdl", -1));
    }
  }
};

}  // namespace omniset::test
