// Receives files over the install link: the target's half. The step operations take one frame each
// and are for an event loop; the blocking ones wait on the endpoint with the same rules.
// Faults of the sender raise Error with a text that begins "file open:" or "file read:".
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "core/clock.h"
#include "link/broadcast_endpoint.h"
#include "link/link_connection.h"
#include "link/link_frame.h"

namespace omniset {

class FileReceiver {
 public:
  enum class Header { kNone, kFile, kTerminated };
  using Sink = std::function<void(std::span<const std::uint8_t>)>;

  // Endpoint and connection are the owner's and outlive this object.
  FileReceiver(BroadcastEndpoint& endpoint, LinkConnection& connection);

  // Takes a frame while a header is awaited. After kFile, name() and size() tell the file; the
  // caller acknowledges when it is ready for the data. Repetitions are acknowledged again here.
  Header takeHeader(LinkFrame& frame, std::size_t received);

  // Takes a frame while data is awaited; returns the new bytes, in place, empty for a frame that
  // brings none. The caller stores them, then acknowledges.
  std::span<const std::uint8_t> takeData(LinkFrame& frame, std::size_t received);

  // Sends a pure acknowledgement of the last frame taken.
  void acknowledge();

  // Blocks until a file header came and acknowledges it; false when the sender has finished. Raises
  // Error "file open: no file" when none came within 1,000 seconds.
  bool receiveHeader(const Clock& clock);

  // Blocks until the announced size has been received, handing each chunk to `sink`.
  void receiveData(const Sink& sink);

  const std::string& name() const { return name_; }
  std::int32_t size() const { return size_; }
  std::int32_t bytesReceived() const { return bytesReceived_; }
  bool isComplete() const { return bytesReceived_ == size_; }

 private:
  bool accept(LinkFrame& frame, std::size_t received);
  void parseHeader(const LinkFrame& frame);

  BroadcastEndpoint& endpoint_;
  LinkConnection& connection_;
  LinkFrame frame_;
  std::int32_t size_ = 0;
  std::int32_t bytesReceived_ = 0;
  std::string name_;
};

}  // namespace omniset
