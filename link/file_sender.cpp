#include "link/file_sender.h"

#include <algorithm>
#include <limits>

#include "core/byte_cursor.h"
#include "core/error.h"
#include "core/trace.h"
#include "link/link_protocol.h"

namespace omniset {

std::string fileNameOf(const std::string& path) {
  const std::size_t separator = path.find_last_of("\\/");
  return separator == std::string::npos ? path : path.substr(separator + 1);
}

FileSender::FileSender(const std::string& path, BroadcastEndpoint& endpoint,
                       const LinkConnection& connection, const std::string& announcedName)
    : file_(openFile(path, "rb")),
      name_(announcedName.empty() ? fileNameOf(path) : announcedName),
      endpoint_(endpoint),
      connection_(connection) {
  if (!file_) throw Error("_open() package failed");
  measure();
  buildHeader();
  tracef("sending %s, size: %d\n", name_.c_str(), fileSize_);
}

void FileSender::measure() {
  if (std::fseek(file_.get(), 0, SEEK_END) != 0) throw Error("_open() package failed");
  const long length = std::ftell(file_.get());
  if (length < 0) throw Error("_open() package failed");
  if (length > std::numeric_limits<std::int32_t>::max()) {
    throw Failure("File is too large to send: " + name_);
  }
  fileSize_ = static_cast<std::int32_t>(length);
  std::rewind(file_.get());
}

void FileSender::buildHeader() {
  ByteWriter payload(frame_.payloadRoom().first(kChunkLength));
  payload.put(formatText("FILE\n%s\n%d\n", name_.c_str(), fileSize_));
  if (!payload.ok() || name_.find('\n') != std::string::npos) {
    throw Failure("File cannot be sent under its name: " + name_);
  }
  makeHeader(connection_, frame_, static_cast<std::uint16_t>(payload.written()), false,
             kControlChannel);
}

// A file that became shorter must not count as sent whole, and one that grew is sent as announced.
void FileSender::buildChunk() {
  const auto want = std::min<std::size_t>(kChunkLength, fileSize_ - bytesSent_);
  if (std::fread(frame_.payloadRoom().data(), 1, want, file_.get()) != want) {
    throw Error("_read() package failed");
  }
  chunkLength_ = static_cast<int>(want);
  bytesSent_ += chunkLength_;
  makeHeader(connection_, frame_, static_cast<std::uint16_t>(want), false, kDataChannel);
}

int FileSender::next(bool advance) {
  if (advance) {
    if (bytesSent_ == fileSize_) return 0;
    buildChunk();
  }
  endpoint_.sendDatagram(frame_.datagram());
  return chunkLength_;
}

}  // namespace omniset
