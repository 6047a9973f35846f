// Reads the kernel's own tables of what the PC consists of (proc(5)).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace omniset {

// The text behind "key :" in the first line that begins with it, without blanks around it; empty
// when there is none.
std::string tableValue(std::string_view table, std::string_view key);

// From /proc/cpuinfo and /proc/meminfo, such as "Pentium III (Coppermine), 250 MB".
std::string describeMachine(std::string_view cpuInfo, std::string_view memInfo);

// From /proc/meminfo, in bytes: what programs can have without anything else going short of it.
std::uint64_t availableMemory(std::string_view memInfo);

// The names in /proc/partitions that are whole disks, in their order: IDE and SATA disks, then
// virtio disks.
std::vector<std::string> diskNames(std::string_view partitions);

// The interfaces in /proc/net/dev, without the loopback one.
std::vector<std::string> interfaceNames(std::string_view netDev);

// Was the system started by a loader from a disk or a floppy, and not over the network?
bool wasBootedFromMedium(std::string_view commandLine);

// Is the disk that the system was started from to be installed with what is on it? "-hdd-install"
// stands on the kernel's command line as a word then.
bool installsOwnDisk(std::string_view commandLine);

// The serial number of the volume that a disk's loader started the system from: the last word
// "omniset.volume=1234ABCD" of the kernel's command line. None without it; raises Failure with a
// sentence when it is not of 8 hexadecimal digits.
std::optional<std::uint32_t> bootedVolumeNumber(std::string_view commandLine);

}  // namespace omniset
