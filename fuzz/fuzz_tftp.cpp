// Feeds any sequence of datagrams and silences to a TFTP transfer. Whatever comes, every block that
// it sends is the image's block of that number, and it ends only with the last one or by silence.
// Input: the image's length, then steps: 0 for a second of silence, another number for a datagram
// of so many bytes (255: the next two bytes tell how many), which follow.
#include <algorithm>
#include <memory>
#include <vector>

#include "boot/tftp_transfer.h"
#include "core/ipv4_address.h"
#include "core/trace.h"
#include "fuzz/fuzz_input.h"
#include "tests/fakes/fake_udp_socket.h"

namespace {

using namespace omniset;
using fuzz::require;
using State = TftpTransfer::State;

constexpr std::uint32_t kClientAddress = ipv4(192, 168, 88, 20);
constexpr std::size_t kReceiveLength = 256;

class Discard : public TraceSink {
 public:
  void write(std::string_view text) override { require(!text.empty()); }
};

std::vector<std::uint8_t> imageOf(std::size_t length) {
  std::vector<std::uint8_t> image(length);
  for (std::size_t i = 0; i < length; ++i) {
    image[i] = static_cast<std::uint8_t>(i * 7 + (i >> 9) * 13);
  }
  return image;
}

void checkBlock(std::span<const std::uint8_t> datagram, const std::vector<std::uint8_t>& image) {
  const std::size_t block = datagram[2] << 8 | datagram[3];
  const std::size_t offset = (block - 1) * 512;
  require(block > 0 && offset <= image.size());
  require(datagram.size() - 4 == std::min<std::size_t>(512, image.size() - offset));
  require(std::equal(datagram.begin() + 4, datagram.end(),
                     image.begin() + static_cast<std::ptrdiff_t>(offset)));
}

void checkSent(const test::FakeNetwork& network, const std::vector<std::uint8_t>& image) {
  for (const auto& sent : network.sent) {
    require(sent.peer.address == kClientAddress && sent.peer.port != 0);
    require(sent.bytes.size() >= 2 && sent.bytes[0] == 0);
    require(sent.bytes[1] == 3 || sent.bytes[1] == 6);
    if (sent.bytes[1] == 3) checkBlock(sent.bytes, image);
  }
}

std::span<const std::uint8_t> nextDatagram(fuzz::FuzzInput& input, std::size_t length) {
  // As much as the server looks at.
  return input.bytes(std::min(length == 255 ? input.u16() : length, kReceiveLength));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Discard discard;
  setTraceSink(&discard);
  fuzz::FuzzInput input(data, size);
  const auto image = imageOf(input.u16() % 5000);
  const auto network = std::make_shared<test::FakeNetwork>();
  test::FakeUdpSocket listening(network);
  bool requested = false;
  const TftpServices services{[&] { return std::make_unique<test::FakeUdpSocket>(network); },
                              [] { return std::uint16_t{40'000}; },
                              [&](std::string_view name) {
                                require(name.size() <= kReceiveLength);
                                requested = true;
                              },
                              {}};
  TftpTransfer transfer(listening, {image.data(), image.size()}, kClientAddress, services);
  while (input.left() > 0 && transfer.state() != State::kSent &&
         transfer.state() != State::kTimedOut) {
    const std::size_t step = input.u8();
    if (step == 0) {
      transfer.silence();
    } else {
      transfer.received(nextDatagram(input, step), {kClientAddress, 2070});
    }
    require(requested || network->sent.empty());
    require(requested || transfer.state() != State::kTransferring);
  }
  checkSent(*network, image);
  if (transfer.state() == State::kSent) {
    require(network->sent.back().bytes.size() < 4 + kTftpBlockLength);
  }
  return 0;
}
