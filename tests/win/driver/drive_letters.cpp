#include "tests/win/driver/drive_letters.h"

#include <winioctl.h>

#include <cstring>
#include <vector>

#include "tests/win/driver/messages.h"
#include "tests/win/driver/waiting.h"

namespace omniset::test {

namespace {

constexpr DWORD kDefineDrive =
    CTL_CODE('m', 32, METHOD_BUFFERED, FILE_READ_ACCESS | FILE_WRITE_ACCESS);

// What Wine's mount manager takes; the texts lie behind it.
struct DriveDefinition {
  ULONG size;
  ULONG type;
  ULONG fileSystem;
  DWORD serial;
  ULONGLONG device;
  WCHAR letter;
  USHORT folderOffset;
  USHORT imageOffset;
  USHORT labelOffset;
};

USHORT append(std::vector<char>& block, const std::string& text) {
  if (text.empty()) return 0;
  const auto offset = static_cast<USHORT>(block.size());
  block.insert(block.end(), text.c_str(), text.c_str() + text.size() + 1);
  return offset;
}

void define(char letter, UINT type, const std::string& folder, const std::string& image) {
  std::vector<char> block(sizeof(DriveDefinition));
  DriveDefinition definition{};
  definition.type = type;
  definition.letter = static_cast<WCHAR>(letter);
  definition.folderOffset = append(block, folder);
  definition.imageOffset = append(block, image);
  definition.size = static_cast<ULONG>(block.size());
  std::memcpy(block.data(), &definition, sizeof definition);
  const HANDLE manager = CreateFileA("\\\\.\\MountPointManager", GENERIC_READ | GENERIC_WRITE, 0,
                                     nullptr, OPEN_EXISTING, 0, nullptr);
  DWORD length = 0;
  const bool done = manager != INVALID_HANDLE_VALUE &&
                    DeviceIoControl(manager, kDefineDrive, block.data(), definition.size, nullptr,
                                    0, &length, nullptr);
  const DWORD error = GetLastError();
  CloseHandle(manager);
  if (!done && type != DRIVE_NO_ROOT_DIR) {
    throw WindowFault(std::string("no drive ") + letter + ", error " + std::to_string(error));
  }
}

}  // namespace

void attachDrive(char letter, UINT type, const std::string& folder, const std::string& image) {
  define(letter, type, folder, image);
}

void detachDrive(char letter) {
  define(letter, DRIVE_NO_ROOT_DIR, "", "");
}

void announceDrive(HWND window, WPARAM event, char letter) {
  DEV_BROADCAST_VOLUME volume{};
  volume.dbcv_size = sizeof volume;
  volume.dbcv_devicetype = DBT_DEVTYP_VOLUME;
  volume.dbcv_unitmask = 1u << (letter - 'A');
  ask(window, WM_DEVICECHANGE, event, asParameter(&volume));
}

}  // namespace omniset::test
