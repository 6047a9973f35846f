#include "scenario.h"

#include <algorithm>

#include "core/ipv4_address.h"
#include "random.h"

namespace omniset::sim {

namespace {

// Each waits on its cards by itself, which costs events; a crowd of them would be slow.
constexpr int kMostPcs = 4;

NetworkFaults chooseFaults(Random& random) {
  NetworkFaults faults;
  if (random.chance(0.1)) return faults;
  faults.loss = random.oneOf<double>({0, 0.01, 0.05, 0.1, 0.2, 0.3});
  faults.repetition = random.oneOf<double>({0, 0, 0.02, 0.1});
  faults.truncation = random.oneOf<double>({0, 0, 0.02});
  faults.longestDelay = random.oneOf<Micros>({50, 1000, 12'000, 60'000, 300'000});
  return faults;
}

int chooseTargetCount(Random& random) {
  if (random.chance(0.01)) return static_cast<int>(random.between(50, 300));
  if (random.chance(0.1)) return static_cast<int>(random.between(5, 20));
  return static_cast<int>(random.between(1, 4));
}

RouterRecord chooseRequest(Random& random, const PackageFolder& packages, bool small) {
  RouterRecord request;
  for (const auto& [name, content] : packages.contents) {
    const bool wanted = random.chance(small ? 0.1 : 0.35);
    if (wanted && (!small || content.size() < 5000)) request.packageFiles.push_back(name);
  }
  if (random.chance(0.7)) {
    request.address = ipv4(192, 168, 88, static_cast<std::uint8_t>(random.between(2, 250)));
    request.netmaskLength = static_cast<std::int32_t>(random.between(0, 30));
  }
  if (random.chance(0.5)) request.gateway = ipv4(192, 168, 88, 1);
  request.baudRate = 9600;
  request.keepConfiguration = random.chance(0.2);
  request.useOwnScript = random.chance(0.2);
  if (request.useOwnScript) request.scriptPath = packages.scriptPath;
  return request;
}

std::vector<Micros> chooseMoments(Random& random, double probability, Micros latest) {
  std::vector<Micros> moments;
  while (moments.size() < 3 && random.chance(probability)) {
    moments.push_back(random.between(0, latest));
  }
  std::sort(moments.begin(), moments.end());
  return moments;
}

MacAddress macOf(std::size_t index) {
  return {
      {0x02, 0x10, 0, 0, static_cast<std::uint8_t>(index >> 8), static_cast<std::uint8_t>(index)}};
}

}  // namespace

Scenario Scenario::fromSeed(std::uint64_t seed, const PackageFolder& packages) {
  Random random(seed * 0x9E3779B97F4A7C15 + 1);
  Scenario scenario;
  scenario.seed = seed;
  scenario.faults = chooseFaults(random);
  scenario.foreignPerSecond = random.oneOf<double>({0, 0, 1, 20});
  scenario.askForReboot = random.chance(0.8);
  const int count = chooseTargetCount(random);
  scenario.targetsPerComputer = count > 20 ? count / 8 : 1;
  scenario.unattended = random.chance(0.3);
  scenario.troubled = random.chance(0.3);
  for (int i = 0; i < count; ++i) {
    TargetPlan plan;
    plan.mac = macOf(static_cast<std::size_t>(i) + 1);
    plan.powerOn = random.between(0, 5 * kSecond);
    plan.preparationTime = random.oneOf<Micros>({0, kSecond / 3, 5 * kSecond, 200 * kSecond});
    const Micros busy = 20 * kSecond + plan.preparationTime;
    plan.restarts = chooseMoments(random, scenario.troubled ? 0.4 : 0, busy);
    plan.diskFaults = chooseMoments(random, scenario.troubled ? 0.1 : 0, busy);
    plan.cancels = chooseMoments(random, scenario.troubled ? 0.1 : 0, busy);
    plan.pressesKey = random.chance(0.1);
    plan.request = chooseRequest(random, packages, count > 20);
    plan.isPc = count <= kMostPcs && random.chance(0.3);
    scenario.targets.push_back(std::move(plan));
  }
  return scenario;
}

}  // namespace omniset::sim
