#include "target/pc/terminals.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>

namespace omniset {

namespace {

// A full serial buffer of 4 KiB is out after 0.4 s.
constexpr int kPatienceMs = 1000;
constexpr int kDrainTurnMs = 10;

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

}  // namespace

Terminals::Terminals() {
  for (const char* path : {"/dev/tty0", "/dev/ttyS0"}) {
    const int descriptor = open(path, O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) continue;
    setMode(descriptor);
    terminals_.push_back({descriptor});
  }
}

Terminals::~Terminals() {
  for (const Terminal& terminal : terminals_) {
    drain(terminal);
    close(terminal.descriptor);
  }
}

void Terminals::write(const std::string& text) {
  for (Terminal& terminal : terminals_) terminal.isStuck = !writeAll(terminal, text);
}

// False when it did not take everything in time.
bool Terminals::writeAll(const Terminal& terminal, const std::string& text) {
  std::size_t written = 0;
  while (written < text.size()) {
    pollfd writable{terminal.descriptor, POLLOUT, 0};
    if (poll(&writable, 1, terminal.isStuck ? 0 : kPatienceMs) <= 0) return false;
    const ssize_t length =
        ::write(terminal.descriptor, text.data() + written, text.size() - written);
    if (length <= 0) return false;
    written += static_cast<std::size_t>(length);
  }
  return true;
}

// Lets out what was written, for a limited time; to close a terminal would wait for the rest.
void Terminals::drain(const Terminal& terminal) {
  int left = 0;
  for (int waited = 0; waited < kPatienceMs && !terminal.isStuck; waited += kDrainTurnMs) {
    if (ioctl(terminal.descriptor, TIOCOUTQ, &left) < 0 || left == 0) break;
    poll(nullptr, 0, kDrainTurnMs);
  }
  // The chip's own few bytes are not counted.
  poll(nullptr, 0, kDrainTurnMs);
  tcflush(terminal.descriptor, TCOFLUSH);
}

bool Terminals::keyPressed() const {
  bool pressed = false;
  std::array<char, 64> typed;
  for (const Terminal& terminal : terminals_) {
    while (read(terminal.descriptor, typed.data(), typed.size()) > 0) pressed = true;
  }
  return pressed;
}

}  // namespace omniset
