#include "media/format_command.h"

namespace omniset {

FormatLine windowsFormatLine(const SystemVersion& version, const std::string& folder, char letter) {
  const std::string drive(1, letter);
  if (version.isNt) {
    const std::string program = folder + "\\format.com";
    return {program, program + " " + drive + ": /FS:FAT /Q /X /V:"};
  }
  const std::string program = folder + "\\Command\\format.com";
  return {program, program + " " + drive + ": /Q /V:xxx"};
}

}  // namespace omniset
