#include "tests/contract/system_registry.h"
#include "tests/fakes/temp_folder.h"
#include "ui/registry_keys_posix.h"

namespace omniset::test {

namespace {

class FileInAFolder : public SystemRegistry {
 public:
  std::unique_ptr<RegistryKey> open(const std::string& path) override { return file_.open(path); }

 private:
  TempFolder folder_;
  FileRegistry file_{folder_.path() + "/settings.json"};
};

}  // namespace

std::unique_ptr<SystemRegistry> makeSystemRegistry() {
  return std::make_unique<FileInAFolder>();
}

}  // namespace omniset::test
