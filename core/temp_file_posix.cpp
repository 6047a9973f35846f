#include <stdlib.h>
#include <unistd.h>

#include "core/error.h"
#include "core/temp_file.h"

namespace omniset {

std::string SystemTempFiles::create(const char* prefix) {
  const char* folder = getenv("TMPDIR");
  std::string path = folder && *folder ? folder : "/tmp";
  path.append("/").append(prefix).append("XXXXXX");
  const int file = mkstemp(path.data());
  if (file < 0) throw Error("GetTempFileName");
  close(file);
  return path;
}

}  // namespace omniset
