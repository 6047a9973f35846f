// One open key of the store of settings, with typed values. Meant to live for one batch of reads or
// writes. What fails raises an Error that begins with the name of the system's call; reads that
// take or imply a default do not fail.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "ui/registry_keys.h"

namespace omniset {

class Registry {
 public:
  // What a string or a list may take up in the store, with its NULs; longer ones can be written but
  // not be read.
  static constexpr std::size_t kLongestRead = 4096;

  // Open the key, creating it when missing. Nothing of the root or the parent is needed later.
  Registry(RegistryRoot& root, const std::string& path);
  Registry(Registry& parent, const std::string& subKey);
  // Closes the key. A failure only leaves a trace here; call close() to have it raised.
  ~Registry();
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;

  // Ends the batch. Only the destructor may follow.
  void close();

  void setInteger(const std::string& name, std::int32_t value);
  // Strings end at their first NUL, here and in lists.
  void setString(const std::string& name, const std::string& value);
  // Empty strings, which would end the stored list, are left out.
  void setStringList(const std::string& name, const std::vector<std::string>& values);
  void setBytes(const std::string& name, std::span<const std::uint8_t> value);

  // Raises when there is no such value.
  RegistryType getType(const std::string& name);
  // Any value of four bytes is an integer, whatever its type; without one the default.
  std::int32_t getInteger(const std::string& name, std::int32_t absent);
  std::string getString(const std::string& name, const std::string& absent);
  // Empty when there is no such value, or it is too long.
  std::vector<std::string> getStringList(const std::string& name);

  std::vector<std::string> valueNames();
  // No value of that name is no failure, and neither is one that cannot be deleted.
  void deleteValue(const std::string& name);

 private:
  void write(const char* failure, const std::string& name, RegistryType type,
             std::span<const std::uint8_t> data);

  std::unique_ptr<RegistryKey> key_;
};

}  // namespace omniset
