// One install target together with the installation that is wanted of it: a row of the router list,
// the request handed to the installer, and the state that the installer reports back.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/clock.h"
#include "core/mac_address.h"

namespace omniset {

enum class RouterStatus : std::int32_t {
  kReady = 1,     // announced, not being installed
  kFinished = 2,  // installed; rebooted, or the reboot can no longer be confirmed
  kFailed = 3,    // the status text says why
  kInstalling = 4,
  kWaitingReboot = 5,
};

// Kinds of targets.
constexpr std::int32_t kLocalDrive = 0;
constexpr std::int32_t kNetworkTarget = 1;

// Types of local drives.
constexpr std::int32_t kRemovableDrive = 2;
constexpr std::int32_t kFixedDrive = 3;
// For the operator.
constexpr const char* driveTypeName(std::int32_t driveType) {
  return driveType == kFixedDrive ? "Hard disk" : "Removable media";
}

struct RouterRecord {
  std::int32_t kind = kNetworkTarget;
  std::string label;
  MacAddress mac;              // the source address of the target's frames
  std::int32_t driveType = 0;  // of a local drive

  std::string scriptPath;          // the operator's own script, empty for none
  bool keepConfiguration = false;  // leave the target its old configuration
  bool useOwnScript = false;       // scriptPath replaces the generated script
  std::uint32_t address = 0;       // network byte order; 0: not set
  std::int32_t netmaskLength = 0;  // leading one bits; 0: not set
  std::uint32_t gateway = 0;       // network byte order; 0: none
  std::int32_t baudRate = 0;
  std::vector<std::string> packages;  // that the operator chose; see ui/workflow/package_marks.h
  std::vector<std::string> packageFiles;  // names within the packages folder, in sending order
  std::int64_t packageBytes = 0;          // of these files together

  Micros lastSeen = 0;  // the target's last announcement before the installation
  RouterStatus status = RouterStatus::kReady;
  std::int32_t bytesSent = 0;
  std::string statusText;
};

}  // namespace omniset
