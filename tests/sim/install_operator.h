// Who works the installer in a simulated run.
#pragma once

#include <functional>
#include <string>

#include "install/router_record.h"
#include "scenario.h"

namespace omniset::sim {

// Looks at a target's disk: returns an empty text when it holds exactly what the record asked for,
// else what is wrong.
using Inspect = std::function<std::string(const TargetPlan&, const RouterRecord&)>;

class InstallOperator {
 public:
  virtual ~InstallOperator() = default;

  // Called every quarter of a second.
  virtual void poll() = 0;
  virtual void cancel(const MacAddress& mac) = 0;
  // True when the target is to be installed and has no session.
  virtual bool isWaiting(const MacAddress& mac) const = 0;
  // The target is found installed, but its session ended before it could say so.
  virtual void foundInstalled(const MacAddress& mac) = 0;

  virtual bool done() const = 0;
  // The first thing that must not happen; empty if none did.
  const std::string& fault() const { return fault_; }

 protected:
  void report(const MacAddress& mac, const std::string& what) {
    if (fault_.empty()) fault_ = mac.text() + ": " + what;
  }

 private:
  std::string fault_;
};

}  // namespace omniset::sim
