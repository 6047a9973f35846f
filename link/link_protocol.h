// The rules of the install link: building frames, taking or refusing them, and the blocking
// exchange of one frame for its acknowledgement. Refused frames are traced, never thrown.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/clock.h"
#include "link/broadcast_endpoint.h"
#include "link/link_connection.h"
#include "link/link_frame.h"

namespace omniset {

// Fills the frame's header from the connection, which is left as it is.
void makeHeader(const LinkConnection& connection, LinkFrame& frame, std::uint16_t payloadLength,
                bool isAck, std::uint8_t channel);

// Sends a pure acknowledgement: is-ack, control channel, no payload. Uses `frame` as its buffer.
void sendAcknowledgement(BroadcastEndpoint& endpoint, const LinkConnection& connection,
                         LinkFrame& frame);

// Sends a text on the control channel, by default with the acknowledgement of the peer's last
// frame. Uses `frame` as its buffer. The text must fit a chunk.
void sendControl(BroadcastEndpoint& endpoint, const LinkConnection& connection, LinkFrame& frame,
                 std::string_view text, bool isAck = true);

// The acceptance filter on a datagram of `received` bytes. A datagram shorter than a header gets
// its first four bytes zeroed, so that no stale source address is taken for a sender later.
bool isFrameForUs(const LinkConnection& connection, LinkFrame& frame, std::size_t received);

// Filter and sequence rules: true if the frame is to be processed. A payload-bearing frame then
// has advanced the connection's acknowledgement number.
bool acceptFrame(LinkConnection& connection, LinkFrame& frame, std::size_t received);

// True if a frame that acceptFrame refused is our peer's repetition of the last frame taken: its
// acknowledgement was lost.
bool isRepetition(const LinkConnection& connection, LinkFrame& frame, std::size_t received);

// Sends the first `outgoingLength` bytes of `outgoing` and waits at most `timeout` for a frame that
// acknowledges the connection's sequence number, up to `tries` times. Returns the length of that
// frame, which is in `incoming`, or -1. The caller raises the sequence number. Raises SocketExc.
int sendAndWaitAck(BroadcastEndpoint& endpoint, const Clock& clock, LinkConnection& connection,
                   const LinkFrame& outgoing, LinkFrame& incoming, std::size_t outgoingLength,
                   Micros timeout, int tries);

}  // namespace omniset
