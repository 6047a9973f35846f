// The fixed texts of the status codes, as the router list shows them.
#pragma once

#include "install/router_record.h"

namespace omniset {

constexpr const char* statusName(RouterStatus status) {
  switch (status) {
    case RouterStatus::kReady:
      return "Ready";
    case RouterStatus::kFinished:
      return "OK";
    case RouterStatus::kFailed:
      return "Failed";
    case RouterStatus::kInstalling:
      return "Installing";
    case RouterStatus::kWaitingReboot:
      return "Waiting reboot";
  }
  return "";
}

}  // namespace omniset
