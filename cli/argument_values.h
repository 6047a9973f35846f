// The values of arguments: each function reads one and raises BadInput with a sentence that says
// how to write it.
#pragma once

#include <cstdint>
#include <string>

#include "core/mac_address.h"

namespace omniset {

struct AddressWithLength {
  std::uint32_t address = 0;  // network byte order
  int netmaskLength = 0;
};

MacAddress parseRouter(const std::string& text);
AddressWithLength parseAddress(const std::string& text);
std::uint32_t parseGateway(const std::string& text);
// That a PC gets while it boots; `option` as the operator wrote it ("--client").
std::uint32_t parseClientAddress(const std::string& option, const std::string& text);
int parseBaudRate(const std::string& text);

// A whole number from 1 to a million; `option` as the operator wrote it ("--wait"), `unit` for the
// sentence ("seconds").
int parseCount(const std::string& option, const std::string& unit, const std::string& text);

}  // namespace omniset
