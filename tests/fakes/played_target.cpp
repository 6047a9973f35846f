#include "tests/fakes/played_target.h"

#include <algorithm>

#include "core/byte_cursor.h"
#include "link/link_protocol.h"

namespace omniset::test {

namespace {
// The installer counts the announcement as the target's first frame.
constexpr std::uint16_t kFirstAnswer = 2;
}  // namespace

PlayedTarget::PlayedTarget(FakeNetwork& network, const MacAddress& mac, std::string label)
    : network_(network), label_(std::move(label)) {
  connection_.local = mac;
}

void PlayedTarget::announce() {
  const MacAddress self = connection_.local;
  connection_.reset();
  connection_.local = self;
  send("DSCV\n\n\n" + label_ + "\n", false, {});
}

void PlayedTarget::send(std::string_view payload, bool isAck, const MacAddress& to) {
  LinkFrame frame;
  makeHeader(connection_, frame, static_cast<std::uint16_t>(payload.size()), isAck,
             kControlChannel);
  FrameHeader header = frame.header();
  header.destination = to;
  frame.setHeader(header);
  ByteWriter(frame.payloadRoom()).put(payload);
  network_.deliver(frame.datagram());
}

void PlayedTarget::answer(std::string_view text) {
  send(text, true, connection_.peer);
}

void PlayedTarget::pressKey() {
  ++connection_.sequence;
  answer("TERM\n");
}

void PlayedTarget::take(const FakeNetwork::Datagram& datagram) {
  LinkFrame frame;
  std::copy(datagram.bytes.begin(), datagram.bytes.end(), frame.bytes.begin());
  if (frame.header().destination != connection_.local || obeys == Obeys::kNothing) return;
  if (!acceptFrame(connection_, frame, datagram.bytes.size())) return;
  const std::string_view text = frame.payloadText();
  if (text.starts_with("OFFR")) {
    ++offersTaken;
    connection_.peer = frame.header().source;
    connection_.sequence = kFirstAnswer;
    answer("YACK\n");
  } else if (text.empty()) {
    if (obeys < Obeys::kFiles || connection_.sequence != kFirstAnswer) return;
    ++connection_.sequence;
    answer("STRT\n");
  } else if (!text.starts_with("TERM") || obeys == Obeys::kReboot) {
    if (text.starts_with("FILE\n") && frame.header().channel == kControlChannel) ++filesTaken;
    answer("");
  }
}

}  // namespace omniset::test
