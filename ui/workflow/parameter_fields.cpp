#include "ui/workflow/parameter_fields.h"

#include <charconv>

#include "core/ipv4_address.h"

namespace omniset {

namespace {

constexpr std::int32_t kLongestNetmask = 32;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string addressText(std::uint32_t address) {
  return address == 0 ? std::string() : dottedQuad(address);
}

}  // namespace

std::optional<std::uint32_t> validAddress(const std::string& text) {
  const auto address = parseDottedQuad(trimmed(text));
  return address != kBroadcastAddress ? address : std::nullopt;
}

std::uint32_t addressOf(const std::string& text) {
  return validAddress(text).value_or(0);
}

std::int32_t netmaskOf(const std::string& text) {
  const std::string_view number = trimmed(text);
  std::int32_t bits = 0;
  const auto [end, failure] = std::from_chars(number.data(), number.data() + number.size(), bits);
  if (failure == std::errc::result_out_of_range) return kLongestNetmask;
  if (failure != std::errc{}) return 0;
  return bits < 0 || bits > kLongestNetmask ? kLongestNetmask : bits;
}

ParameterFields fieldsOf(const RouterRecord& record) {
  ParameterFields fields;
  fields.keepConfiguration = record.keepConfiguration;
  fields.address = addressText(record.address);
  if (record.netmaskLength != 0) fields.netmask = std::to_string(record.netmaskLength);
  fields.gateway = addressText(record.gateway);
  fields.baudRate = record.baudRate;
  fields.useScript = record.useOwnScript;
  fields.scriptFile = record.scriptPath;
  return fields;
}

void storeFields(const ParameterFields& fields, RouterRecord& record) {
  record.keepConfiguration = fields.keepConfiguration;
  record.address = addressOf(fields.address);
  record.netmaskLength = netmaskOf(fields.netmask);
  record.gateway = addressOf(fields.gateway);
  record.baudRate = fields.baudRate;
  record.useOwnScript = fields.useScript;
  record.scriptPath = fields.scriptFile;
}

std::vector<std::string> warningsOf(const RouterRecord& record) {
  std::vector<std::string> warnings;
  if ((record.address == 0) != (record.netmaskLength == 0)) {
    warnings.push_back(
        "No address will be set unless both address and netmask is specified. Proceed?");
  }
  if (record.gateway != 0 && (record.address == 0 || record.netmaskLength == 0)) {
    warnings.push_back("No gateway will be set if address is invalid. Proceed?");
  }
  return warnings;
}

}  // namespace omniset
