// Feeds any datagram of any length to a connection in any state. The trace is written and thrown
// away, because the dump of a refused frame is part of what is tested.
// Input: state (bit 0: bound), sequence, acknowledgement, received length, the buffer.
#include "core/trace.h"
#include "fuzz/fuzz_input.h"
#include "link/link_protocol.h"

namespace {

using namespace omniset;
using fuzz::require;

constexpr MacAddress kLocal{{0x02, 0, 0, 0, 0, 1}};
constexpr MacAddress kPeer{{0x02, 0, 0, 0, 0, 2}};
constexpr std::size_t kLongestDatagram = 4096;

class Discard : public TraceSink {
 public:
  void write(std::string_view text) override { require(!text.empty()); }
};

void checkAccepted(const LinkConnection& before, const LinkConnection& after,
                   const LinkFrame& frame, std::size_t received) {
  const FrameHeader header = frame.header();
  require(received == kFrameHeaderLength + header.payloadLength);
  require(frame.payload().size() == header.payloadLength);
  require(header.source != before.local);
  require(!before.isBound() || header.source == before.peer);
  require(!header.isAck || header.acknowledgement <= before.sequence);
  if (header.payloadLength == 0) {
    require(after.acknowledgement == before.acknowledgement);
  } else {
    require(after.acknowledgement == before.acknowledgement + 1);
    require(after.acknowledgement == header.sequence);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Discard discard;
  setTraceSink(&discard);
  fuzz::FuzzInput input(data, size);
  LinkConnection connection;
  connection.local = kLocal;
  if (input.u8() & 1) connection.peer = kPeer;
  connection.sequence = input.u16();
  connection.acknowledgement = input.u16();
  const std::size_t received = input.u16() % (kLongestDatagram + 1);
  LinkFrame frame;
  const auto bytes = input.bytes(frame.bytes.size());
  std::copy(bytes.begin(), bytes.end(), frame.bytes.begin());

  const LinkConnection before = connection;
  LinkFrame filtered = frame;
  const bool forUs = isFrameForUs(connection, filtered, received);
  const bool repetition = isRepetition(connection, frame, received);
  const bool accepted = acceptFrame(connection, frame, received);
  require(forUs || !accepted);
  require(!(repetition && accepted));
  require(connection.sequence == before.sequence && connection.peer == before.peer);
  if (accepted) {
    checkAccepted(before, connection, frame, received);
  } else {
    require(connection.acknowledgement == before.acknowledgement);
  }
  return 0;
}
