// Network booting as the operator deals with it: hands new settings to the service, and tells when
// the service cannot do what they say. All of it runs in the window's thread.
#pragma once

#include <string>

#include "boot/local_address.h"
#include "boot/pixie.h"
#include "ui/settings.h"
#include "ui/workflow/main_view.h"

namespace omniset {

// The boot service in its thread.
class BootServiceRun {
 public:
  virtual ~BootServiceRun() = default;
  // A new thread, in place of one that has ended. Raises Error.
  virtual void start(const PixieConfig& config) = 0;
  virtual void configure(const PixieConfig& config) = 0;
  // By itself, because the network failed it.
  virtual bool hasEnded() const = 0;
  // The text of the exception that ended it.
  virtual std::string reason() const = 0;
};

class NetBooting {
 public:
  // All of it is the owner's and outlives this; `settings` are those of the service, which has been
  // started with them.
  NetBooting(BootServerSettings& settings, BootServiceRun& service, LocalAddresses& addresses,
             Operator& person)
      : settings_(settings), service_(service), addresses_(addresses), person_(person) {}

  // The operator has entered these. A service that has ended is started again when they enable it.
  void changeSettings(const BootServerSettings& entered);

  // Tells, once, that the service has ended while it was enabled. For every tick of the timer at
  // which no other dialog is open; may be called while the operator is being told.
  void poll();

 private:
  void warnOfAddress();

  BootServerSettings& settings_;
  BootServiceRun& service_;
  LocalAddresses& addresses_;
  Operator& person_;
  bool endTold_ = false;
};

}  // namespace omniset
