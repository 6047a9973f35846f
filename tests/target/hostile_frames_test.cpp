// Datagrams that no honest installer sends, and those of a second one.
#include <random>

#include "target_fixture.h"

namespace omniset::test {
namespace {

using ::testing::AnyOf;
using ::testing::IsEmpty;

constexpr State kAllStates[] = {State::kAnnouncing, State::kAccepting,    State::kPreparing,
                                State::kStarting,   State::kAwaitingFile, State::kReceiving,
                                State::kInstalled,  State::kTerminating,  State::kEnding,
                                State::kEnded,      State::kFailed};

struct TargetUnderAttack : TargetFixture, ::testing::WithParamInterface<State> {
  void SetUp() override {
    reach(GetParam());
    store.prepared = false;
  }
  // What the frames of the state's installer would be.
  static std::vector<LinkFrame> framesOfAnInstaller(const MacAddress& from) {
    std::vector<LinkFrame> frames;
    for (int sequence = 0; sequence <= 5; ++sequence) {
      for (int ack = kNoAck; ack <= 5; ++ack) {
        for (const char* text : {"", "OFFR\n", "FILE\nx\n1\n", "TERM\n", "data"}) {
          frames.push_back(makeFrame(from, kTargetMac, sequence, ack, text));
          frames.push_back(makeFrame(from, kTargetMac, sequence, ack, text, kDataChannel));
        }
      }
    }
    return frames;
  }
  void expectUntouched() {
    EXPECT_EQ(session.state(), GetParam());
    EXPECT_THAT(takeSent(), IsEmpty());
    EXPECT_THAT(store.calls, IsEmpty());
    EXPECT_THAT(console.sentences, IsEmpty());
  }
};

TEST_P(TargetUnderAttack, DatagramsShorterThanAHeaderAreHarmless) {
  for (std::size_t length = 0; length < kFrameHeaderLength; ++length) {
    for (const LinkFrame& frame : framesOfAnInstaller(kInstallerMac)) receive(frame, length);
  }
  expectUntouched();
}

TEST_P(TargetUnderAttack, CutDatagramsAreHarmless) {
  for (const LinkFrame& frame : framesOfAnInstaller(kInstallerMac)) {
    const std::size_t whole = frame.datagram().size();
    for (std::size_t length = kFrameHeaderLength; length < whole; ++length) receive(frame, length);
  }
  expectUntouched();
}

TEST_P(TargetUnderAttack, OversizedDatagramsAreHarmless) {
  for (const LinkFrame& frame : framesOfAnInstaller(kInstallerMac)) {
    receive(frame, frame.datagram().size() + 1);
    receive(frame, 4096);
  }
  expectUntouched();
}

TEST_P(TargetUnderAttack, AHeaderThatPromisesMoreThanTheBufferHoldsIsHarmless) {
  for (LinkFrame frame : framesOfAnInstaller(kInstallerMac)) {
    FrameHeader header = frame.header();
    header.payloadLength = 0xFFFF;
    frame.setHeader(header);
    receive(frame, 4096);
  }
  expectUntouched();
}

TEST_P(TargetUnderAttack, FramesToOthersAndToNobodyAreIgnored) {
  for (LinkFrame frame : framesOfAnInstaller(kInstallerMac)) {
    FrameHeader header = frame.header();
    for (const MacAddress& other : {kStrangerMac, kNobody}) {
      header.destination = other;
      frame.setHeader(header);
      receive(frame);
    }
  }
  expectUntouched();
}

TEST_P(TargetUnderAttack, RandomBytesAreHarmless) {
  std::mt19937 random(20);
  for (int i = 0; i < 5000; ++i) {
    LinkFrame frame;
    for (auto& byte : frame.bytes) byte = static_cast<std::uint8_t>(random());
    receive(frame, random() % 4097);
  }
  expectUntouched();
}

// What an honest header in front of random bytes may do is end the installation, not the program.
TEST_P(TargetUnderAttack, RandomPayloadsOfTheInstallerLeaveItAbleToStartAnew) {
  std::mt19937 random(21);
  for (int i = 0; i < 3000; ++i) {
    std::string payload(random() % 1453, 'x');
    for (char& c : payload) c = static_cast<char>(random());
    static const std::vector<std::string> kWords{"", "FILE\n", "FILE\nx\n", "FILE\nx\n1452\n",
                                                 "OFFR\n"};
    payload = kWords[random() % kWords.size()] + payload;
    receive(makeFrame(kInstallerMac, kTargetMac, static_cast<int>(random() % 8),
                      static_cast<int>(random() % 5), payload,
                      static_cast<std::uint8_t>(random() % 2)));
    if (random() % 50 == 0) pass(kSecond);
  }
  store.prepared = true;
  pass(60 * kSecond);
  EXPECT_THAT(session.state(), AnyOf(State::kAnnouncing, State::kInstalled, State::kEnded));
}

INSTANTIATE_TEST_SUITE_P(InState, TargetUnderAttack, ::testing::ValuesIn(kAllStates), stateName);

struct BoundTarget : TargetUnderAttack {};

TEST_P(BoundTarget, FramesOfASecondInstallerAreIgnored) {
  for (const LinkFrame& frame : framesOfAnInstaller(kStrangerMac)) receive(frame);
  for (const LinkFrame& frame : framesOfAnInstaller(kNobody)) receive(frame);
  expectUntouched();
}

INSTANTIATE_TEST_SUITE_P(InState, BoundTarget,
                         ::testing::ValuesIn(std::begin(kAllStates) + 1, std::end(kAllStates)),
                         stateName);

}  // namespace
}  // namespace omniset::test
