#include "tests/contract/test_adapter.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace omniset::test {

std::optional<NetworkInterface> testAdapter() {
  const char* const set = std::getenv("OMNISET_TEST_ADAPTER");
  if (!set || !*set) return std::nullopt;
  const std::string text = set;
  const auto separator = text.find('=');
  if (separator == std::string::npos) throw std::runtime_error("OMNISET_TEST_ADAPTER=" + text);
  const auto mac = MacAddress::parse(std::string_view(text).substr(separator + 1));
  if (!mac) throw std::runtime_error("OMNISET_TEST_ADAPTER=" + text);
  return NetworkInterface{text.substr(0, separator), *mac};
}

}  // namespace omniset::test
