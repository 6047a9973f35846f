// TFTP datagrams (RFC 1350), with the option acknowledgement of RFC 2347 and the option "tsize" of
// RFC 2349.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace omniset {

constexpr std::uint16_t kTftpPort = 69;
constexpr std::size_t kTftpBlockLength = 512;

enum class TftpOpcode : std::uint16_t {
  kReadRequest = 1,
  kWriteRequest = 2,
  kData = 3,
  kAcknowledgement = 4,
  kError = 5,
  kOptionAcknowledgement = 6,
};

struct TftpReadRequest {
  std::string_view fileName;  // points into the datagram; whatever bytes the client sent
  bool sizeAsked = false;     // with the option "tsize"
};

// Nothing when the datagram is no read request. Any file name and any mode will do, even without
// the zero bytes that end them.
std::optional<TftpReadRequest> readTftpRequest(std::span<const std::uint8_t> datagram);

// The number of the acknowledged block; nothing when the datagram is no acknowledgement.
std::optional<std::uint16_t> readTftpAcknowledgement(std::span<const std::uint8_t> datagram);

struct TftpError {
  std::uint16_t code = 0;
  std::string_view message;  // points into the datagram; whatever bytes the client sent
};

std::optional<TftpError> readTftpError(std::span<const std::uint8_t> datagram);

// What a code of RFC 1350 or RFC 2347 stands for; empty for others.
std::string_view tftpErrorText(std::uint16_t code);

// A datagram that the server sends.
class TftpPacket {
 public:
  void makeData(std::uint16_t block, std::span<const std::uint8_t> data);
  // With the size of a file, unless that is 0.
  void makeOptionAcknowledgement(std::uint32_t fileSize);

  std::span<const std::uint8_t> datagram() const { return std::span(bytes_).first(length_); }

 private:
  std::array<std::uint8_t, 4 + kTftpBlockLength> bytes_{};
  std::size_t length_ = 0;
};

}  // namespace omniset
