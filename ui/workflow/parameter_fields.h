// The fields of the install parameters as the operator sees them, and what they mean.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "install/router_record.h"

namespace omniset {

// The serial console speeds that can be chosen, in the list's order.
constexpr std::array<std::int32_t, 13> kBaudRates = {
    110, 300, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600};
constexpr std::int32_t kDefaultBaudRate = 9600;

struct ParameterFields {
  bool keepConfiguration = false;
  std::string address;  // dotted; empty for none
  std::string netmask;  // bits; empty for none
  std::string gateway;  // dotted; empty for none
  std::int32_t baudRate = kDefaultBaudRate;
  bool useScript = false;
  std::string scriptFile;

  bool operator==(const ParameterFields&) const = default;
};

// A dotted address, blanks around it aside, in network byte order; nothing for anything else. The
// broadcast address is no computer's and counts as invalid.
std::optional<std::uint32_t> validAddress(const std::string& text);
// The same, with 0 for anything else.
std::uint32_t addressOf(const std::string& text);

// The number that the text begins with; one above 32, like a negative one, is 32.
std::int32_t netmaskOf(const std::string& text);

// The fields that show a request, and a request that takes over the fields.
ParameterFields fieldsOf(const RouterRecord& record);
void storeFields(const ParameterFields& fields, RouterRecord& record);

// What the operator is asked before an installation with these parameters, in order; each ends in
// "Proceed?".
std::vector<std::string> warningsOf(const RouterRecord& record);

}  // namespace omniset
