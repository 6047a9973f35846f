// Notices that an adapter was taken away and came back: what was open on it hears nothing any more.
#pragma once

#include <cstdint>
#include <string>

#include "boot/local_address.h"

namespace omniset {

class AdapterWatch {
 public:
  // Remembers the adapter as it is now. The addresses are its own; an adapter without a name, as on
  // Windows, is not watched. They outlive this.
  AdapterWatch(std::string name, LocalAddresses& addresses);

  // The adapter that has the name now is another one. One that has lost its address may get it
  // back.
  bool isReplaced();

 private:
  std::uint32_t present();

  const std::string name_;
  LocalAddresses& addresses_;
  const std::uint32_t index_;
};

// What to do then.
std::string replacedAdapterText(const std::string& shownName);

}  // namespace omniset
