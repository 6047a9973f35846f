#include "cli/argument_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include "cli/bad_input.h"
#include "core/ipv4_address.h"
#include "core/shown_text.h"

namespace omniset {

namespace {

constexpr int kLargestCount = 1'000'000;
constexpr int kLongestNetmask = 32;
constexpr std::uint32_t kLoopbackNetwork = 127;
constexpr std::uint32_t kFirstMulticastNetwork = 224;  // and what is reserved behind those
constexpr std::array kBaudRates = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};

std::string quoted(const std::string& text) {
  return "'" + shownText(text) + "'";
}

std::optional<int> wholeNumber(std::string_view text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [next, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || next != end) return std::nullopt;
  return number;
}

std::string baudRateList() {
  std::string list;
  for (const int rate : kBaudRates) list += (list.empty() ? "" : ", ") + std::to_string(rate);
  return list;
}

}  // namespace

MacAddress parseRouter(const std::string& text) {
  const auto mac = MacAddress::parse(text);
  if (mac && !mac->isWildcard()) return *mac;
  throw BadInput(quoted(text) +
                 " is not a router's MAC address: write it like 02:00:00:01:02:0A. "
                 "\"omniset-cli routers\" lists the routers that are waiting.");
}

AddressWithLength parseAddress(const std::string& text) {
  const std::size_t slash = text.find('/');
  const auto address = parseDottedQuad(std::string_view(text).substr(0, slash));
  const auto length =
      slash == std::string::npos ? std::nullopt : wholeNumber(text.substr(slash + 1));
  if (!address || !length || *length < 1 || *length > kLongestNetmask) {
    throw BadInput("--address " + quoted(text) +
                   " is not an address with its netmask length: write A.B.C.D/LEN with LEN from 1 "
                   "to 32, for example --address 192.168.88.1/24.");
  }
  if (*address == 0) {
    throw BadInput(
        "--address 0.0.0.0 would give the router no address: write the address that it "
        "is to have, or leave --address out.");
  }
  return {*address, *length};
}

std::uint32_t parseGateway(const std::string& text) {
  const auto gateway = parseDottedQuad(text);
  if (gateway && *gateway != 0) return *gateway;
  throw BadInput("--gateway " + quoted(text) +
                 " is not a router's address: write A.B.C.D, for example --gateway "
                 "192.168.88.254, or leave --gateway out.");
}

std::uint32_t parseClientAddress(const std::string& option, const std::string& text) {
  const auto address = parseDottedQuad(text);
  const std::uint32_t firstOctet = address.value_or(0) & 0xFF;
  if (firstOctet != 0 && firstOctet != kLoopbackNetwork && firstOctet < kFirstMulticastNetwork) {
    return *address;
  }
  throw BadInput(option + " " + quoted(text) +
                 " is not an address that a PC can have: write A.B.C.D, a free address on the "
                 "subnet of this computer, for example " +
                 option + " 192.168.88.20.");
}

int parseBaudRate(const std::string& text) {
  const auto rate = wholeNumber(text);
  if (rate && std::find(kBaudRates.begin(), kBaudRates.end(), *rate) != kBaudRates.end()) {
    return *rate;
  }
  throw BadInput("--baud " + quoted(text) + " is not a speed of a serial port: write one of " +
                 baudRateList() + ".");
}

int parseCount(const std::string& option, const std::string& unit, const std::string& text) {
  const auto count = wholeNumber(text);
  if (count && *count >= 1 && *count <= kLargestCount) return *count;
  throw BadInput(option + " " + quoted(text) + " is not a number of " + unit +
                 ": write a whole number from 1 to " + std::to_string(kLargestCount) + ".");
}

}  // namespace omniset
