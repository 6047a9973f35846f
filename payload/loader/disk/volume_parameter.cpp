#include "payload/loader/disk/volume_parameter.h"

namespace omniset::loader {

bool appendVolume(CommandLine& commandLine, std::uint32_t serialNumber) {
  char text[] = " omniset.volume=00000000";
  for (char* digit = text + sizeof text - 2; serialNumber != 0; serialNumber >>= 4) {
    *digit-- = "0123456789ABCDEF"[serialNumber & 0xF];
  }
  std::size_t length = 0;
  while (commandLine[length] != 0) ++length;
  if (length + sizeof text > commandLine.size()) return false;
  for (const char c : text) commandLine[length++] = c;
  return true;
}

}  // namespace omniset::loader
