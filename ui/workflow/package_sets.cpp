#include "ui/workflow/package_sets.h"

#include <utility>

#include "core/trace.h"
#include "ui/string_list.h"

namespace omniset {

void PackageSets::load(Registry& key) {
  for (const std::string& name : key.valueNames()) {
    Packages packages = key.getStringList(name);
    if (packages.empty()) {
      traceLine("package set cannot be read: " + name);
    } else {
      replace(name, std::move(packages));
    }
  }
}

void PackageSets::store(Registry& key) const {
  for (const auto& [name, packages] : sets_) {
    if (packedStrings(packages).size() > Registry::kLongestRead) {
      traceLine("package set is too long to be read again: " + name);
    }
    key.setStringList(name, packages);
  }
}

const PackageSets::Packages* PackageSets::find(const std::string& name) const {
  const auto found = sets_.find(name);
  return found == sets_.end() ? nullptr : &found->second;
}

void PackageSets::add(const std::string& name, Packages packages) {
  sets_.emplace(name, std::move(packages));
}

bool PackageSets::replace(const std::string& name, Packages packages) {
  return sets_.insert_or_assign(name, std::move(packages)).second;
}

void PackageSets::erase(const std::string& name) {
  sets_.erase(name);
}

std::vector<std::string> PackageSets::names() const {
  std::vector<std::string> names;
  for (const auto& set : sets_) names.push_back(set.first);
  return names;
}

}  // namespace omniset
