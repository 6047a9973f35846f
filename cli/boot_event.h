// What happens while a PC boots over the network.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/mac_address.h"

namespace omniset {

struct BootEvent {
  enum class Kind {
    kAnswered,   // asked to boot, and got an address: once for each boot
    kRefused,    // asked to boot, but is not to
    kRequested,  // asked for a file, and gets an image
    kSent,       // has got the image
    kGaveUp,     // did not ask for the image, or fell silent within it
    kDone,       // has got all images
  };

  Kind kind = Kind::kAnswered;
  MacAddress client{};
  std::uint32_t address = 0;  // kAnswered: network byte order
  int image = 0;              // kRequested, kSent, kGaveUp: its number
  std::size_t length = 0;     // kSent
  bool requested = false;     // kGaveUp: it had asked for the image
  std::string text{};         // kRequested: the file's name, whatever bytes the client sent;
                              // kRefused: why
};

// "kernel"
std::string bootImageName(int number);

// "02:00:00:00:01:03  kernel sent (1290752 bytes)", fit for a terminal, without a line end.
std::string bootEventLine(const BootEvent& event);

}  // namespace omniset
