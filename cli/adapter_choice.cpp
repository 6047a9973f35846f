#include "cli/adapter_choice.h"

#include "cli/bad_input.h"
#include "core/shown_text.h"
#include "link/broadcast_endpoint.h"

namespace omniset {

namespace {

bool isMeant(const NetworkInterface& adapter, std::size_t number, const std::string& wanted) {
  if (!adapter.name.empty()) return adapter.name == wanted;
  return MacAddress::parse(wanted) == adapter.mac || std::to_string(number) == wanted;
}

std::string shownName(const NetworkInterface& adapter) {
  return adapter.name.empty() ? adapter.mac.text() : shownText(adapter.name);
}

// "eth0, eth1", or "0 (02:00:00:00:00:01), 1 (...)".
std::string adapterList(const std::vector<NetworkInterface>& adapters) {
  std::string list;
  for (std::size_t i = 0; i < adapters.size(); ++i) {
    if (i > 0) list += ", ";
    list += adapters[i].name.empty() ? std::to_string(i) + " (" + shownName(adapters[i]) + ")"
                                     : shownName(adapters[i]);
  }
  return list;
}

}  // namespace

AdapterChoice chooseAdapter(const std::vector<NetworkInterface>& adapters,
                            const std::string& wanted) {
  if (adapters.empty()) {
    throw Failure(
        "This computer has no Ethernet adapter that is up: plug in the cable or enable "
        "the adapter, and start again.");
  }
  if (wanted.empty()) return {adapters[0], shownName(adapters[0]), adapters.size() > 1};
  for (std::size_t i = 0; i < adapters.size(); ++i) {
    if (isMeant(adapters[i], i, wanted)) return {adapters[i], shownName(adapters[i]), false};
  }
  throw BadInput("There is no Ethernet adapter '" + shownText(wanted) +
                 "' that is up: check its name and its cable, or give one of these to "
                 "--interface: " +
                 adapterList(adapters) + ".");
}

std::string guessWarning(const AdapterChoice& choice) {
  return "Using the adapter " + choice.shownName +
         ", the first of several; choose another one with --interface.";
}

std::string socketFailureText(const std::string& systemText, const std::string& shownName) {
  const std::string reason = " (" + shownText(systemText) + ")";
  if (systemText.starts_with("bind()")) {
    return "UDP port " + std::to_string(kInstallPort) +
           " cannot be had: another installer is probably running on this computer. End it and "
           "start again." +
           reason;
  }
  if (systemText.starts_with("setsockopt() SO_BINDTODEVICE")) {
    return "The adapter " + shownName +
           " cannot be used: check that it is up, and start as root if this system reserves the "
           "choice of an adapter for root." +
           reason;
  }
  return "The network cannot be used: check that the adapter " + shownName +
         " is up and that this program may use the network." + reason;
}

}  // namespace omniset
