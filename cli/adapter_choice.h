// Which network adapter the install link uses.
#pragma once

#include <string>
#include <vector>

#include "link/network_interfaces.h"

namespace omniset {

struct AdapterChoice {
  NetworkInterface adapter;
  std::string shownName;  // for messages: its name, or its MAC address where it has none
  bool isGuess = false;   // there are several and none was asked for
};

// `wanted` is an adapter's name; where adapters have no names its MAC address or its number,
// counted from 0; empty for the first one. Raises BadInput when there is no such adapter, and
// Failure when there is none at all.
AdapterChoice chooseAdapter(const std::vector<NetworkInterface>& adapters,
                            const std::string& wanted);

// What to tell the operator about a guess.
std::string guessWarning(const AdapterChoice& choice);

// A failed socket call, told in a sentence that says what to do; `systemText` is the exception's.
std::string socketFailureText(const std::string& systemText, const std::string& shownName);

}  // namespace omniset
