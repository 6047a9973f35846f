// Feeds any datagram to the BOOTP responder and looks at every byte of what it answers.
// Input: flags (bit 0: a PXE client was there before), the datagram.
#include <algorithm>
#include <memory>

#include "boot/bootp_responder.h"
#include "core/ipv4_address.h"
#include "core/trace.h"
#include "fuzz/fuzz_input.h"
#include "tests/boot/boot_requests.h"
#include "tests/fakes/fake_local_addresses.h"
#include "tests/fakes/fake_udp_socket.h"

namespace {

using namespace omniset;
using fuzz::require;

constexpr std::uint32_t kClientAddress = ipv4(192, 168, 88, 20);

class Discard : public TraceSink {
 public:
  void write(std::string_view text) override { require(!text.empty()); }
};

void checkReply(const BootpPacket& request, std::span<const std::uint8_t> reply, bool pxe) {
  require(reply.size() == (pxe ? 245U : 241U));
  for (std::size_t at = 0; at < 240; ++at) {
    const bool changes = at == 0 || (at >= 16 && at < 24) || (pxe && at >= 108 && at < 236);
    require(changes || reply[at] == request.bytes[at]);
  }
  require(reply[0] == 2 && reply.back() == 255);
  require(reply[16] == 192 && reply[19] == 20 && reply[20] == 192 && reply[23] == 5);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Discard discard;
  setTraceSink(&discard);
  fuzz::FuzzInput input(data, size);
  const auto network = std::make_shared<test::FakeNetwork>();
  test::FakeLocalAddresses addresses = test::oneLocalAddress();
  BootpResponder responder("/image", std::make_unique<test::FakeUdpSocket>(network), addresses);
  if (input.u8() & 1) responder.isBootRequest(test::received(test::pxeRequest()));

  const bool pxeBefore = responder.pxeSeen();
  const BootpPacket request = test::received(input.bytes(input.left()));
  const bool isRequest = responder.isBootRequest(request);
  require(responder.pxeSeen() || !pxeBefore);
  require(isRequest || responder.pxeSeen() == pxeBefore);
  require(!isRequest || isAddressRequest(request));
  dump(request);
  require(replyLength(request) > 240 && replyLength(request) <= BootpPacket::kSize);

  BootpPacket packet = request;
  require(responder.reply(packet, kClientAddress));
  checkReply(request, network->sent.back().bytes, responder.pxeSeen());
  return 0;
}
