#include "media/volumes.h"

#include <windows.h>
#include <winioctl.h>

#include <algorithm>

#include "core/error.h"
#include "core/rest_win32.h"
#include "media/handle_win32.h"

namespace omniset {

namespace {

class HandleDevice : public Device {
 public:
  explicit HandleDevice(Win32Handle handle) : handle_(std::move(handle)) {}

  std::optional<std::size_t> read(std::span<std::uint8_t> into) override {
    const Rest rest;
    DWORD count = 0;
    if (!ReadFile(handle_.get(), into.data(), static_cast<DWORD>(into.size()), &count, nullptr)) {
      return std::nullopt;
    }
    return count;
  }
  std::optional<std::size_t> write(std::span<const std::uint8_t> from) override {
    const Rest rest;
    DWORD count = 0;
    if (!WriteFile(handle_.get(), from.data(), static_cast<DWORD>(from.size()), &count, nullptr)) {
      return std::nullopt;
    }
    return count;
  }

  bool seek(std::uint64_t offset) override {
    LARGE_INTEGER distance;
    distance.QuadPart = static_cast<LONGLONG>(offset);
    SetLastError(NO_ERROR);
    const DWORD low = SetFilePointer(handle_.get(), static_cast<LONG>(distance.LowPart),
                                     &distance.HighPart, FILE_BEGIN);
    return low != INVALID_SET_FILE_POINTER || GetLastError() == NO_ERROR;
  }

  std::optional<std::size_t> control(std::uint32_t code, std::span<const std::uint8_t> in,
                                     std::span<std::uint8_t> out) override {
    const Rest rest;
    DWORD length = 0;
    if (!DeviceIoControl(handle_.get(), code, const_cast<std::uint8_t*>(in.data()),
                         static_cast<DWORD>(in.size()), out.data(), static_cast<DWORD>(out.size()),
                         &length, nullptr)) {
      return std::nullopt;
    }
    return length;
  }

  std::optional<std::uint64_t> size() override {
    DWORD high = 0;
    SetLastError(NO_ERROR);
    const DWORD low = GetFileSize(handle_.get(), &high);
    if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) return std::nullopt;
    return std::uint64_t{high} << 32 | low;
  }

  bool close() override { return handle_.close(); }

  bool flush() {
    const Rest rest;
    return FlushFileBuffers(handle_.get());
  }

 private:
  Win32Handle handle_;
};

// Reads a file that was opened without the system's buffers: whole sectors, to whole pages. Such a
// read takes what is on the medium.
class UnbufferedFile : public HandleDevice {
 public:
  using HandleDevice::HandleDevice;

  std::optional<std::size_t> read(std::span<std::uint8_t> into) override {
    if (ready_.empty() && !fill()) return std::nullopt;
    const std::size_t count = std::min(into.size(), ready_.size());
    std::copy_n(ready_.begin(), count, into.begin());
    ready_ = ready_.subspan(count);
    return count;
  }

 private:
  static constexpr std::size_t kRoom = 256 * 1024;

  struct PageDeleter {
    void operator()(std::uint8_t* pages) const { VirtualFree(pages, 0, MEM_RELEASE); }
  };

  // Behind an end within a sector the system reads no more.
  bool fill() {
    if (ended_) return true;
    if (!pages_) {
      pages_.reset(static_cast<std::uint8_t*>(
          VirtualAlloc(nullptr, kRoom, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE)));
    }
    const auto count = pages_ ? HandleDevice::read({pages_.get(), kRoom}) : std::nullopt;
    if (!count) return false;
    ready_ = {pages_.get(), *count};
    ended_ = *count < kRoom;
    return true;
  }

  std::unique_ptr<std::uint8_t, PageDeleter> pages_;
  std::span<const std::uint8_t> ready_;
  bool ended_ = false;
};

template <class Opened = HandleDevice>
std::unique_ptr<Opened> openHandle(const std::string& path, DWORD access, DWORD creation,
                                   DWORD flags = 0) {
  Win32Handle handle(CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                 creation, flags, nullptr));
  return handle ? std::make_unique<Opened>(std::move(handle)) : nullptr;
}

std::string volumePath(char letter) {
  return std::string("\\\\.\\") + letter + ":";
}

// The system says what is wrong with a drive in a box of its own, unless it is told not to.
class QuietErrors {
 public:
  QuietErrors() : before_(SetErrorMode(SEM_FAILCRITICALERRORS)) {}
  ~QuietErrors() { SetErrorMode(before_); }
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;

 private:
  UINT before_;
};

class Vwin32 : public Volumes::AbsoluteDisk {
 public:
  explicit Vwin32(Win32Handle handle) : handle_(std::move(handle)) {}

  bool readSector(int drive, DriveSector& into) override { return call(kRead, drive, into.data()); }
  bool writeSector(int drive, const DriveSector& from) override {
    return call(kWrite, drive, const_cast<std::uint8_t*>(from.data()));
  }
  bool close() override { return handle_.close(); }

 private:
  static constexpr DWORD kRead = 2;
  static constexpr DWORD kWrite = 3;
  static constexpr DWORD kCarry = 1;

  struct Registers {
    DWORD ebx, edx, ecx, eax, edi, esi, flags;
  };
  struct __attribute__((packed)) Packet {
    DWORD sector;
    WORD count;
    DWORD buffer;
  };

  // Addresses of 32 bits: Windows 9x has no others.
  static DWORD address(void* pointer) {
    return static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(pointer));
  }

  bool call(DWORD code, int drive, std::uint8_t* buffer) {
    const Rest rest;
    Packet packet{0, 1, address(buffer)};
    Registers registers{};
    registers.eax = static_cast<DWORD>(drive);
    registers.ebx = address(&packet);
    registers.ecx = 0xFFFF;
    DWORD length = 0;
    return DeviceIoControl(handle_.get(), code, &registers, sizeof registers, &registers,
                           sizeof registers, &length, nullptr) &&
           (registers.flags & kCarry) == 0;
  }

  Win32Handle handle_;
};

// A device that is not open tells nothing.
template <class Answer>
std::optional<Answer> asked(HandleDevice* device, DWORD code) {
  Answer answer{};
  if (!device ||
      !device->control(code, {}, {reinterpret_cast<std::uint8_t*>(&answer), sizeof answer})) {
    return std::nullopt;
  }
  return answer;
}

// Older systems know the geometry alone, and Windows 9x the room for files alone.
std::uint64_t capacity(const std::string& root) {
  const auto volume = openHandle(volumePath(root.front()), GENERIC_READ, OPEN_EXISTING);
  if (const auto length = asked<GET_LENGTH_INFORMATION>(volume.get(), IOCTL_DISK_GET_LENGTH_INFO)) {
    return static_cast<std::uint64_t>(length->Length.QuadPart);
  }
  if (const auto shape = asked<DISK_GEOMETRY>(volume.get(), IOCTL_DISK_GET_DRIVE_GEOMETRY)) {
    return static_cast<std::uint64_t>(shape->Cylinders.QuadPart) * shape->TracksPerCylinder *
           shape->SectorsPerTrack * shape->BytesPerSector;
  }
  ULARGE_INTEGER bytes{};
  return GetDiskFreeSpaceExA(root.c_str(), nullptr, &bytes, nullptr) ? bytes.QuadPart : 0;
}

// Of a volume on a disk that has partitions. Asking takes no rights.
std::optional<STORAGE_DEVICE_NUMBER> placeOf(char letter) {
  const auto volume = openHandle(volumePath(letter), 0, OPEN_EXISTING);
  const auto place = asked<STORAGE_DEVICE_NUMBER>(volume.get(), IOCTL_STORAGE_GET_DEVICE_NUMBER);
  constexpr DWORD kNoPartitions = 0xFFFFFFFF;
  const bool isOnDisk =
      place && place->DeviceType == FILE_DEVICE_DISK && place->PartitionNumber != kNoPartitions;
  return isOnDisk ? place : std::nullopt;
}

bool isOnSameDisk(const STORAGE_DEVICE_NUMBER& place, char letter) {
  const auto other = placeOf(letter);
  return other && other->DeviceNumber == place.DeviceNumber &&
         other->PartitionNumber != place.PartitionNumber;
}

// Partitions without letters too: those that start systems have none.
bool hasOtherPartitions(const STORAGE_DEVICE_NUMBER& place) {
  constexpr std::size_t kMostPartitions = 128;
  union {
    DRIVE_LAYOUT_INFORMATION layout;
    std::uint8_t
        bytes[sizeof(DRIVE_LAYOUT_INFORMATION) + kMostPartitions * sizeof(PARTITION_INFORMATION)];
  } answer{};
  const auto disk = openHandle("\\\\.\\PHYSICALDRIVE" + std::to_string(place.DeviceNumber),
                               GENERIC_READ, OPEN_EXISTING);
  if (!disk || !disk->control(IOCTL_DISK_GET_DRIVE_LAYOUT, {}, answer.bytes)) return false;
  const DWORD count = std::min<DWORD>(answer.layout.PartitionCount, kMostPartitions);
  const PARTITION_INFORMATION* partitions = answer.layout.PartitionEntry;
  return std::any_of(partitions, partitions + count, [&](const PARTITION_INFORMATION& partition) {
    return partition.PartitionType != PARTITION_ENTRY_UNUSED &&
           !IsContainerPartition(partition.PartitionType) &&
           partition.PartitionNumber != place.PartitionNumber;
  });
}

// The disk's partition table is wiped, and with it goes everything else on that disk.
std::string neighbourObstacle(const std::string& root, char systemDrive,
                              const std::vector<std::string>& roots) {
  const auto place = placeOf(root.front());
  if (!place) return {};
  if (isOnSameDisk(*place, systemDrive)) return "it is on the disk that the system runs from";
  for (const std::string& other : roots) {
    const UINT type = GetDriveTypeA(other.c_str());
    if ((type == DRIVE_FIXED || type == DRIVE_REMOVABLE) && isOnSameDisk(*place, other.front())) {
      return "the drive " + other + " is on the same disk and would be lost with it";
    }
  }
  if (hasOtherPartitions(*place)) {
    return "another partition is on the same disk and would be lost with it";
  }
  return {};
}

std::string programObstacle(const std::string& root) {
  char program[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, program, sizeof program);
  const bool isThere =
      CompareStringA(LOCALE_INVARIANT, NORM_IGNORECASE, program, 1, root.c_str(), 1) == CSTR_EQUAL;
  return isThere ? "this program runs from it" : "";
}

std::string writingObstacle(const std::string& root) {
  const auto volume =
      openHandle(volumePath(root.front()), GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
  if (!volume) {
    return GetLastError() == ERROR_ACCESS_DENIED
               ? "you may not write to it; start this program as an administrator"
               : "";
  }
  if (!volume->control(IOCTL_DISK_IS_WRITABLE, {}, {}) && GetLastError() == ERROR_WRITE_PROTECT) {
    return "it is write-protected";
  }
  return {};
}

class WindowsVolumes : public Volumes {
 public:
  SystemVersion version() const override {
    OSVERSIONINFOA info{};
    info.dwOSVersionInfoSize = sizeof info;
    if (!GetVersionExA(&info)) return {};
    return {info.dwPlatformId == VER_PLATFORM_WIN32_NT, info.dwMajorVersion, info.dwMinorVersion};
  }

  std::string systemDirectory() override {
    char folder[512] = "";
    const UINT length = GetSystemDirectoryA(folder, sizeof folder);
    if (length == 0 || length >= sizeof folder) throw Error("GetSystemDirectory");
    return folder;
  }

  std::vector<std::string> driveStrings() override {
    char strings[512] = "";
    const DWORD length = GetLogicalDriveStringsA(sizeof strings, strings);
    if (length == 0 || length >= sizeof strings) throw Error("GetLogicalDriveStrings");
    std::vector<std::string> roots;
    for (const char* root = strings; *root != '\0'; root += roots.back().size() + 1) {
      roots.emplace_back(root);
    }
    return roots;
  }

  std::uint32_t driveType(const std::string& root) override { return GetDriveTypeA(root.c_str()); }

  DriveFacts facts(const std::string& root) override {
    const QuietErrors quiet;
    DriveFacts facts;
    facts.bytes = capacity(root);
    facts.mostUsed = facts.bytes;
    char label[MAX_PATH] = "";
    char fileSystem[MAX_PATH] = "";
    if (GetVolumeInformationA(root.c_str(), label, sizeof label, nullptr, nullptr, nullptr,
                              fileSystem, sizeof fileSystem)) {
      facts.label = label;
      facts.contents = std::string(fileSystem) + " volume";
    }
    facts.obstacle = neighbourObstacle(root, systemDirectory().front(), driveStrings());
    if (facts.obstacle.empty()) facts.obstacle = programObstacle(root);
    if (facts.obstacle.empty()) facts.obstacle = writingObstacle(root);
    return facts;
  }

  std::string rootPath(char letter) const override { return std::string(1, letter) + ":\\"; }

  DevicePtr openVolume(char letter) override {
    return openHandle(volumePath(letter), GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
  }
  DevicePtr openPhysicalDisk(std::uint32_t number) override {
    return openHandle("\\\\.\\PHYSICALDRIVE" + std::to_string(number), GENERIC_READ | GENERIC_WRITE,
                      OPEN_EXISTING);
  }

  // Windows 9x has no such volumes.
  bool flushVolume(char letter) override {
    if (!version().isNt) return true;
    const auto volume = openHandle(volumePath(letter), GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
    return volume && volume->flush();
  }

  DevicePtr createFile(const std::string& path, Creation creation) override {
    return openHandle(path, GENERIC_WRITE, creation == Creation::kNew ? CREATE_NEW : CREATE_ALWAYS);
  }
  DevicePtr openFile(const std::string& path) override {
    return openHandle(path, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN);
  }
  DevicePtr openWritten(const std::string& path) override {
    if (auto file =
            openHandle<UnbufferedFile>(path, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_NO_BUFFERING)) {
      return file;
    }
    return openFile(path);
  }
  DevicePtr openWithoutAccess(const std::string& path) override {
    return openHandle(path, 0, OPEN_EXISTING);
  }

  std::unique_ptr<AbsoluteDisk> openAbsoluteDisk() override {
    Win32Handle handle(CreateFileA("\\\\.\\vwin32", GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                   OPEN_EXISTING, FILE_FLAG_WRITE_THROUGH, nullptr));
    return handle ? std::make_unique<Vwin32>(std::move(handle)) : nullptr;
  }
};

}  // namespace

std::unique_ptr<Volumes> makeSystemVolumes(const DeviceOfLetter&) {
  return std::make_unique<WindowsVolumes>();
}

}  // namespace omniset
