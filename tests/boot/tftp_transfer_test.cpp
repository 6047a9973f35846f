#include "boot/tftp_transfer.h"

#include <gmock/gmock.h>

#include <string>

#include "core/error.h"
#include "core/ipv4_address.h"
#include "tests/boot/tftp_datagrams.h"
#include "tests/contract/raised_text.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_udp_socket.h"

namespace omniset::test {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr std::uint32_t kClientAddress = ipv4(192, 168, 88, 20);
constexpr std::uint16_t kClientPort = 2070;

class TftpTransferTest : public testing::Test {
 protected:
  using State = TftpTransfer::State;

  TftpTransferTest() {
    services_.makeSocket = [this] { return std::make_unique<FakeUdpSocket>(transferNetwork_); };
    services_.nextPort = [this] { return ports_.next(); };
  }

  TftpTransfer begin(std::size_t length) {
    content_ = imageOf(length);
    return {listening_, {content_.data(), content_.size()}, kClientAddress, services_};
  }
  static void feed(TftpTransfer& transfer, const Bytes& datagram,
                   std::uint16_t port = kClientPort) {
    transfer.received(datagram, {ipv4(192, 168, 88, 99), port});
  }
  static void silence(TftpTransfer& transfer, int seconds) {
    for (int i = 0; i < seconds; ++i) transfer.silence();
  }
  std::vector<FakeNetwork::Datagram> takeSent() {
    return std::exchange(transferNetwork_->sent, {});
  }
  // The one datagram sent since the last look; empty unless there is exactly one.
  Bytes sentOne() {
    const auto sent = takeSent();
    return sent.size() == 1 ? sent[0].bytes : Bytes{};
  }
  Bytes block(std::size_t number) const { return dataBlock(content_, number); }

  std::shared_ptr<FakeNetwork> listeningNetwork_ = std::make_shared<FakeNetwork>();
  std::shared_ptr<FakeNetwork> transferNetwork_ = std::make_shared<FakeNetwork>();
  FakeUdpSocket listening_{listeningNetwork_};
  TftpServices services_;
  int random_ = 0x1234;
  TransferPorts ports_{[this] { return random_; }};
  Bytes content_;
  CapturedTrace trace_;
};

TEST_F(TftpTransferTest, ARequestWithoutOptionsIsAnsweredWithTheFirstBlock) {
  TftpTransfer transfer = begin(1000);
  feed(transfer, readRequest("/image"));
  EXPECT_EQ(sentOne(), block(1));
  EXPECT_EQ(transfer.state(), State::kTransferring);
}

TEST_F(TftpTransferTest,
       ASizeRequestIsAnsweredWithTheLengthAndItsAcknowledgementWithTheFirstBlock) {
  TftpTransfer transfer = begin(10824);
  feed(transfer, readRequest("/image",
                             "blksize\0"s
                             "1428\0TSIZE\0"s
                             "0\0"s));
  EXPECT_EQ(sentOne(), bytesOf("\0\6tsize\0"s
                               "10824\0"s));
  EXPECT_EQ(trace_.text(), "ENTERING TFTP LOOP\ngot tsize opt\n");
  feed(transfer, acknowledgement(0));
  EXPECT_EQ(sentOne(), block(1));
}

TEST_F(TftpTransferTest, ABlockSizeRequestAloneIsIgnored) {
  TftpTransfer transfer = begin(10824);
  feed(transfer, readRequest("/image",
                             "blksize\0"s
                             "1428\0"s));
  EXPECT_EQ(sentOne(), block(1));
  EXPECT_EQ(trace_.text(), "ENTERING TFTP LOOP\n");
}

TEST_F(TftpTransferTest, AnswersGoToTheConfiguredAddressAndTheRequestsPort) {
  TftpTransfer transfer = begin(1000);
  feed(transfer, readRequest("/image"), 3333);
  const auto sent = takeSent();
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(sent[0].peer.address, kClientAddress);
  EXPECT_EQ(sent[0].peer.port, 3333);
}

TEST_F(TftpTransferTest, TheTransferHasASocketOfItsOwnOnARandomHighPort) {
  TftpTransfer transfer = begin(1000);
  EXPECT_EQ(&transfer.socket(), &listening_);
  feed(transfer, readRequest("/image"));
  EXPECT_NE(&transfer.socket(), &listening_);
  EXPECT_THAT(transferNetwork_->calls, ElementsAre("open", "bind " + std::to_string(0xB412)));
  EXPECT_TRUE(listeningNetwork_->calls.empty());
}

TEST(TransferPorts, AreFrom32768OnWhateverTheRandomNumber) {
  for (const int number : {0, 1, 0x7F, 0x80, 0xFF, 0x7FFF, 0x7FFFFFFF}) {
    EXPECT_GE(TransferPorts([&] { return number; }).next(), 32'768) << number;
  }
  EXPECT_EQ(TransferPorts([] { return 0x1234; }).next(), 0xB412);
}

TEST(TransferPorts, AreNeverTheSameTwiceInSuccession) {
  TransferPorts ports([] { return 0x1234; });
  EXPECT_EQ(ports.next(), 0xB412);
  EXPECT_EQ(ports.next(), 0xB413);
  EXPECT_EQ(ports.next(), 0xB412);
}

TEST_F(TftpTransferTest, AnImageOf10824BytesEndsWithABlockOf72) {
  TftpTransfer transfer = begin(10824);
  feed(transfer, readRequest("/image"));
  for (std::uint16_t number = 1; number <= 21; ++number) {
    EXPECT_EQ(sentOne(), block(number)) << number;
    EXPECT_EQ(transfer.state(), State::kTransferring) << number;
    feed(transfer, acknowledgement(number));
  }
  const Bytes last = sentOne();
  EXPECT_EQ(last, block(22));
  EXPECT_EQ(last.size(), 4u + 72);
  EXPECT_EQ(transfer.state(), State::kSent);
}

TEST_F(TftpTransferTest, WholeBlocksAreFollowedByAnEmptyOne) {
  TftpTransfer transfer = begin(1024);
  feed(transfer, readRequest("/image"));
  feed(transfer, acknowledgement(1));
  EXPECT_EQ(takeSent().size(), 2u);
  EXPECT_EQ(transfer.state(), State::kTransferring);
  feed(transfer, acknowledgement(2));
  EXPECT_EQ(sentOne(), Bytes({0, 3, 0, 3}));
  EXPECT_EQ(transfer.state(), State::kSent);
}

TEST_F(TftpTransferTest, AnEmptyImageIsOneEmptyBlock) {
  TftpTransfer transfer = begin(0);
  feed(transfer, readRequest("f",
                             "tsize\0"s
                             "0\0"s));
  EXPECT_EQ(sentOne(), Bytes({0, 6}));
  feed(transfer, acknowledgement(0));
  EXPECT_EQ(sentOne(), Bytes({0, 3, 0, 1}));
  EXPECT_EQ(transfer.state(), State::kSent);
}

TEST_F(TftpTransferTest, BlockNumbersGoOnBehind65535) {
  TftpTransfer transfer = begin(65'537 * 512 + 1);
  feed(transfer, readRequest("f"));
  for (std::uint32_t number = 1; number <= 65'537; ++number) {
    ASSERT_EQ(sentOne(), block(number)) << number;
    feed(transfer, acknowledgement(static_cast<std::uint16_t>(number)));
  }
  EXPECT_EQ(sentOne(), block(65'538));
  EXPECT_EQ(transfer.state(), State::kSent);
}

TEST_F(TftpTransferTest, ARepeatedAcknowledgementIsTracedAndSendsNothing) {
  TftpTransfer transfer = begin(20'000);
  feed(transfer, readRequest("f"));
  for (std::uint16_t number = 1; number <= 25; ++number) feed(transfer, acknowledgement(number));
  takeSent();
  feed(transfer, acknowledgement(25));
  EXPECT_TRUE(takeSent().empty());
  EXPECT_THAT(trace_.text(), HasSubstr("recv ack:19, our:1a\nbad ack\n"));
  transfer.silence();
  EXPECT_EQ(sentOne(), block(26));
}

TEST_F(TftpTransferTest, EverySecondOfSilenceRepeatsTheLastAnswerUntilTheFifth) {
  TftpTransfer transfer = begin(1000);
  feed(transfer, readRequest("f",
                             "tsize\0"s
                             "0\0"s));
  const Bytes answer = sentOne();
  for (int second = 1; second <= 4; ++second) {
    transfer.silence();
    EXPECT_EQ(sentOne(), answer) << second;
  }
  transfer.silence();
  EXPECT_TRUE(takeSent().empty());
  EXPECT_EQ(transfer.state(), State::kTimedOut);
  EXPECT_THAT(trace_.text(), testing::EndsWith("TFTP timeout\n"));
}

TEST_F(TftpTransferTest, TheRequestIsAwaitedForTwentySecondsWithNothingSent) {
  TftpTransfer transfer = begin(1000);
  silence(transfer, 19);
  EXPECT_EQ(transfer.state(), State::kAwaitingRequest);
  transfer.silence();
  EXPECT_EQ(transfer.state(), State::kTimedOut);
  EXPECT_TRUE(takeSent().empty());
  EXPECT_TRUE(listeningNetwork_->sent.empty());
  EXPECT_EQ(trace_.text(), "ENTERING TFTP LOOP\nTFTP timeout\n");
}

TEST_F(TftpTransferTest, EveryDatagramGoodOrBadGivesFiveMoreSeconds) {
  TftpTransfer transfer = begin(1000);
  feed(transfer, bytesOf("x"));
  silence(transfer, 4);
  EXPECT_EQ(transfer.state(), State::kAwaitingRequest);
  feed(transfer, {});
  silence(transfer, 4);
  feed(transfer, readRequest("f"));
  silence(transfer, 4);
  feed(transfer, bytesOf("\0\5\0\0"s));
  silence(transfer, 4);
  EXPECT_EQ(transfer.state(), State::kTransferring);
  transfer.silence();
  EXPECT_EQ(transfer.state(), State::kTimedOut);
}

TEST_F(TftpTransferTest, WhatIsNoReadRequestIsTracedAndWaitedOver) {
  TftpTransfer transfer = begin(1000);
  for (const Bytes& datagram : {bytesOf("\0\2f\0octet\0"s), acknowledgement(0), bytesOf("\0\1a"s),
                                Bytes{}, Bytes(256, 0xFF)}) {
    trace_.clear();
    feed(transfer, datagram);
    EXPECT_EQ(trace_.text(), "bad file trans request\n");
  }
  feed(transfer, readRequest("f"));
  EXPECT_EQ(sentOne(), block(1));
}

TEST_F(TftpTransferTest, AnErrorOfTheClientIsTracedWithItsTextAndDoesNotEndTheTransfer) {
  TftpTransfer transfer = begin(1000);
  feed(transfer, readRequest("f"));
  trace_.clear();
  feed(transfer, bytesOf("\0\5\0\3no room\0"s));
  EXPECT_EQ(trace_.text(), "TFTP error\ndisk full or allocation exceeded: no room\nbad ack\n");
  trace_.clear();
  feed(transfer, bytesOf("\0\5\0\x09strange\0"s));
  EXPECT_EQ(trace_.text(), "TFTP error\n- strange\nbad ack\n");
  trace_.clear();
  feed(transfer, bytesOf("\0\5\0\x08just the size\0"s));
  EXPECT_EQ(trace_.text(), "TFTP error\noption negotiation failed: just the size\nbad ack\n");
  takeSent();
  feed(transfer, acknowledgement(1));
  EXPECT_EQ(sentOne(), block(2));
}

TEST_F(TftpTransferTest, AnErrorTextFromTheNetworkCannotSteerATerminal) {
  TftpTransfer transfer = begin(1000);
  feed(transfer, readRequest("f"));
  feed(transfer, bytesOf("\0\5\0\x01\x1B[2J\xFF"s + std::string(240, 'x')));
  EXPECT_EQ(trace_.text().find('\x1B'), std::string::npos);
}

TEST_F(TftpTransferTest, WhatIsNoAcknowledgementSendsNothing) {
  TftpTransfer transfer = begin(1000);
  feed(transfer, readRequest("f"));
  takeSent();
  for (const Bytes& datagram : {bytesOf("\0\4\0"s), bytesOf("\0\4\0\1!"s), Bytes{}, Bytes{0},
                                readRequest("f"), dataBlock(content_, 1)}) {
    feed(transfer, datagram);
    EXPECT_TRUE(takeSent().empty());
  }
  EXPECT_THAT(trace_.text(), testing::EndsWith("bad ack\n"));
}

TEST_F(TftpTransferTest, ARequestFromPortZeroIsNeverAnswered) {
  TftpTransfer transfer = begin(1000);
  feed(transfer, readRequest("f"), 0);
  silence(transfer, 5);
  EXPECT_EQ(transfer.state(), State::kTimedOut);
  EXPECT_TRUE(takeSent().empty());
}

TEST_F(TftpTransferTest, WhatCannotBeSentIsTracedAndSentAgainAfterASecond) {
  TftpTransfer transfer = begin(1000);
  transferNetwork_->failing = "sendTo";
  feed(transfer, readRequest("f"));
  EXPECT_THAT(trace_.text(), testing::EndsWith("sendto failed\n"));
  transferNetwork_->failing.clear();
  transfer.silence();
  EXPECT_EQ(sentOne(), block(1));
}

TEST_F(TftpTransferTest, WhatIsSentInPartIsTraced) {
  TftpTransfer transfer = begin(1000);
  transferNetwork_->mostSent = 100;
  feed(transfer, readRequest("f"));
  EXPECT_THAT(trace_.text(), testing::EndsWith("sendto failed\n"));
}

TEST_F(TftpTransferTest, NoMoreThanEightPortsAreTried) {
  transferNetwork_->failing = "bind";
  TftpTransfer transfer = begin(1000);
  EXPECT_THROW(feed(transfer, readRequest("f")), SocketExc);
  EXPECT_EQ(std::count(transferNetwork_->calls.begin(), transferNetwork_->calls.end(), "open"), 8);
}

TEST_F(TftpTransferTest, OurBlockIsTracedWithAllItsBits) {
  TftpTransfer transfer = begin(65'537 * 512 + 1);
  feed(transfer, readRequest("f"));
  for (std::uint32_t number = 1; number <= 65'536; ++number) {
    feed(transfer, acknowledgement(static_cast<std::uint16_t>(number)));
  }
  trace_.clear();
  feed(transfer, acknowledgement(7));
  EXPECT_EQ(trace_.text(), "recv ack:7, our:10001\nbad ack\n");
}

TEST_F(TftpTransferTest, ASocketThatCannotBeHadEndsTheService) {
  transferNetwork_->failing = "open";
  TftpTransfer first = begin(1000);
  EXPECT_THAT(raisedText<SocketExc>([&] { feed(first, readRequest("f")); }),
              StartsWith("failed to create TFTP socket"));
  transferNetwork_->failing = "bind";
  TftpTransfer second = begin(1000);
  EXPECT_THAT(raisedText<SocketExc>([&] { feed(second, readRequest("f")); }),
              StartsWith("bind failed"));
}

TEST_F(TftpTransferTest, APortThatIsTakenIsReplacedByAnother) {
  services_.nextPort = [this] {
    if (++random_ == 0x1236) transferNetwork_->failing.clear();
    return ports_.next();
  };
  transferNetwork_->failing = "bind";
  TftpTransfer transfer = begin(1000);
  feed(transfer, readRequest("f"));
  EXPECT_EQ(sentOne(), block(1));
}

TEST_F(TftpTransferTest, TheFileNameIsToldAfterTheAnswerIsOut) {
  std::string told;
  services_.requested = [&](std::string_view name) {
    told = std::string(name) + ", sent " + std::to_string(transferNetwork_->sent.size());
  };
  TftpTransfer transfer = begin(1000);
  feed(transfer, readRequest("pxelinux.cfg/01-00-0c-29-aa-bb-cc"));
  EXPECT_EQ(told, "pxelinux.cfg/01-00-0c-29-aa-bb-cc, sent 1");
}

class ServeImageTest : public TftpTransferTest {
 protected:
  ServeImageTest() {
    listeningNetwork_->clock = transferNetwork_->clock = &clock_;
    services_.clock = &clock_;
  }

  bool serve() {
    return serveImage(listening_, {content_.data(), content_.size()}, kClientAddress, services_);
  }

  FakeClock clock_;
};

TEST_F(ServeImageTest, SendsTheImageAndEndsWithoutTheLastAcknowledgement) {
  content_ = imageOf(1000);
  listeningNetwork_->deliver(readRequest("f"), kClientPort);
  transferNetwork_->deliver(acknowledgement(1), kClientPort);
  EXPECT_TRUE(serve());
  EXPECT_EQ(transferNetwork_->sent.size(), 2u);
  EXPECT_THAT(trace_.text(), StartsWith("ENTERING TFTP LOOP\n"));
  EXPECT_THAT(trace_.text(), testing::EndsWith("FILE SENT\n"));
}

TEST_F(ServeImageTest, TwentySecondsWithoutARequestEndIt) {
  const Micros before = clock_.now();
  EXPECT_FALSE(serve());
  EXPECT_EQ(clock_.now() - before, 20 * kSecond);
}

TEST_F(ServeImageTest, FiveSecondsOfSilenceWithinTheImageEndIt) {
  content_ = imageOf(1000);
  listeningNetwork_->deliver(readRequest("f"), kClientPort);
  const Micros before = clock_.now();
  EXPECT_FALSE(serve());
  EXPECT_EQ(clock_.now() - before, 5 * kSecond);
  EXPECT_EQ(transferNetwork_->sent.size(), 5u);
}

// 256 bytes of a datagram are looked at.
TEST_F(ServeImageTest, AnOptionThatEndsWithThoseBytesCounts) {
  content_ = imageOf(10);
  const std::size_t name = 256 - 2 - 1 - 6 - 6;  // opcode, zero, "octet", "tsize"
  listeningNetwork_->deliver(readRequest(std::string(name, 'n'),
                                         "tsize\0"s
                                         "0\0"s),
                             kClientPort);
  transferNetwork_->deliver(acknowledgement(0), kClientPort);
  EXPECT_TRUE(serve());
  EXPECT_EQ(takeSent().at(0).bytes, bytesOf("\0\6tsize\0"s
                                            "10\0"s));
}

TEST_F(ServeImageTest, AnOptionBehindThoseBytesDoesNot) {
  content_ = imageOf(10);
  listeningNetwork_->deliver(Bytes(2000, 0xFF), kClientPort);
  const std::size_t name = 256 - 2 - 1 - 6;
  listeningNetwork_->deliver(readRequest(std::string(name, 'n'),
                                         "tsize\0"s
                                         "0\0"s),
                             kClientPort);
  EXPECT_TRUE(serve());
  EXPECT_EQ(sentOne(), block(1));
}

// As a report that an earlier datagram met a closed port.
TEST_F(ServeImageTest, WhatIsNoDatagramIsNoSignOfLife) {
  content_ = imageOf(1000);
  listeningNetwork_->deliver(readRequest("f"), kClientPort);
  for (int i = 0; i < 3; ++i) transferNetwork_->toReceive.push_back({});
  const Micros before = clock_.now();
  EXPECT_FALSE(serve());
  EXPECT_EQ(clock_.now() - before, 5 * kSecond);
  EXPECT_EQ(trace_.text().find("bad ack"), std::string::npos);
}

TEST_F(ServeImageTest, ASupersededWaitEndsAlsoWhileOtherDatagramsCome) {
  services_.superseded = [] { return true; };
  for (int i = 0; i < 100; ++i) listeningNetwork_->deliver(Bytes{0}, kClientPort);
  EXPECT_FALSE(serve());
  EXPECT_EQ(listeningNetwork_->toReceive.size(), 99u);
}

// Each look for other requests takes time, in which more of these datagrams come.
TEST_F(ServeImageTest, OtherDatagramsDoNotMakeItLookForOtherRequestsMoreOften) {
  content_ = imageOf(10);
  int looks = 0;
  services_.superseded = [&] { return ++looks < 0; };
  for (int i = 0; i < 100; ++i) listeningNetwork_->deliver(Bytes{0}, kClientPort);
  listeningNetwork_->deliver(readRequest("f"), kClientPort);
  EXPECT_TRUE(serve());
  EXPECT_LE(looks, 1);
}

TEST_F(ServeImageTest, ARequestThatHasComeIsServedRatherThanSuperseded) {
  content_ = imageOf(10);
  services_.superseded = [] { return true; };
  listeningNetwork_->deliver(readRequest("f"), kClientPort);
  EXPECT_TRUE(serve());
}

TEST_F(ServeImageTest, LookingForOtherRequestsDoesNotStretchTheWait) {
  services_.superseded = [this] {
    clock_.advance(15 * kMillisecond);
    return false;
  };
  const Micros before = clock_.now();
  EXPECT_FALSE(serve());
  EXPECT_LT(clock_.now() - before, 20 * kSecond + 400 * kMillisecond);
}

TEST_F(ServeImageTest, FailuresOfTheSocketHaveTheirTexts) {
  listeningNetwork_->failing = "waitReadable";
  EXPECT_THAT(raisedText<SocketExc>([&] { serve(); }), StartsWith("select failed"));
  listeningNetwork_->failing = "receiveFrom";
  listeningNetwork_->deliver({}, kClientPort);
  EXPECT_THAT(raisedText<SocketExc>([&] { serve(); }), StartsWith("recvfrom failed"));
}

TEST_F(ServeImageTest, ASupersededWaitEndsSoon) {
  services_.superseded = [] { return true; };
  const Micros before = clock_.now();
  EXPECT_FALSE(serve());
  EXPECT_LE(clock_.now() - before, 100 * kMillisecond);
  EXPECT_EQ(trace_.text(), "ENTERING TFTP LOOP\n");
}

TEST_F(ServeImageTest, ATransferThatHasBegunIsNotSuperseded) {
  content_ = imageOf(1000);
  listeningNetwork_->deliver(readRequest("f"), kClientPort);
  services_.superseded = [] { return true; };
  const Micros before = clock_.now();
  EXPECT_FALSE(serve());
  EXPECT_EQ(clock_.now() - before, 5 * kSecond);
}

TEST_F(ServeImageTest, GlancingForOtherRequestsStillEndsAfterTwentySeconds) {
  services_.superseded = [] { return false; };
  const Micros before = clock_.now();
  EXPECT_FALSE(serve());
  EXPECT_EQ(clock_.now() - before, 20 * kSecond);
}

}  // namespace
}  // namespace omniset::test
