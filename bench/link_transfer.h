// An installation over the real link: the installer in its thread, as the command line runs it.
#pragma once

#include <cstddef>
#include <string>

namespace omniset::bench {

struct TransferResult {
  double megabytesPerSecond = 0;  // all targets together, in units of 1,000,000 bytes
  long peakKilobytes = 0;         // the most memory that was resident in this process
};

// Waits until `targets` have announced themselves, then sends one package to all of them at once.
// The rate counts from the first look that finds data sent to the one that finds all targets
// waiting for their reboot; one looks every few milliseconds. Raises Failure.
TransferResult installTargets(const std::string& interfaceName, const std::string& packagesFolder,
                              const std::string& packageFile, std::size_t targets);

// Returns when a target has announced itself. Raises Failure.
void awaitAnnouncement(const std::string& interfaceName);

}  // namespace omniset::bench
