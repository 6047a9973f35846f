#include <windows.h>

#include "core/error.h"
#include "core/temp_file.h"

namespace omniset {

std::string SystemTempFiles::create(const char* prefix) {
  char folder[256];
  const DWORD length = GetTempPathA(sizeof folder, folder);
  if (length == 0 || length > sizeof folder) throw Error("GetTempPath");
  char path[MAX_PATH];
  if (GetTempFileNameA(folder, prefix, 0, path) == 0) throw Error("GetTempFileName");
  return path;
}

}  // namespace omniset
