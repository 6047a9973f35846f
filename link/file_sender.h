// Sends one file over the install link, a header frame and then the data in chunks, one frame
// outstanding at a time. The owner drives it from its event loop and raises the connection's
// sequence number on each acknowledgement.
#pragma once

#include <cstdint>
#include <string>

#include "core/file.h"
#include "link/broadcast_endpoint.h"
#include "link/link_connection.h"
#include "link/link_frame.h"

namespace omniset {

// What follows the last backslash or slash.
std::string fileNameOf(const std::string& path);

class FileSender {
 public:
  // Opens the file, takes its length and builds, but does not send, the header frame, under the
  // path's last component or the name given. The endpoint and the connection are the owner's and
  // outlive this object. Raises Error "_open() package failed", and Failure for a file whose name
  // or length the header cannot carry.
  FileSender(const std::string& path, BroadcastEndpoint& endpoint, const LinkConnection& connection,
             const std::string& announcedName = {});

  // With `advance`, builds and sends the next chunk and returns its file bytes; returns 0 and sends
  // nothing when the whole file has been sent. Without it, sends the current frame once more and
  // returns its file bytes, 0 for the header.
  // Raises Error "_read() package failed", also for a file that became shorter; SocketExc.
  int next(bool advance);

  void close() { file_.reset(); }

  std::int32_t fileSize() const { return fileSize_; }
  std::int32_t bytesSent() const { return bytesSent_; }
  const std::string& name() const { return name_; }

 private:
  void measure();
  void buildHeader();
  void buildChunk();

  FilePtr file_;
  std::int32_t fileSize_ = 0;
  std::int32_t bytesSent_ = 0;
  std::string name_;
  BroadcastEndpoint& endpoint_;
  const LinkConnection& connection_;
  int chunkLength_ = 0;  // file bytes in the frame
  LinkFrame frame_;      // the last frame built
};

}  // namespace omniset
