// Keys pressed on the terminal that the program runs on.
#pragma once

#include <termios.h>

namespace omniset {

// Takes the terminal's line mode off while it lives, so that any key counts; when standard input is
// no terminal, each byte that arrives there is a key. Leaves the terminal alone in the background.
class Keyboard {
 public:
  Keyboard();
  ~Keyboard();
  Keyboard(const Keyboard&) = delete;
  Keyboard& operator=(const Keyboard&) = delete;

  // Does not wait. The end of the input is no key.
  bool pressed();

 private:
  bool isTerminal_ = false;
  bool atEnd_ = false;
  termios before_{};
};

}  // namespace omniset
