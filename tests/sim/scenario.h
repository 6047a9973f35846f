// What a seed stands for: the network's faults, the targets and what happens to them, and the
// installations that the operator wants.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "core/clock.h"
#include "install/router_record.h"
#include "sim_network.h"

namespace omniset::sim {

// Package files on disk, made once and shared by all runs: their sizes lie around the edges of a
// chunk and beyond.
struct PackageFolder {
  std::string path;
  std::map<std::string, std::string> contents;  // by file name
  std::string scriptPath;                       // an operator's own script
  std::string scriptContent;
};

struct TargetPlan {
  MacAddress mac;
  Micros powerOn = 0;  // after the start of the run
  Micros preparationTime = 0;
  std::vector<Micros> restarts;    // moments at which the target starts over
  std::vector<Micros> diskFaults;  // moments after which one write fails
  std::vector<Micros> cancels;     // moments at which the operator cancels its session
  bool isPc = false;               // runs the installer system, and has a disk
  bool pressesKey = false;         // someone presses a key once everything is installed
  RouterRecord request;            // parameters and packages, without address and announcement
};

struct Scenario {
  std::uint64_t seed = 0;
  NetworkFaults faults;
  double foreignPerSecond = 0;  // datagrams of others, of any content
  int targetsPerComputer = 1;   // event loops are shared in large scenarios, to keep them quick
  bool askForReboot = true;
  bool unattended = false;  // one run of the command line, the same request for all
  bool troubled = false;    // targets restart, disks fail, the operator cancels
  std::vector<TargetPlan> targets;

  // Only the network is against us: then no session may fail.
  bool isPeaceful() const { return !troubled && foreignPerSecond == 0; }

  static Scenario fromSeed(std::uint64_t seed, const PackageFolder& packages);
};

}  // namespace omniset::sim
