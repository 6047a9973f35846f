#include "media/volume_files_posix.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sstream>

#include "media/child_process_posix.h"

namespace omniset {

namespace {

// The path of a file that is there: a pattern, in which no character may stand for others. One of a
// new file is taken as it is.
std::string presentPath(const std::string& name) {
  std::string path = "::";
  for (const char c : name) {
    if (std::strchr("*?[]\\", c) != nullptr) path += '\\';
    path += c;
  }
  return path;
}

// One stream of bytes to or from a program.
class StreamDevice : public Device {
 public:
  StreamDevice(FileDescriptor stream, std::unique_ptr<ChildProcess> process)
      : stream_(std::move(stream)), process_(std::move(process)) {}

  std::optional<std::size_t> read(std::span<std::uint8_t>) override { return std::nullopt; }
  std::optional<std::size_t> write(std::span<const std::uint8_t>) override { return std::nullopt; }
  bool seek(std::uint64_t) override { return false; }
  std::optional<std::size_t> control(std::uint32_t, std::span<const std::uint8_t>,
                                     std::span<std::uint8_t>) override {
    return std::nullopt;
  }
  std::optional<std::uint64_t> size() override { return std::nullopt; }

  bool close() override { return stream_.close() && succeeded(); }

 protected:
  int stream() const { return stream_.get(); }
  bool succeeded() { return process_->awaitExit() == 0; }

 private:
  FileDescriptor stream_;
  std::unique_ptr<ChildProcess> process_;
};

class WrittenFile : public StreamDevice {
 public:
  WrittenFile(FileDescriptor stream, FileDescriptor errors, std::unique_ptr<ChildProcess> process)
      : StreamDevice(std::move(stream), std::move(process)), errors_(std::move(errors)) {}

  std::optional<std::size_t> write(std::span<const std::uint8_t> from) override {
    std::size_t sent = 0;
    while (sent < from.size()) {
      const ssize_t count = send(stream(), from.data() + sent, from.size() - sent, MSG_NOSIGNAL);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return std::nullopt;
      sent += static_cast<std::size_t>(count);
    }
    return sent;
  }

  // mcopy complains of a full volume, and calls that a success.
  bool close() override {
    const bool isClosed = StreamDevice::close();
    char complaint = 0;
    return isClosed && recv(errors_.get(), &complaint, 1, MSG_DONTWAIT) <= 0;
  }

 private:
  FileDescriptor errors_;
};

class ReadFile : public StreamDevice {
 public:
  using StreamDevice::StreamDevice;

  std::optional<std::size_t> read(std::span<std::uint8_t> into) override {
    ssize_t count = 0;
    do {
      count = ::read(stream(), into.data(), into.size());
    } while (count < 0 && errno == EINTR);
    if (count < 0 || (count == 0 && !into.empty() && !succeeded())) return std::nullopt;
    return static_cast<std::size_t>(count);
  }
  // Whoever closes early needs no more of it.
  bool close() override {
    StreamDevice::close();
    return true;
  }
};

DevicePtr startReader(const std::vector<std::string>& line) {
  auto stream = makeStream();
  if (!stream) return nullptr;
  auto process = ChildProcess::start(line, {.output = stream->childs});
  if (!process) return nullptr;
  return std::make_unique<ReadFile>(std::move(stream->ours), std::move(process));
}

// Lines such as "::/linux"; nothing when there is no volume.
std::optional<std::string> listing(const std::string& device) {
  const DevicePtr output = startReader({findProgram("mdir"), "-b", "-a", "-i", device, "::"});
  if (!output) return std::nullopt;
  std::string text;
  std::uint8_t piece[4096];
  while (const auto count = output->read(piece)) {
    if (*count == 0) return text;
    text.append(piece, piece + *count);
  }
  return std::nullopt;
}

std::string folded(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return text;
}

bool lists(const std::string& listing, const std::string& name) {
  std::istringstream lines(listing);
  for (std::string line; std::getline(lines, line);) {
    if (folded(line) == folded("::/" + name)) return true;
  }
  return false;
}

bool mayBeNew(const std::string& device, const std::string& name) {
  const auto present = listing(device);
  return present && !lists(*present, name);
}

}  // namespace

DevicePtr createFileOnVolume(const std::string& device, const std::string& name,
                             Volumes::Creation creation) {
  if (creation == Volumes::Creation::kNew && !mayBeNew(device, name)) return nullptr;
  auto stream = makeStream();
  auto errors = makeStream();
  if (!stream || !errors) return nullptr;
  auto process = ChildProcess::start({findProgram("mcopy"), "-o", "-i", device, "-", "::" + name},
                                     {.input = stream->childs, .errors = errors->childs});
  if (!process) return nullptr;
  return std::make_unique<WrittenFile>(std::move(stream->ours), std::move(errors->ours),
                                       std::move(process));
}

DevicePtr openFileOnVolume(const std::string& device, const std::string& name) {
  return startReader({findProgram("mcopy"), "-i", device, presentPath(name), "-"});
}

}  // namespace omniset
