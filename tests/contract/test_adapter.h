// The one Ethernet adapter of the network that a test runs in. Its maker, a script that made the
// network (a namespace of its own), says so in the environment: OMNISET_TEST_ADAPTER=NAME=MAC.
#pragma once

#include <optional>

#include "link/network_interfaces.h"

namespace omniset::test {

// Nothing when no such network was made. Raises std::runtime_error when the variable is malformed.
std::optional<NetworkInterface> testAdapter();

}  // namespace omniset::test
