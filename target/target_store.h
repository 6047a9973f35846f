// Where a target puts what it receives. A store that cannot do what is asked raises an exception
// derived from std::exception with a sentence for the console.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace omniset {

class TargetStore {
 public:
  virtual ~TargetStore() = default;

  // Starts to make the store ready for the files of an installation; `keepConfiguration` asks to
  // leave what an earlier installation put there.
  virtual void beginPreparation(bool keepConfiguration) = 0;
  // True once the store is ready. Called again and again after beginPreparation().
  virtual bool isPrepared() = 0;

  // Files come one after another. `name` is whatever the network said; `size` is in bytes.
  virtual void openFile(const std::string& name, std::int32_t size) = 0;
  virtual void write(std::span<const std::uint8_t> bytes) = 0;
  // Makes the open file count: until then the store holds no file of that name, or the old one.
  virtual void closeFile() = 0;
  // Makes the installation count: every file that came since the preparation is safe when this
  // returns, whatever happens to the power. Should another file come all the same, the installation
  // no longer counts until this is called again.
  virtual void finish() = 0;
  // Drops a file that is not complete, if there is one, and lets go of the medium.
  virtual void abandon() = 0;
};

}  // namespace omniset
