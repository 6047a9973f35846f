#include "cli/boot_place.h"

#include <algorithm>
#include <optional>

#include "boot/boot_checks.h"
#include "cli/bad_input.h"
#include "core/error.h"
#include "core/ipv4_address.h"
#include "core/shown_text.h"

namespace omniset {

namespace {

// Those of one adapter of several.
class AddressesOf : public LocalAddresses {
 public:
  AddressesOf(LocalAddresses& all, std::string interfaceName)
      : all_(all), interfaceName_(std::move(interfaceName)) {}

  std::vector<LocalAddress> list() override {
    std::vector<LocalAddress> rows = all_.list();
    std::erase_if(rows,
                  [&](const LocalAddress& row) { return row.interfaceName != interfaceName_; });
    return rows;
  }

 private:
  LocalAddresses& all_;
  std::string interfaceName_;
};

bool isAmong(const std::vector<NetworkInterface>& adapters, const std::string& name) {
  return std::any_of(adapters.begin(), adapters.end(),
                     [&](const NetworkInterface& adapter) { return adapter.name == name; });
}

// Of those that are up, if one of them is on the client's subnet.
std::optional<std::string> adapterOnSubnetOf(std::uint32_t clientAddress,
                                             const std::vector<NetworkInterface>& adapters,
                                             std::vector<LocalAddress> rows) {
  std::erase_if(rows,
                [&](const LocalAddress& row) { return !isAmong(adapters, row.interfaceName); });
  const auto found = addressOnSubnetOf(clientAddress, rows);
  if (!found) return std::nullopt;
  return found->interfaceName;
}

// One that is down only when none else will do: the sentence that refuses it names it.
std::string adapterFor(std::uint32_t clientAddress, const std::vector<NetworkInterface>& adapters,
                       const std::vector<LocalAddress>& rows) {
  if (const auto name = adapterOnSubnetOf(clientAddress, adapters, rows)) return *name;
  const auto found = addressOnSubnetOf(clientAddress, rows);
  return found ? found->interfaceName : "";
}

void checkAdapter(const std::vector<NetworkInterface>& adapters, const AdapterChoice& choice,
                  std::uint32_t clientAddress, LocalAddresses& all) {
  const std::string client = dottedQuad(clientAddress);
  AddressesOf own(all, choice.adapter.name);
  if (own.list().empty()) {
    throw BadInput("The adapter " + choice.shownName +
                   " has no IPv4 address, so that a PC that boots could not reach this computer: "
                   "give it a free address beside " +
                   client + ".");
  }
  const auto problem = clientAddressProblem(clientAddress, own);
  if (!problem) return;
  const auto better = adapterOnSubnetOf(clientAddress, adapters, all.list());
  if (better && *better != choice.adapter.name) {
    const std::string name = shownText(*better);
    throw BadInput("The address " + client + " is on the subnet of the adapter " + name +
                   ", not on that of " + choice.shownName + ": give --interface " + name +
                   ", or choose an address on the subnet of " + choice.shownName + ".");
  }
  throw BadInput(*problem);
}

void checkComputer(std::uint32_t clientAddress, LocalAddresses& all) {
  const auto problem = clientAddressProblem(clientAddress, all);
  if (!problem) return;
  // A cable that is not plugged in is no mistake of the arguments.
  if (!hasNetworkAddress(all)) throw Failure(*problem);
  throw BadInput(*problem);
}

}  // namespace

AdapterChoice chooseBootAdapter(const std::vector<NetworkInterface>& adapters,
                                const std::string& wanted, std::uint32_t clientAddress,
                                LocalAddresses& addresses) {
  if (wanted.empty()) checkComputer(clientAddress, addresses);
  const AdapterChoice choice = chooseAdapter(
      adapters, wanted.empty() ? adapterFor(clientAddress, adapters, addresses.list()) : wanted);
  if (choice.adapter.name.empty()) {
    checkComputer(clientAddress, addresses);
  } else {
    checkAdapter(adapters, choice, clientAddress, addresses);
  }
  return choice;
}

std::string bootServiceFailure(const std::string& systemText, const std::string& shownName) {
  if (systemText.starts_with("setsockopt() SO_BINDTODEVICE")) {
    return socketFailureText(systemText, shownName);
  }
  return bootFailureText(systemText);
}

void checkBootPorts(const std::function<std::unique_ptr<UdpSocket>()>& makeSocket,
                    const std::string& shownName) {
  try {
    tryBootPorts(makeSocket);
  } catch (const SocketExc& e) {
    throw Failure(bootServiceFailure(e.what(), shownName));
  }
}

std::string bootSentence(const AdapterChoice& choice, std::uint32_t clientAddress) {
  const std::string where = choice.adapter.name.empty() ? "" : " on " + choice.shownName;
  return "Answering boot requests" + where + "; PCs get " + dottedQuad(clientAddress) + ".";
}

}  // namespace omniset
