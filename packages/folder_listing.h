// The package files of a folder.
#pragma once

#include <string>
#include <vector>

namespace omniset {

// The names, without the folder, of what matches "*.bdl" there without regard to case, in the
// order in which the system returns them; none when the folder cannot be read. The system's own
// matching decides on Windows, which takes short names into account too.
std::vector<std::string> listPackageFiles(const std::string& folder);

}  // namespace omniset
