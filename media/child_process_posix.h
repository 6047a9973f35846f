// A program that runs beside this one, with its standard input and output in our hands.
#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace omniset {

// Closes itself; -1: none.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int fd) : fd_(fd) {}
  FileDescriptor(FileDescriptor&& other) noexcept;
  FileDescriptor& operator=(FileDescriptor&& other) noexcept;
  ~FileDescriptor() { close(); }

  int get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }
  // False when the system says that closing failed.
  bool close();

 private:
  int fd_ = -1;
};

// Two ends of a stream; the one for the child may be read and written.
struct Stream {
  FileDescriptor ours;
  FileDescriptor childs;
};
// Empty when none can be had. A write to it never raises SIGPIPE if it is made with send() and
// MSG_NOSIGNAL.
std::optional<Stream> makeStream();

class ChildProcess {
 public:
  // What it has for its standard streams; none stands for /dev/null.
  struct Streams {
    const FileDescriptor& input = kNone;
    const FileDescriptor& output = kNone;
    const FileDescriptor& errors = kNone;
  };

  // The program's path, then its arguments. Null when it cannot be started.
  static std::unique_ptr<ChildProcess> start(const std::vector<std::string>& line,
                                             const Streams& streams);
  // One that still runs is ended.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Its exit status, 128 and more for a signal; nothing while it runs.
  std::optional<int> exitStatus();
  std::optional<int> awaitExit(int timeoutMs);
  int awaitExit();
  bool terminate();

 private:
  static const FileDescriptor kNone;

  explicit ChildProcess(pid_t id) : id_(id) {}
  std::optional<int> collect(int options);

  pid_t id_;
  std::optional<int> status_;
};

// The path of a program in $PATH, /usr/sbin or /sbin; empty when it is not there.
std::string findProgram(const std::string& name);

}  // namespace omniset
