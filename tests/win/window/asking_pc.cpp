#include "tests/win/window/asking_pc.h"

#include <algorithm>
#include <string_view>

#include "tests/boot/boot_requests.h"

namespace omniset::test {

namespace {

constexpr std::uint16_t kServerPort = 67;
constexpr std::uint16_t kImagePort = 69;
constexpr std::size_t kNumber = 4;  // four bytes
// The service looks for new settings about once a second.
constexpr Milliseconds kReplyLimit{1'500};
constexpr Milliseconds kImageLimit{500};

std::vector<std::uint8_t> requestOf(std::uint8_t number) {
  std::vector<std::uint8_t> packet = pxeRequest();
  packet[kNumber + 3] = number;
  return packet;
}

// By their numbers: an earlier request may have been answered late.
bool isReplyTo(const std::vector<std::uint8_t>& request, const std::vector<std::uint8_t>& packet) {
  return packet.size() > BootpPacket::kOptions && packet[0] == 2 &&
         std::equal(&request[kNumber], &request[kNumber + 4], &packet[kNumber]);
}

}  // namespace

std::optional<std::vector<std::uint8_t>> AskingPc::ask(Milliseconds limit) {
  request_ = requestOf(++number_);
  port_.broadcast(request_, kServerPort);
  for (;;) {
    const std::vector<std::uint8_t> packet = port_.receive(limit);
    if (packet.empty()) return std::nullopt;
    if (isReplyTo(request_, packet)) return packet;
  }
}

std::vector<std::uint8_t> AskingPc::askUntilAnswered() {
  std::optional<std::vector<std::uint8_t>> reply;
  waitUntil("a boot request is answered", [&] {
    reply = ask(kReplyLimit);
    return reply.has_value();
  });
  return *reply;
}

void AskingPc::askUntilUnanswered() {
  waitUntil("a boot request is not answered", [&] { return !ask(kReplyLimit); });
}

std::vector<std::uint8_t> AskingPc::askForImage() {
  constexpr std::string_view kReadRequest("\0\1/image\0octet", 14);
  std::vector<std::uint8_t> request(kReadRequest.begin(), kReadRequest.end());
  request.push_back(0);
  std::vector<std::uint8_t> datagram;
  waitUntil("an image is sent", [&] {
    port_.broadcast(request, kImagePort);
    datagram = port_.receive(kImageLimit);
    return !datagram.empty();
  });
  return datagram;
}

std::string addressAt(const std::vector<std::uint8_t>& packet, std::size_t offset) {
  std::string text;
  for (std::size_t i = offset; i < offset + 4; ++i) {
    text += (i == offset ? "" : ".") + std::to_string(packet.at(i));
  }
  return text;
}

}  // namespace omniset::test
