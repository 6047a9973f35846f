// The values of the options as they were written, empty where an option was not given.
#pragma once

#include <string>
#include <vector>

namespace omniset {

struct WrittenArguments {
  std::string folder;
  std::vector<std::string> select;
  std::vector<std::string> routers;
  std::string first, interfaceName, seconds, address, gateway, baud, script, wait;
  std::string client, boot;
  bool selectAll = false, all = false, keepConfiguration = false, reboot = false;
  bool json = false, trace = false;
};

}  // namespace omniset
