#include "link/file_receiver.h"

#include <charconv>
#include <string_view>

#include "core/error.h"
#include "core/os_error.h"
#include "core/trace.h"
#include "link/link_protocol.h"

namespace omniset {

namespace {

constexpr Micros kHeaderLimit = 1000 * kSecond;

// Cuts the first line off `text`; false when no line end is left.
bool takeLine(std::string_view& text, std::string_view& line) {
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos) return false;
  line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return true;
}

// These faults are the sender's, not a system call's: the code that follows the text is 0.
[[noreturn]] void refuse(const char* text) {
  setLastOsError(0);
  throw Error(text);
}

std::int32_t parseSize(std::string_view line) {
  std::int64_t size = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), size);
  if (error == std::errc::invalid_argument || end != line.data() + line.size()) {
    refuse("file read: bad format, no size");
  }
  if (error != std::errc{} || size < 0 || size > INT32_MAX) refuse("file read: bad size");
  return static_cast<std::int32_t>(size);
}

}  // namespace

FileReceiver::FileReceiver(BroadcastEndpoint& endpoint, LinkConnection& connection)
    : endpoint_(endpoint), connection_(connection) {}

void FileReceiver::acknowledge() {
  LinkFrame acknowledgement;
  sendAcknowledgement(endpoint_, connection_, acknowledgement);
}

// The link's rules; a repetition is refused like any stale frame, but acknowledged once more.
bool FileReceiver::accept(LinkFrame& frame, std::size_t received) {
  const bool repeated = isRepetition(connection_, frame, received);
  if (acceptFrame(connection_, frame, received)) return true;
  if (repeated) {
    tracef("resend ack: %d\n", frame.header().sequence);
    acknowledge();
  }
  return false;
}

FileReceiver::Header FileReceiver::takeHeader(LinkFrame& frame, std::size_t received) {
  if (!accept(frame, received) || frame.payload().empty()) return Header::kNone;
  bytesReceived_ = 0;
  size_ = 0;
  name_.clear();
  if (frame.payloadText().starts_with(word::kTerminate)) {
    traceLine("terminate");
    return Header::kTerminated;
  }
  parseHeader(frame);
  return Header::kFile;
}

void FileReceiver::parseHeader(const LinkFrame& frame) {
  std::string_view text = frame.payloadText();
  if (!text.starts_with(word::kFile) || frame.header().channel != kControlChannel) {
    refuse("file open: bad channel");
  }
  std::string_view first;
  std::string_view name;
  std::string_view size;
  if (!takeLine(text, first) || !takeLine(text, name) || name.empty()) {
    refuse("file read: bad format, no name");
  }
  if (!takeLine(text, size)) refuse("file read: bad format, no size");
  size_ = parseSize(size);
  name_ = name;
}

std::span<const std::uint8_t> FileReceiver::takeData(LinkFrame& frame, std::size_t received) {
  if (!accept(frame, received)) return {};
  if (frame.header().channel != kDataChannel) refuse("file read: bad channel");
  const auto data = frame.payload();
  if (data.empty()) refuse("file read: no data");
  if (data.size() > static_cast<std::size_t>(size_ - bytesReceived_)) {
    refuse("file read: bad size");
  }
  bytesReceived_ += static_cast<std::int32_t>(data.size());
  return data;
}

bool FileReceiver::receiveHeader(const Clock& clock) {
  const Micros deadline = clock.now() + kHeaderLimit;
  for (;;) {
    const int received = endpoint_.waitDatagram(frame_.bytes, kHeaderLimit);
    const Header header =
        received < 0 ? Header::kNone : takeHeader(frame_, static_cast<std::size_t>(received));
    if (header != Header::kNone) {
      acknowledge();
      return header == Header::kFile;
    }
    if (clock.now() >= deadline) refuse("file open: no file");
  }
}

void FileReceiver::receiveData(const Sink& sink) {
  while (!isComplete()) {
    const int received = endpoint_.waitDatagram(frame_.bytes, 0);
    if (received < 0) continue;
    const auto data = takeData(frame_, static_cast<std::size_t>(received));
    if (data.empty()) continue;
    sink(data);
    acknowledge();
  }
}

}  // namespace omniset
