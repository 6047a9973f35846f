#include "ui/settings_file_posix.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <thread>

#include "core/trace.h"
#include "ui/settings_json.h"

namespace omniset {

namespace {

constexpr mode_t kForOwnerOnly = 0600;
constexpr std::size_t kLargestFile = 16 << 20;
constexpr std::chrono::milliseconds kBetweenTries(10);

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }
  bool isOpen() const { return number_ >= 0; }

 private:
  int number_;
};

// 0 or an error code. Stops behind the largest size that a file may have.
int readAll(int file, std::string& text) {
  std::array<char, 4096> part{};
  while (text.size() <= kLargestFile) {
    const ssize_t count = read(file, part.data(), part.size());
    if (count == 0) return 0;
    if (count > 0) {
      text.append(part.data(), static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

int writeAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(file, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

int writeNewFile(const std::string& path, std::string_view text) {
  const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kForOwnerOnly));
  if (!file.isOpen()) return errno;
  if (const int error = writeAll(file.number(), text)) return error;
  return fsync(file.number()) == 0 ? 0 : errno;
}

// The lock ends with the descriptor.
int lock(const Descriptor& file, std::chrono::milliseconds patience) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
    const bool isTaken = errno == EWOULDBLOCK || errno == EINTR;
    if (!isTaken || std::chrono::steady_clock::now() >= end) return errno;
    std::this_thread::sleep_for(kBetweenTries);
  }
  return 0;
}

int createFolderOf(const std::string& path) {
  std::error_code failure;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), failure);
  return failure.value();
}

// To open anything else than a regular file may wait for ever, and it has no settings.
bool isRegular(const Descriptor& file) {
  struct stat status {};
  return fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

SettingsFile::Loaded SettingsFile::load() const {
  const Descriptor file(open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!file.isOpen()) {
    if (errno == ENOENT) return {};
    if (errno != EACCES) return {.error = errno, .keys = {}};
  }
  std::string text;
  std::optional<StoredKeys> keys;
  if (file.isOpen() && isRegular(file)) {
    if (const int error = readAll(file.number(), text)) return {.error = error, .keys = {}};
    if (text.size() <= kLargestFile) keys = parseSettingsJson(text);
  }
  if (keys) return {.keys = std::move(*keys)};
  traceLine("settings cannot be used: " + path_);
  return {.isUsable = false, .keys = {}};
}

int SettingsFile::putAside() const {
  const std::string aside = path_ + ".damaged";
  if (std::rename(path_.c_str(), aside.c_str()) != 0) return errno;
  traceLine("settings kept as: " + aside);
  return 0;
}

// The new content is on the disk before it gets the file's name. A file that an interrupted change
// left is of no use.
int SettingsFile::replace(const StoredKeys& keys) const {
  const std::string path = path_ + ".new";
  unlink(path.c_str());
  int error = writeNewFile(path, settingsJson(keys));
  if (error == 0 && std::rename(path.c_str(), path_.c_str()) != 0) error = errno;
  if (error != 0) unlink(path.c_str());
  return error;
}

int SettingsFile::read(StoredKeys& keys) const {
  Loaded loaded = load();
  keys = std::move(loaded.keys);
  return loaded.error;
}

int SettingsFile::change(const std::function<int(StoredKeys&)>& action) const {
  if (const int error = createFolderOf(path_)) return error;
  const Descriptor turn(
      open((path_ + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kForOwnerOnly));
  if (!turn.isOpen()) return errno;
  if (const int error = lock(turn, patience_)) return error;
  Loaded loaded = load();
  if (loaded.error != 0) return loaded.error;
  if (!loaded.isUsable) {
    if (const int error = putAside()) return error;
  }
  if (const int error = action(loaded.keys)) return error;
  return replace(loaded.keys);
}

}  // namespace omniset
