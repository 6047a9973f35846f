// Values by name. Names that differ only in the case of ASCII letters are the same name; the
// spelling of the first use and the order of first uses stay.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace omniset {

inline bool sameName(std::string_view a, std::string_view b) {
  const auto folded = [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : int{c}; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return folded(x) == folded(y); });
}

template <class Value>
class CaselessMap {
 public:
  using Entry = std::pair<std::string, Value>;

  // Null when there is none of that name. Valid until the map changes.
  const Value* find(std::string_view name) const {
    const auto at = position(entries_, name);
    return at == entries_.end() ? nullptr : &at->second;
  }
  // Makes one when there is none.
  Value& operator[](const std::string& name) {
    const auto at = position(entries_, name);
    return at == entries_.end() ? entries_.emplace_back(name, Value()).second : at->second;
  }
  bool erase(std::string_view name) {
    const auto at = position(entries_, name);
    if (at == entries_.end()) return false;
    entries_.erase(at);
    return true;
  }
  auto begin() const { return entries_.begin(); }
  auto end() const { return entries_.end(); }
  bool operator==(const CaselessMap&) const = default;

 private:
  template <class Entries>
  static auto position(Entries& entries, std::string_view name) {
    return std::find_if(entries.begin(), entries.end(),
                        [&](const Entry& entry) { return sameName(entry.first, name); });
  }

  std::vector<Entry> entries_;
};

}  // namespace omniset
