// What the command line was asked to do, checked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cli/install_run.h"
#include "core/clock.h"
#include "core/mac_address.h"

namespace omniset {

struct PackagesOptions {
  std::string folder;
  bool json = false;
};

struct RoutersOptions {
  std::string interfaceName;  // empty: the first adapter
  Micros listen = 5 * kSecond;
  bool json = false;
};

struct PackageChoice {
  std::string folder;
  std::vector<std::string> select;  // package or file names; empty: all
};

struct InstallOptions : PackageChoice {
  RouterChoice choice = RouterChoice::kAll;
  std::vector<MacAddress> routers;
  std::size_t count = 0;
  std::string interfaceName;
  std::uint32_t address = 0;  // network byte order; 0: none
  int netmaskLength = 0;
  std::uint32_t gateway = 0;  // network byte order; 0: none
  int baudRate = 9600;
  bool baudGiven = false;
  std::string script;  // path; empty: none
  bool keepConfiguration = false;
  bool reboot = false;
  std::uint32_t bootAddress = 0;  // that PCs get while they boot over the network; 0: none boots
  Micros wait = 60 * kSecond;
  bool json = false;
};

struct BootOptions {
  std::uint32_t clientAddress = 0;  // network byte order
  std::string interfaceName;        // empty: the adapter on whose subnet the address is
  bool json = false;
};

struct DrivesOptions {
  bool json = false;
};

struct DiskOptions : PackageChoice {
  std::string device;  // as written: a drive letter, a block device or an image file
  std::string script;  // path; empty: none
  int baudRate = 0;    // of the serial ports; 0: not set
  bool yes = false;    // erase the device without asking
  bool json = false;
};

struct FloppyOptions {
  std::string device;  // as DiskOptions'
  std::string label;   // what the file label.txt is to hold
  bool yes = false;
  bool json = false;
};

}  // namespace omniset
