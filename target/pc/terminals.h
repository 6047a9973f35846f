// The two consoles of the PC: its screen with the keyboard, and the first serial line at 115200
// baud, 8 bits, no parity. Either may be absent.
#pragma once

#include <string>
#include <vector>

namespace omniset {

class Terminals {
 public:
  Terminals();
  ~Terminals();
  Terminals(const Terminals&) = delete;
  Terminals& operator=(const Terminals&) = delete;

  // Line feeds go out as new lines. A terminal that takes nothing misses it.
  void write(const std::string& text) const;
  // Does not wait; takes all that was typed.
  bool keyPressed() const;

 private:
  std::vector<int> descriptors_;
};

}  // namespace omniset
