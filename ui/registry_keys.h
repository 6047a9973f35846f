// The store of settings: keys with named values, per user. Names of keys and values are compared
// without regard to the case of ASCII letters and keep the spelling that they were first given.
// Every operation takes effect at once, for other programs too. A store may be used by one thread
// at a time; several programs may use it together.
//
// An operation that fails says so by its result and sets the thread's last error code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace omniset {

// What a value's bytes mean. A store may hold further types, which are passed on as they are.
enum class RegistryType : std::uint32_t {
  kString = 1,      // characters and a NUL
  kBytes = 3,       // anything
  kInteger = 4,     // 32 bits, little-endian
  kStringList = 7,  // strings with their NULs, and a NUL behind the last
};

// An open key.
class RegistryKey {
 public:
  virtual ~RegistryKey() = default;  // closes the key if that was not done

  // The key of that name below this one, created when missing. Null when it cannot be opened.
  virtual std::unique_ptr<RegistryKey> openSubKey(const std::string& name) = 0;
  // Creates or replaces a value.
  virtual bool write(const std::string& name, RegistryType type,
                     std::span<const std::uint8_t> data) = 0;
  // Nothing when the value is absent.
  virtual std::optional<RegistryType> typeOf(const std::string& name) = 0;
  // Fills the front of the buffer with a value's bytes and returns their number. Nothing when the
  // value is absent or larger than the buffer, whose content is undefined then.
  virtual std::optional<std::size_t> read(const std::string& name,
                                          std::span<std::uint8_t> buffer) = 0;
  // The names of all values, in the store's order.
  virtual std::vector<std::string> valueNames() = 0;
  virtual bool remove(const std::string& name) = 0;
  // To be called once at most, and nothing else afterwards.
  virtual bool close() = 0;
};

// A store's top.
class RegistryRoot {
 public:
  virtual ~RegistryRoot() = default;
  // The key at a path, whose steps are separated by backslashes; created when missing. Null when it
  // cannot be opened. The key does not need the root any more.
  virtual std::unique_ptr<RegistryKey> open(const std::string& path) = 0;
};

// The present user's store in this system.
class UserRegistry : public RegistryRoot {
 public:
  std::unique_ptr<RegistryKey> open(const std::string& path) override;
};

}  // namespace omniset
