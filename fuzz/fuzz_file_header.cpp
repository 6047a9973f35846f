// Feeds sequences of frames to a file receiver, as a target is fed by its event loop.
// Input: records of a kind, a length and bytes. Kind 0: the bytes are a datagram as it is; other
// kinds: the bytes are the payload of the installer's next frame (bit 1: on the data channel; bit
// 2: with the number of the last one).
#include "core/error.h"
#include "core/trace.h"
#include "fuzz/fuzz_input.h"
#include "link/file_receiver.h"
#include "tests/link/link_fixture.h"

namespace {

using namespace omniset;
using fuzz::require;

constexpr std::uint8_t kDataBit = 2;
constexpr std::uint8_t kRepeatBit = 4;

LinkConnection targetConnection() {
  LinkConnection connection;
  connection.local = test::kTargetMac;
  connection.peer = test::kInstallerMac;
  return connection;
}

class Target {
 public:
  void take(LinkFrame frame, std::size_t received) {
    try {
      inFile_ ? takeData(frame, received) : takeHeader(frame, received);
    } catch (const Error&) {
      inFile_ = false;  // the sender's fault: an honest target starts over
    }
    require(receiver_.bytesReceived() >= 0 && receiver_.bytesReceived() <= receiver_.size());
    require(receiver_.name().find('\n') == std::string::npos);
    link_.network->sent.clear();
  }

  int nextNumber() const { return connection_.acknowledgement + 1; }

 private:
  void takeHeader(LinkFrame& frame, std::size_t received) {
    inFile_ = receiver_.takeHeader(frame, received) == FileReceiver::Header::kFile;
    require(!inFile_ || !receiver_.name().empty());
  }
  void takeData(LinkFrame& frame, std::size_t received) {
    const std::int32_t before = receiver_.bytesReceived();
    const auto data = receiver_.takeData(frame, received);
    require(receiver_.bytesReceived() - before == static_cast<std::int32_t>(data.size()));
    if (!data.empty()) receiver_.acknowledge();
    if (receiver_.isComplete()) inFile_ = false;
  }

  test::LinkFixture link_;
  LinkConnection connection_ = targetConnection();
  FileReceiver receiver_{link_.endpoint, connection_};
  bool inFile_ = false;
};

void feed(Target& target, std::uint8_t kind, std::span<const std::uint8_t> bytes) {
  if (kind == 0) {
    LinkFrame frame;
    std::copy(bytes.begin(), bytes.end(), frame.bytes.begin());
    target.take(frame, bytes.size());
    return;
  }
  const int number = target.nextNumber() - (kind & kRepeatBit ? 1 : 0);
  const LinkFrame frame =
      test::makeFrame(test::kInstallerMac, test::kTargetMac, number, test::kNoAck, asText(bytes),
                      kind & kDataBit ? kDataChannel : kControlChannel);
  target.take(frame, frame.datagram().size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  setTraceSink(nullptr);
  fuzz::FuzzInput input(data, size);
  Target target;
  while (input.left() > 0) {
    const std::uint8_t kind = input.u8();
    const std::size_t length = input.u16() % (kPayloadRoom + 1);
    feed(target, kind, input.bytes(length));
  }
  return 0;
}
