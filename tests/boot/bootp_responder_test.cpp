#include "boot/bootp_responder.h"

#include <gmock/gmock.h>

#include "core/error.h"
#include "core/ipv4_address.h"
#include "tests/boot/boot_requests.h"
#include "tests/contract/raised_text.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_local_addresses.h"
#include "tests/fakes/fake_udp_socket.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr std::uint32_t kClientAddress = ipv4(192, 168, 88, 20);

class BootpResponderTest : public testing::Test {
 protected:
  BootpResponder makeResponder() {
    return {"/image", std::make_unique<FakeUdpSocket>(network_), addresses_};
  }
  // What goes out in answer to the request; empty when nothing does.
  Bytes answerTo(BootpResponder& responder, const Bytes& request) {
    BootpPacket packet = received(request);
    network_->sent.clear();
    if (responder.isBootRequest(packet)) responder.reply(packet, kClientAddress);
    return network_->sent.empty() ? Bytes{} : network_->sent.back().bytes;
  }

  std::shared_ptr<FakeNetwork> network_ = std::make_shared<FakeNetwork>();
  FakeLocalAddresses addresses_ = oneLocalAddress();
  CapturedTrace trace_;
};

// A request as the reply to it, up to its end option.
Bytes replyTo(Bytes request, const std::string& fileName, const Bytes& options) {
  request[0] = 2;
  const Bytes addresses{192, 168, 88, 20, 192, 168, 88, 5};
  std::copy(addresses.begin(), addresses.end(), request.begin() + 16);
  if (!fileName.empty()) {
    std::fill_n(request.begin() + 108, 128, std::uint8_t{0});
    std::copy(fileName.begin(), fileName.end(), request.begin() + 108);
  }
  request.resize(240);
  request.insert(request.end(), options.begin(), options.end());
  return request;
}

TEST_F(BootpResponderTest, OpensASharedBroadcastSocketOnTheServerPort) {
  makeResponder();
  EXPECT_THAT(network_->calls,
              ElementsAre("open", "allowAddressReuse", "allowBroadcast", "bind 67"));
}

TEST_F(BootpResponderTest, EachFailureOfTheSocketHasItsText) {
  const std::pair<const char*, const char*> failures[] = {
      {"open", "failed to create bootp socket"},
      {"allowAddressReuse", "can't set SO_REUSEADDR"},
      {"allowBroadcast", "can't set SO_BROADCAST"},
      {"bind", "bind failed"}};
  for (const auto& [operation, text] : failures) {
    network_->failing = operation;
    EXPECT_THAT(raisedText<SocketExc>([&] { makeResponder(); }), StartsWith(text));
  }
}

TEST_F(BootpResponderTest, AnswersAPxeClientWithTheBootFile) {
  BootpResponder responder = makeResponder();
  const Bytes reply = answerTo(responder, pxeRequest());
  EXPECT_EQ(reply, replyTo(pxeRequest(), "/image", {13, 2, 0, 22, 255}));
  EXPECT_EQ(reply.size(), 245u);
  EXPECT_EQ(network_->sent.back().peer.address, kBroadcastAddress);
  EXPECT_EQ(network_->sent.back().peer.port, 68);
}

TEST_F(BootpResponderTest, AnswersAnEtherbootClientWithItsOwnFileName) {
  BootpResponder responder = makeResponder();
  const Bytes reply = answerTo(responder, etherbootRequest());
  EXPECT_EQ(reply, replyTo(etherbootRequest(), "", {255}));
  EXPECT_EQ(reply.size(), 241u);
}

TEST_F(BootpResponderTest, AfterAPxeClientEverybodyIsAnsweredAsOne) {
  BootpResponder responder = makeResponder();
  answerTo(responder, pxeRequest());
  EXPECT_EQ(answerTo(responder, etherbootRequest()),
            replyTo(etherbootRequest(), "/image", {13, 2, 0, 22, 255}));
  EXPECT_TRUE(responder.pxeSeen());
}

TEST_F(BootpResponderTest, ANewResponderHasSeenNobody) {
  BootpResponder first = makeResponder();
  answerTo(first, pxeRequest());
  BootpResponder second = makeResponder();
  EXPECT_FALSE(second.pxeSeen());
}

TEST_F(BootpResponderTest, APxeRequestThatIsNotAnsweredCountsAsSeenOnlyIfItsHeadIsRight) {
  BootpResponder responder = makeResponder();
  Bytes relayed = pxeRequest();
  relayed[3] = 1;
  EXPECT_EQ(answerTo(responder, relayed), Bytes{});
  EXPECT_FALSE(responder.pxeSeen());
}

TEST_F(BootpResponderTest, RelayedRequestsAndClientsWithAnAddressGetNoAnswer) {
  BootpResponder responder = makeResponder();
  Bytes relayed = pxeRequest();
  relayed[3] = 1;
  EXPECT_EQ(answerTo(responder, relayed), Bytes{});
  Bytes addressed = pxeRequest();
  addressed[12] = 192;
  EXPECT_EQ(answerTo(responder, addressed), Bytes{});
}

TEST_F(BootpResponderTest, RequestsWithoutAKnownVendorClassGetNoAnswer) {
  BootpResponder responder = makeResponder();
  EXPECT_EQ(answerTo(responder, requestWith({option(53, "\x01")})), Bytes{});
  EXPECT_EQ(answerTo(responder, requestWith({option(60, "MSFT 5.0")})), Bytes{});
  EXPECT_EQ(answerTo(responder, {}), Bytes{});
}

TEST_F(BootpResponderTest, EvenAfterAPxeClientARequestWithoutAClassGetsNoAnswer) {
  BootpResponder responder = makeResponder();
  answerTo(responder, pxeRequest());
  EXPECT_EQ(answerTo(responder, requestWith({option(53, "\x01")})), Bytes{});
}

TEST_F(BootpResponderTest, TellsTheTraceWhatWasAskedAndWhatIsAnswered) {
  BootpResponder responder = makeResponder();
  answerTo(responder, pxeRequest());
  const std::string text = trace_.text();
  EXPECT_THAT(text, StartsWith("got PXE reuqest!\nip count: 1\n"
                               "2: 192.168.88.5/255.255.255.0\n"
                               "my address: 192.168.88.5\nopcode: 2\n"));
  answerTo(responder, etherbootRequest());
  EXPECT_THAT(trace_.text(), testing::HasSubstr("got ETHERBOOT reuqest!\n"));
}

TEST_F(BootpResponderTest, AReplyThatCannotBeSentIsReportedAndTraced) {
  BootpResponder responder = makeResponder();
  BootpPacket packet = received(pxeRequest());
  ASSERT_TRUE(responder.isBootRequest(packet));
  network_->failing = "sendTo";
  EXPECT_FALSE(responder.reply(packet, kClientAddress));
  EXPECT_THAT(trace_.text(), testing::EndsWith("sendto failed\n"));
  network_->failing.clear();
  network_->mostSent = 244;
  EXPECT_FALSE(responder.reply(packet, kClientAddress));
  network_->mostSent = SIZE_MAX;
  packet = received(pxeRequest());
  EXPECT_TRUE(responder.reply(packet, kClientAddress));
}

}  // namespace
}  // namespace omniset::test
