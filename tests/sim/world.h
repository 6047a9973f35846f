// One simulated run: the real installer and the real target sessions on a simulated network.
#pragma once

#include <string>

#include "scenario.h"

namespace omniset::sim {

// Runs the scenario to its end. Returns an empty text when all was as it must be, else what was
// not.
std::string runScenario(const Scenario& scenario, const PackageFolder& packages);

}  // namespace omniset::sim
