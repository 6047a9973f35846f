#include "ui/workflow/request_defaults.h"

namespace omniset {

void RequestDefaults::fill(RouterRecord& record) const {
  if (record.kind != kLocalDrive) {
    record.keepConfiguration = parameters_.keepConfiguration;
    record.address = parameters_.address;
    record.netmaskLength = parameters_.netmaskLength;
    record.gateway = parameters_.gateway;
  }
  record.baudRate = parameters_.baudRate;
  record.useOwnScript = parameters_.useScript;
  record.scriptPath = parameters_.scriptFile;
  const auto* previous = sets_.find(kPreviousInstall);
  record.packages = previous ? *previous : std::vector<std::string>();
}

void RequestDefaults::remember(const RouterRecord& record) {
  if (record.kind != kLocalDrive) {
    parameters_.keepConfiguration = record.keepConfiguration;
    parameters_.address = record.address;
    parameters_.netmaskLength = record.netmaskLength;
    parameters_.gateway = record.gateway;
  }
  parameters_.baudRate = record.baudRate;
  parameters_.useScript = record.useOwnScript;
  parameters_.scriptFile = record.scriptPath;
}

}  // namespace omniset
