#include "cli/adapter_watch.h"

#include <utility>

namespace omniset {

AdapterWatch::AdapterWatch(std::string name, LocalAddresses& addresses)
    : name_(std::move(name)), addresses_(addresses), index_(present()) {}

std::uint32_t AdapterWatch::present() {
  if (name_.empty()) return 0;
  const auto rows = addresses_.list();
  return rows.empty() ? 0 : rows[0].index;
}

bool AdapterWatch::isReplaced() {
  const std::uint32_t now = present();
  return now != 0 && index_ != 0 && now != index_;
}

std::string replacedAdapterText(const std::string& shownName) {
  return "The adapter " + shownName +
         " was taken away and is back as a new one, on which this program hears nothing: start it "
         "again.";
}

}  // namespace omniset
