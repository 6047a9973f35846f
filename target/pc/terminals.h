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

  // Line feeds go out as new lines. A terminal that takes nothing for a second misses it, and is
  // not waited for again until it takes something.
  void write(const std::string& text);
  // Does not wait; takes all that was typed.
  bool keyPressed() const;

 private:
  struct Terminal {
    int descriptor;
    bool isStuck = false;
  };

  static bool writeAll(const Terminal& terminal, const std::string& text);
  static void drain(const Terminal& terminal);

  std::vector<Terminal> terminals_;
};

}  // namespace omniset
