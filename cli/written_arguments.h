// The values of the options as they were written, empty where an option was not given.
#pragma once

#include <string>
#include <vector>

#include "media/floppy_maker.h"

namespace omniset {

struct WrittenArguments {
  std::string folder;
  std::vector<std::string> select;
  std::vector<std::string> routers;
  std::string first, interfaceName, seconds, address, gateway, baud, script, wait;
  std::string client, boot, device;
  std::string label = kProposedLabel;
  bool selectAll = false, all = false, keepConfiguration = false, reboot = false, yes = false;
  bool json = false, trace = false;
};

}  // namespace omniset
