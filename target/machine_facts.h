// Reads the kernel's own tables of what the PC consists of (proc(5)).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace omniset {

// The text behind "key :" in the first line that begins with it, without blanks around it; empty
// when there is none.
std::string tableValue(std::string_view table, std::string_view key);

// From /proc/cpuinfo and /proc/meminfo, such as "Pentium III (Coppermine), 250 MB".
std::string describeMachine(std::string_view cpuInfo, std::string_view memInfo);

// The names in /proc/partitions that are whole disks, in their order: IDE and SATA disks, then
// virtio disks.
std::vector<std::string> diskNames(std::string_view partitions);

// The interfaces in /proc/net/dev, without the loopback one.
std::vector<std::string> interfaceNames(std::string_view netDev);

// Was the system started by a loader from a disk or a floppy, and not over the network?
bool wasBootedFromMedium(std::string_view commandLine);

}  // namespace omniset
