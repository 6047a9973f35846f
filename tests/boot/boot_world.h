// The boot service on a simulated network, with images of its own and a watcher that writes down
// what it is told.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "boot/pixie.h"
#include "boot_client.h"
#include "boot_network.h"
#include "core/ipv4_address.h"
#include "tests/boot/boot_requests.h"
#include "tests/boot/tftp_datagrams.h"
#include "tests/fakes/fake_local_addresses.h"

namespace omniset::test {

class NotedBoots : public BootWatcher {
 public:
  bool mayBoot(const MacAddress& client) override { return !refused.contains(client); }
  void answered(const MacAddress& client) override {
    events.push_back("answered " + client.text());
  }
  void imageRequested(int number, std::string_view fileName) override {
    events.push_back(std::to_string(number) + " for " + std::string(fileName));
  }
  void imageSent(int number, std::size_t length) override {
    events.push_back(std::to_string(number) + " sent, " + std::to_string(length));
  }
  void gaveUp(int number, bool requested) override {
    events.push_back(std::to_string(number) + (requested ? " broken off" : " not requested"));
  }
  void allSent() override { events.push_back("all sent"); }

  std::vector<std::string> events;
  std::set<MacAddress> refused;
};

class BootWorld {
 public:
  static constexpr std::uint32_t kClientAddress = ipv4(192, 168, 88, 20);

  explicit BootWorld(std::uint64_t seed = 1, const sim::NetworkFaults& faults = {})
      : network(seed, faults), random_(seed + 1) {
    setImage(kNetworkBootProgramImage, 10'824);
    setImage(kNetworkConfigurationImage, 64);
    setImage(kKernelImage, 20'000);
    setImage(kRamDiskImage, 9'000);
    setImage(kEtherbootImage, 22'396);
  }

  // Content of which no two images are alike.
  void setImage(int number, std::size_t length) {
    images[number] = imageOf(length + 2);
    images[number].resize(length);
    for (auto& byte : images[number]) byte = static_cast<std::uint8_t>(byte + number);
  }

  PixieServices services() {
    return {[this] { return network.makeSocket(); },
            addresses,
            network.events(),
            [this](int number) {
              const auto& image = images.at(number);
              return BootImage{image.data(), image.size()};
            },
            [this] { return static_cast<int>(random_.next() & 0x7FFFFFFF); },
            &watcher};
  }

  Pixie& start(PixieConfig config = {true, kClientAddress}) {
    return service.emplace(0, config, services());
  }

  // Runs the service for so long.
  void run(Micros time) {
    network.events().after(time, [this] { service->stopEvent().set(); });
    service->run();
    service->stopEvent().reset();
  }

  std::vector<Bytes> pxeImages() const {
    return {images.at(kNetworkBootProgramImage), images.at(kNetworkConfigurationImage),
            images.at(kKernelImage), images.at(kRamDiskImage)};
  }

  Bytes etherbootImage() const {
    Bytes image = images.at(kEtherbootImage);
    const Bytes& kernel = images.at(kKernelImage);
    const Bytes& ramDisk = images.at(kRamDiskImage);
    if (kernel.size() > 3024) image.insert(image.end(), kernel.begin() + 3024, kernel.end());
    image.insert(image.end(), ramDisk.begin(), ramDisk.end());
    return image;
  }

  static BootClient::Plan pxePlan(const MacAddress& mac = kClientMac) {
    BootClient::Plan plan;
    plan.mac = mac;
    plan.request = pxeRequest(mac);
    plan.files = {"/image", "pxelinux.cfg/default", "linux", "initrd.rgz"};
    plan.options = std::string(
        "blksize\0"
        "1432\0tsize\0"
        "0\0",
        21);
    return plan;
  }
  static BootClient::Plan etherbootPlan(const MacAddress& mac = kClientMac) {
    BootClient::Plan plan;
    plan.mac = mac;
    plan.request = etherbootRequest(mac);
    plan.asks = 1;
    plan.files = {"/tftpboot/own.nbi"};
    return plan;
  }

  BootNetwork network;
  FakeLocalAddresses addresses = oneLocalAddress();
  std::map<int, Bytes> images;
  NotedBoots watcher;
  std::optional<Pixie> service;

 private:
  sim::Random random_;
};

}  // namespace omniset::test
