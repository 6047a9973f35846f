// What the installation of a new target starts with: the parameters and the packages of the last
// installation that was started.
#pragma once

#include "install/router_record.h"
#include "ui/settings.h"
#include "ui/workflow/package_sets.h"

namespace omniset {

class RequestDefaults {
 public:
  // Both are the owner's and outlive this.
  RequestDefaults(RememberedParameters& parameters, const PackageSets& sets)
      : parameters_(parameters), sets_(sets) {}

  // Replaces the record's request; the target itself and its state stay. A local drive has neither
  // an address nor a configuration to keep.
  void fill(RouterRecord& record) const;
  // The parameters of a request that is being started. (Its packages are remembered as a set.)
  void remember(const RouterRecord& record);

 private:
  RememberedParameters& parameters_;
  const PackageSets& sets_;
};

}  // namespace omniset
