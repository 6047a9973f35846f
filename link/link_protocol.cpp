#include "link/link_protocol.h"

#include <algorithm>

#include "core/byte_cursor.h"
#include "core/trace.h"

namespace omniset {

void makeHeader(const LinkConnection& connection, LinkFrame& frame, std::uint16_t payloadLength,
                bool isAck, std::uint8_t channel) {
  FrameHeader header;
  header.source = connection.local;
  header.destination = connection.peer;
  header.isAck = isAck;
  header.channel = channel;
  header.payloadLength = payloadLength;
  header.sequence = connection.sequence;
  header.acknowledgement = isAck ? connection.acknowledgement : std::uint16_t{0};
  frame.setHeader(header);
}

void sendAcknowledgement(BroadcastEndpoint& endpoint, const LinkConnection& connection,
                         LinkFrame& frame) {
  makeHeader(connection, frame, 0, true, kControlChannel);
  endpoint.sendDatagram(frame.datagram());
}

void sendControl(BroadcastEndpoint& endpoint, const LinkConnection& connection, LinkFrame& frame,
                 std::string_view text, bool isAck) {
  ByteWriter writer(frame.payloadRoom().first(kChunkLength));
  writer.put(text);
  makeHeader(connection, frame, static_cast<std::uint16_t>(writer.written()), isAck,
             kControlChannel);
  endpoint.sendDatagram(frame.datagram());
}

bool isFrameForUs(const LinkConnection& connection, LinkFrame& frame, std::size_t received) {
  if (received < kFrameHeaderLength) {
    std::fill_n(frame.bytes.begin(), 4, std::uint8_t{0});
    return false;
  }
  const FrameHeader header = frame.header();
  if (received - kFrameHeaderLength != header.payloadLength) {
    tracef("* size mismatch: size: %d, payload: %d\n", static_cast<int>(received),
           header.payloadLength);
    return false;
  }
  if (header.source == connection.local) return false;
  if (header.destination == connection.wildcard) {
    if (connection.isBound()) return false;
  } else if (header.destination != connection.local) {
    return false;
  }
  if (!connection.isBound() || header.source == connection.peer) return true;
  traceLine("* invalid source");
  return false;
}

bool acceptFrame(LinkConnection& connection, LinkFrame& frame, std::size_t received) {
  if (!isFrameForUs(connection, frame, received)) return false;
  const FrameHeader header = frame.header();
  if (header.isAck && header.acknowledgement > connection.sequence) {
    traceLine("* recv ack bigger than sent seq");
  } else if (header.payloadLength == 0) {
    return true;
  } else if (header.sequence == int{connection.acknowledgement} + 1) {
    connection.acknowledgement = header.sequence;
    return true;
  } else {
    traceLine("* recv bad seq");
  }
  dumpFrame(frame);
  tracef("conn seqNum: %d, ackNum: %d\n", connection.sequence, connection.acknowledgement);
  return false;
}

bool isRepetition(const LinkConnection& connection, LinkFrame& frame, std::size_t received) {
  if (received <= kFrameHeaderLength) return false;
  const FrameHeader header = frame.header();
  return received - kFrameHeaderLength == header.payloadLength &&
         header.destination == connection.local && header.source == connection.peer &&
         header.sequence == connection.acknowledgement;
}

namespace {

// Waits until the deadline for the acknowledgement of the connection's sequence number.
int waitAck(BroadcastEndpoint& endpoint, const Clock& clock, LinkConnection& connection,
            LinkFrame& incoming, Micros deadline) {
  for (Micros left = deadline - clock.now(); left > 0; left = deadline - clock.now()) {
    const int received = endpoint.waitDatagram(incoming.bytes, left);
    if (received < 0) continue;
    if (!acceptFrame(connection, incoming, static_cast<std::size_t>(received))) continue;
    const FrameHeader header = incoming.header();
    if (header.acknowledgement == connection.sequence) return received;
    tracef("* recv old ack conn.seqNum: %d, hdr.ackNum: %d\n", connection.sequence,
           header.acknowledgement);
  }
  return -1;
}

}  // namespace

int sendAndWaitAck(BroadcastEndpoint& endpoint, const Clock& clock, LinkConnection& connection,
                   const LinkFrame& outgoing, LinkFrame& incoming, std::size_t outgoingLength,
                   Micros timeout, int tries) {
  for (; tries > 0; --tries) {
    endpoint.sendDatagram(std::span(outgoing.bytes).first(outgoingLength));
    const Micros deadline = clock.now() + timeout;
    const int received = waitAck(endpoint, clock, connection, incoming, deadline);
    if (received >= 0) return received;
  }
  return -1;
}

}  // namespace omniset
