#include "media/child_process_posix.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <sstream>
#include <thread>
#include <utility>

extern char** environ;

namespace omniset {

namespace {

constexpr int kStepMs = 5;

// The environment of a child: names on a volume are not to depend on the operator's language, nor
// anything on his mtools settings, and what mtools finds unusual about a volume's geometry is what
// mkfs.fat made of it.
std::vector<std::string> childEnvironment() {
  std::vector<std::string> variables{"LC_ALL=C.UTF-8", "MTOOLS_SKIP_CHECK=1"};
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string text = *variable;
    const bool isReplaced = text.starts_with("LC_ALL=") || text.starts_with("MTOOLS");
    if (!isReplaced && !text.starts_with("HOME=")) variables.push_back(text);
  }
  return variables;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

// Whoever started this program may have left it so that ended children cannot be asked for.
void beAbleToWait() {
  struct sigaction action {};
  sigaction(SIGCHLD, nullptr, &action);
  if (action.sa_handler == SIG_IGN) signal(SIGCHLD, SIG_DFL);
}

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  void use(const FileDescriptor& from, int to) {
    if (from) {
      posix_spawn_file_actions_adddup2(&actions_, from.get(), to);
    } else {
      posix_spawn_file_actions_addopen(&actions_, to, "/dev/null", O_RDWR, 0);
    }
  }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

}  // namespace

const FileDescriptor ChildProcess::kNone;

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  close();
  fd_ = std::exchange(other.fd_, -1);
  return *this;
}

bool FileDescriptor::close() {
  return fd_ < 0 || ::close(std::exchange(fd_, -1)) == 0;
}

std::optional<Stream> makeStream() {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return std::nullopt;
  return Stream{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

std::unique_ptr<ChildProcess> ChildProcess::start(const std::vector<std::string>& line,
                                                  const Streams& streams) {
  beAbleToWait();
  FileActions actions;
  actions.use(streams.input, STDIN_FILENO);
  actions.use(streams.output, STDOUT_FILENO);
  actions.use(streams.errors, STDERR_FILENO);
  std::vector<std::string> arguments = line;
  std::vector<std::string> environment = childEnvironment();
  pid_t id = 0;
  if (posix_spawn(&id, line.front().c_str(), actions.get(), nullptr, pointers(arguments).data(),
                  pointers(environment).data()) != 0) {
    return nullptr;
  }
  return std::unique_ptr<ChildProcess>(new ChildProcess(id));
}

ChildProcess::~ChildProcess() {
  if (exitStatus()) return;
  terminate();
  awaitExit();
}

std::optional<int> ChildProcess::collect(int options) {
  if (status_) return status_;
  int status = 0;
  if (waitpid(id_, &status, options) != id_) return std::nullopt;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return status_;
}

std::optional<int> ChildProcess::exitStatus() {
  return collect(WNOHANG);
}

std::optional<int> ChildProcess::awaitExit(int timeoutMs) {
  for (int waited = 0; waited < timeoutMs && !exitStatus(); waited += kStepMs) {
    std::this_thread::sleep_for(std::chrono::milliseconds(kStepMs));
  }
  return exitStatus();
}

int ChildProcess::awaitExit() {
  return collect(0).value_or(-1);
}

bool ChildProcess::terminate() {
  return kill(id_, SIGKILL) == 0;
}

std::string findProgram(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::istringstream folders(std::string(path ? path : "") + ":/usr/sbin:/sbin");
  std::string folder;
  while (std::getline(folders, folder, ':')) {
    const std::string program = folder + "/" + name;
    if (!folder.empty() && access(program.c_str(), X_OK) == 0) return program;
  }
  return {};
}

}  // namespace omniset
