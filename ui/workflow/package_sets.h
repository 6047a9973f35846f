// Named selections of packages, in memory and in the store of settings.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ui/registry.h"

namespace omniset {

// The set that holds the packages of the last installation that was started.
inline constexpr const char* kPreviousInstall = "Previous Install";

// Names are compared byte by byte. The store does not tell upper case from lower case: of two sets
// whose names differ in nothing else it keeps the last one in the order of names.
class PackageSets {
 public:
  using Packages = std::vector<std::string>;

  // Adds each set of the key. A value that has no packages, or more than can be read, is no set: it
  // leaves a trace and stays as it is in the store.
  void load(Registry& key);
  // Writes each set. One that will be too long to be read again is written too, and leaves a trace.
  void store(Registry& key) const;

  // Null when there is no such set. Valid until the set is changed or erased.
  const Packages* find(const std::string& name) const;
  // The name is new.
  void add(const std::string& name, Packages packages);
  // True when the name is new.
  bool replace(const std::string& name, Packages packages);
  void erase(const std::string& name);
  // In the order of their bytes.
  std::vector<std::string> names() const;

 private:
  std::map<std::string, Packages> sets_;
};

}  // namespace omniset
