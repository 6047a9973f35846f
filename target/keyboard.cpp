#include "target/keyboard.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace omniset {

namespace {

// The terminal stops a program in the background that reads from it or sets its mode.
bool inForeground() {
  return tcgetpgrp(STDIN_FILENO) == getpgrp();
}

}  // namespace

Keyboard::Keyboard() {
  // A descriptor that is closed now may be a socket later.
  atEnd_ = fcntl(STDIN_FILENO, F_GETFD) < 0;
  isTerminal_ = tcgetattr(STDIN_FILENO, &before_) == 0;
  if (!isTerminal_ || !inForeground()) return;
  termios raw = before_;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  tcsetattr(STDIN_FILENO, TCSANOW, &raw);
}

Keyboard::~Keyboard() {
  if (isTerminal_ && inForeground()) tcsetattr(STDIN_FILENO, TCSANOW, &before_);
}

bool Keyboard::pressed() {
  if (atEnd_ || (isTerminal_ && !inForeground())) return false;
  pollfd input{STDIN_FILENO, POLLIN, 0};
  if (poll(&input, 1, 0) <= 0) return false;
  char key = 0;
  atEnd_ = read(STDIN_FILENO, &key, 1) <= 0;
  return !atEnd_;
}

}  // namespace omniset
