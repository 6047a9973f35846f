// A target of a run, as the world around it sees it.
#pragma once

#include <map>
#include <string>

#include "target/target_console.h"
#include "target/target_session.h"

namespace omniset::sim {

class SilentConsole : public TargetConsole {
 public:
  void say(const MacAddress& /*target*/, const std::string& /*sentence*/) override {}
};

class SimTarget {
 public:
  virtual ~SimTarget() = default;

  // Starts its event loop, switched off.
  virtual void start() = 0;
  virtual void powerOn() = 0;
  virtual void cutPower() = 0;
  // The next write to its disk fails.
  virtual void failNextWrite() = 0;
  virtual void pressKey() = 0;

  // The session of its installation; null when it has none.
  virtual const TargetSession* session() const = 0;
  // The files that would be there after a power cut now and belong to a complete installation.
  virtual std::map<std::string, std::string> files() const = 0;
  // What the last offer said.
  virtual bool keptConfiguration() const = 0;
  // What it did that it must not do; empty when all is well.
  virtual std::string fault() const { return {}; }
};

}  // namespace omniset::sim
