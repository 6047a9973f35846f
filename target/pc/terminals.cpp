#include "target/pc/terminals.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <array>

namespace omniset {

namespace {

// A full serial buffer of 4 KiB is out after 0.4 s.
constexpr int kPatienceMs = 1000;

// Any key counts, nothing is echoed, and nothing that comes in can hold back what goes out.
void setMode(int terminal) {
  termios mode{};
  if (tcgetattr(terminal, &mode) != 0) return;
  mode.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | ICRNL);
  mode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG);
  mode.c_cflag |= CLOCAL | CREAD;
  mode.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
  cfsetispeed(&mode, B115200);
  cfsetospeed(&mode, B115200);
  tcsetattr(terminal, TCSANOW, &mode);
}

void writeAll(int terminal, const std::string& text) {
  std::size_t written = 0;
  while (written < text.size()) {
    pollfd writable{terminal, POLLOUT, 0};
    if (poll(&writable, 1, kPatienceMs) <= 0) return;
    const ssize_t length = ::write(terminal, text.data() + written, text.size() - written);
    if (length <= 0) return;
    written += static_cast<std::size_t>(length);
  }
}

}  // namespace

Terminals::Terminals() {
  for (const char* path : {"/dev/tty0", "/dev/ttyS0"}) {
    const int terminal = open(path, O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (terminal < 0) continue;
    setMode(terminal);
    descriptors_.push_back(terminal);
  }
}

Terminals::~Terminals() {
  for (const int terminal : descriptors_) {
    tcdrain(terminal);
    close(terminal);
  }
}

void Terminals::write(const std::string& text) const {
  for (const int terminal : descriptors_) writeAll(terminal, text);
}

bool Terminals::keyPressed() const {
  bool pressed = false;
  std::array<char, 64> typed;
  for (const int terminal : descriptors_) {
    while (read(terminal, typed.data(), typed.size()) > 0) pressed = true;
  }
  return pressed;
}

}  // namespace omniset
