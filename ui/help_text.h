// The operator's guide.
#pragma once

#include <string>

namespace omniset {

// Lines that end in CR LF; a section's heading is a line that ends in ":".
std::string helpText();

}  // namespace omniset
