// File paths in the system's form.
#pragma once

#include <filesystem>
#include <string>

namespace omniset {

// Folder and file name with the system's separator between them.
inline std::string joinPath(const std::string& folder, const std::string& name) {
  constexpr char kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);
  return folder + kSeparator + name;
}

}  // namespace omniset
