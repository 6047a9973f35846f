// boot_simulation: boots PCs over a simulated network that loses, repeats, delays and reorders,
// from seeds, and tells the seeds that went wrong.

#include <algorithm>
#include <deque>
#include <string>

#include "seed_runner.h"
#include "tests/boot/boot_world.h"

namespace omniset::sim {
namespace {

using test::BootClient;
using test::BootWorld;
using test::Bytes;

// Far more than all boots take: at worst each block takes some seconds.
constexpr Micros kBadWeather = 48 * 3600 * kSecond;
constexpr Micros kLook = 30 * kSecond;
constexpr Micros kGoodWeather = 120 * kSecond;
constexpr int kLives = 12;

struct Weather {
  NetworkFaults faults;
  std::size_t clients = 1;
  bool etherboot = false;
  bool noise = false;  // datagrams of any kind to every port of the service
};

Weather weatherFrom(Random& random) {
  Weather weather;
  const bool calm = random.chance(0.1);
  weather.faults.loss = calm ? 0 : random.oneOf<double>({0, 0.001, 0.01, 0.05});
  weather.faults.repetition = calm ? 0 : random.oneOf<double>({0, 0.01, 0.2});
  weather.faults.truncation = calm ? 0 : random.oneOf<double>({0, 0, 0.01});
  weather.faults.longestDelay =
      calm ? 50 : random.oneOf<Micros>({50, 2 * kMillisecond, 300 * kMillisecond, 3 * kSecond});
  weather.clients = static_cast<std::size_t>(random.between(1, 3));
  weather.etherboot = random.chance(0.3);
  weather.noise = random.chance(0.3);
  return weather;
}

void chooseImages(BootWorld& world, Random& random) {
  const std::vector<std::size_t> lengths{0,    1,    64,   511,    512,    513,
                                         1024, 3024, 3025, 10'824, 22'396, 60'000};
  for (const int number : {kNetworkBootProgramImage, kNetworkConfigurationImage, kKernelImage,
                           kRamDiskImage, kEtherbootImage}) {
    world.setImage(number, random.oneOf(lengths));
  }
}

BootClient::Plan planOf(std::size_t number, bool etherboot, Random& random) {
  const MacAddress mac{{2, 0, 0, 0, 2, static_cast<std::uint8_t>(number)}};
  BootClient::Plan plan = etherboot ? BootWorld::etherbootPlan(mac) : BootWorld::pxePlan(mac);
  if (random.chance(0.5)) plan.options.clear();
  plan.lives = kLives;
  plan.firstPort = static_cast<std::uint16_t>(2100 + 1000 * number);
  return plan;
}

bool isOver(const std::deque<BootClient>& clients) {
  return std::all_of(clients.begin(), clients.end(), [](const BootClient& client) {
    return client.isDone() || client.hasGivenUp();
  });
}

// Ends the service once every client has booted or given up.
void watch(BootWorld& world, const std::deque<BootClient>& clients) {
  world.network.events().after(kLook, [&] {
    if (isOver(clients)) {
      world.service->stopEvent().set();
    } else {
      watch(world, clients);
    }
  });
}

void makeNoise(BootWorld& world, const std::deque<BootClient>& clients) {
  Random& random = world.network.random();
  Bytes datagram(static_cast<std::size_t>(random.between(0, 600)));
  for (auto& byte : datagram) byte = static_cast<std::uint8_t>(random.next());
  if (datagram.size() > 4 && random.chance(0.5)) {
    datagram[0] = 0;
    datagram[1] = static_cast<std::uint8_t>(random.between(0, 6));
  }
  // Not to the ports of transfers: who is there is taken for the client.
  const auto port = static_cast<std::uint16_t>(random.oneOf<int>({67, 67, 69}));
  if (port == 67 || datagram.size() < 2 || datagram[1] != 1) {
    world.network.sendToService(datagram, 999, port);
  }
  const Micros pause = random.between(10, 3000) * kMillisecond;
  if (!isOver(clients)) {
    world.network.events().after(pause, [&] { makeNoise(world, clients); });
  }
}

// Whatever came whole is one of the images, to the byte.
std::string checkFiles(const BootClient& client, const std::vector<Bytes>& images) {
  for (const Bytes& file : client.everything()) {
    if (std::find(images.begin(), images.end(), file) == images.end()) {
      return "a file of " + std::to_string(file.size()) + " bytes is none of the images";
    }
  }
  return {};
}

std::string bootOneMore(BootWorld& world, bool etherboot, const std::vector<Bytes>& images) {
  world.network.setFaults({});
  Random calm(1);
  BootClient client(world.network, planOf(9, etherboot, calm));
  world.network.events().after(60 * kSecond, [&] { client.start(); });
  world.run(60 * kSecond + kGoodWeather);
  if (!client.isDone()) return "afterwards a client could not boot";
  // A service that has seen a PXE client gives the boot program to everybody.
  if (!etherboot && client.files() != images) return "afterwards a client got other images";
  return checkFiles(client, images);
}

std::string runSeed(std::uint64_t seed) {
  Random random(seed);
  const Weather weather = weatherFrom(random);
  BootWorld world(seed, weather.faults);
  chooseImages(world, random);
  const std::vector<Bytes> images =
      weather.etherboot ? std::vector<Bytes>{world.etherbootImage()} : world.pxeImages();

  world.start();
  std::deque<BootClient> clients;
  for (std::size_t i = 0; i < weather.clients; ++i) {
    BootClient& client = clients.emplace_back(world.network, planOf(i, weather.etherboot, random));
    world.network.events().after(random.between(0, 10) * kSecond, [&client] { client.start(); });
  }
  if (weather.noise) makeNoise(world, clients);
  watch(world, clients);
  world.run(kBadWeather);

  for (const BootClient& client : clients) {
    const std::string wrong = checkFiles(client, images);
    if (!wrong.empty()) return wrong;
    if (!client.isDone() && !client.hasGivenUp()) return "a client neither booted nor gave up";
    const bool isCalm = weather.faults.loss == 0 && weather.faults.repetition == 0 &&
                        weather.faults.truncation == 0 && weather.faults.longestDelay == 50;
    if (isCalm && client.files() != images) return "without faults a client got other images";
  }
  return bootOneMore(world, weather.etherboot, images);
}

}  // namespace
}  // namespace omniset::sim

int main(int argc, char** argv) {
  return omniset::sim::runSeeds(argc, argv, "Boots PCs over a simulated network, once per seed.",
                                omniset::sim::runSeed);
}
