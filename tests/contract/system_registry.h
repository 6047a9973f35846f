// The system's store of settings, for tests.
#pragma once

#include <memory>

#include "ui/registry_keys.h"

namespace omniset::test {

// A part of the system's store that is empty at first and goes away with this.
class SystemRegistry : public RegistryRoot {};

std::unique_ptr<SystemRegistry> makeSystemRegistry();

}  // namespace omniset::test
