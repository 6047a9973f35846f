// The frame of the install link: a 20-byte header and a payload, one frame per UDP datagram.
// docs/link-protocol.md describes the layout. All multi-byte fields are little-endian.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "core/mac_address.h"

namespace omniset {

constexpr std::size_t kFrameHeaderLength = 20;
// With the header the largest UDP payload of an unfragmented 1500-byte Ethernet frame.
constexpr std::size_t kChunkLength = 1452;
constexpr std::size_t kPayloadRoom = 4096;

constexpr std::uint8_t kControlChannel = 0;
constexpr std::uint8_t kDataChannel = 1;

// Control words: the first line of a text payload.
namespace word {
constexpr std::string_view kDiscover = "DSCV";   // target: looks for an installer
constexpr std::string_view kOffer = "OFFR";      // installer: offers to install the target
constexpr std::string_view kAccept = "YACK";     // target: accepts the offer
constexpr std::string_view kStart = "STRT";      // target: the disk is prepared
constexpr std::string_view kTerminate = "TERM";  // installer: reboot; target: a key was pressed
constexpr std::string_view kFile = "FILE";       // installer: file header
constexpr std::string_view kKeep = "keep";       // second line of an offer: keep the configuration
}  // namespace word

// The configuration script, which the router runs once when it starts: the last file of an
// installation.
constexpr const char* kScriptName = "autorun.scr";

struct FrameHeader {
  MacAddress source;
  MacAddress destination;  // the wildcard in announcements
  bool isAck = false;      // the acknowledgement field is valid
  std::uint8_t channel = kControlChannel;
  std::uint16_t payloadLength = 0;
  std::uint16_t sequence = 0;
  std::uint16_t acknowledgement = 0;
};

// A frame in a buffer with room for the longest datagram that is received.
struct LinkFrame {
  std::array<std::uint8_t, kFrameHeaderLength + kPayloadRoom> bytes{};

  FrameHeader header() const;
  void setHeader(const FrameHeader& header);

  // The payload that the header announces, within the buffer.
  std::span<const std::uint8_t> payload() const;
  std::string_view payloadText() const;
  std::span<std::uint8_t> payloadRoom() { return std::span(bytes).subspan(kFrameHeaderLength); }

  // Header and payload.
  std::span<const std::uint8_t> datagram() const;
};

// Writes the frame's header to the trace.
void dumpFrame(const LinkFrame& frame);

}  // namespace omniset
