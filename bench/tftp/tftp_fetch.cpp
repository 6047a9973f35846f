#include "bench/tftp/tftp_fetch.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <span>
#include <string_view>

#include "bench/tftp/datagram_socket.h"
#include "boot/tftp_packet.h"
#include "core/byte_cursor.h"
#include "core/error.h"

namespace omniset::bench {

namespace {

constexpr std::size_t kHeaderLength = 4;
using Block = std::array<std::uint8_t, kHeaderLength + kTftpBlockLength>;

std::vector<std::uint8_t> readRequest(const std::string& name) {
  std::vector<std::uint8_t> datagram{0, static_cast<std::uint8_t>(TftpOpcode::kReadRequest)};
  for (const std::string_view text : {std::string_view(name), std::string_view("octet")}) {
    datagram.insert(datagram.end(), text.begin(), text.end());
    datagram.push_back(0);
  }
  return datagram;
}

std::array<std::uint8_t, kHeaderLength> acknowledgement(std::uint16_t block) {
  return {0, static_cast<std::uint8_t>(TftpOpcode::kAcknowledgement),
          static_cast<std::uint8_t>(block >> 8), static_cast<std::uint8_t>(block)};
}

// The data of the block that is awaited; raises Failure for any other datagram.
std::span<const std::uint8_t> dataOf(std::span<const std::uint8_t> datagram, std::uint16_t wanted) {
  ByteReader reader(datagram);
  const auto opcode = static_cast<TftpOpcode>(reader.u16be());
  const std::uint16_t number = reader.u16be();
  if (!reader.ok() || opcode != TftpOpcode::kData || number != wanted) {
    throw Failure("The server sent something else than the next block.");
  }
  return reader.take(reader.left());
}

}  // namespace

FetchedFile fetchFile(std::uint16_t port, const std::string& name, std::size_t mostBytes) {
  DatagramSocket socket;
  Block block;
  FetchedFile file;
  // All its memory is there before the time counts.
  file.content.resize(mostBytes + kTftpBlockLength);
  std::size_t length = 0;
  std::uint16_t number = 0;
  std::uint16_t peer = port;
  const auto started = std::chrono::steady_clock::now();
  socket.send(readRequest(name), port);
  for (bool more = true; more;) {
    const auto received = socket.receive(block, peer);
    if (!received) throw Failure("The server fell silent.");
    const auto data = dataOf(std::span(block).first(*received), ++number);
    if (length + data.size() > mostBytes) throw Failure("The file is too long.");
    std::copy(data.begin(), data.end(), file.content.begin() + static_cast<std::ptrdiff_t>(length));
    length += data.size();
    more = data.size() == kTftpBlockLength;
    socket.send(acknowledgement(number), peer);
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - started;
  file.seconds = taken.count();
  file.content.resize(length);
  return file;
}

}  // namespace omniset::bench
