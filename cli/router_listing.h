// The list of routers as they announce themselves.
#pragma once

#include <map>
#include <ostream>
#include <string>

#include "install/router_record.h"

namespace omniset {

class RouterListing {
 public:
  RouterListing(std::ostream& out, bool json) : out_(out), json_(json) {}

  // Writes a line for a router that is new, or has another label than before.
  void announced(const RouterRecord& router);
  bool isEmpty() const { return labels_.empty(); }

 private:
  std::ostream& out_;
  bool json_;
  std::map<MacAddress, std::string> labels_;
};

}  // namespace omniset
