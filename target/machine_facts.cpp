#include "target/machine_facts.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <tuple>

#include "core/error.h"

namespace omniset {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kBetweenWords = " \t\n";
constexpr std::string_view kOwnDiskWord = "-hdd-install";
constexpr std::string_view kVolumeKey = "omniset.volume=";

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

// Cuts the first line off.
std::string_view takeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  return line;
}

// Cuts the first word off; empty at the end.
std::string_view takeWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBetweenWords), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(kBetweenWords));
  text.remove_prefix(word.size());
  return word;
}

bool isWholeDisk(std::string_view name) {
  if (!name.starts_with("sd") && !name.starts_with("vd")) return false;
  return name.size() > 2 &&
         std::all_of(name.begin() + 2, name.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

// The kernel lists disks as their drivers happened to finish; their names tell the order in which
// they are connected.
bool comesBefore(const std::string& one, const std::string& other) {
  const auto rank = [](const std::string& name) {
    return std::tuple(std::string_view(name).substr(0, 1), name.size(), std::string_view(name));
  };
  return rank(one) < rank(other);
}

}  // namespace

std::string tableValue(std::string_view table, std::string_view key) {
  while (!table.empty()) {
    const std::string_view line = takeLine(table);
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || trimmed(line.substr(0, colon)) != key) continue;
    return std::string(trimmed(line.substr(colon + 1)));
  }
  return {};
}

std::string describeMachine(std::string_view cpuInfo, std::string_view memInfo) {
  std::string processor = tableValue(cpuInfo, "model name");
  if (processor.empty()) processor = "unknown processor";
  const long kilobytes = std::strtol(tableValue(memInfo, "MemTotal").c_str(), nullptr, 10);
  return processor + ", " + std::to_string(kilobytes / 1024) + " MB";
}

std::uint64_t availableMemory(std::string_view memInfo) {
  return std::strtoul(tableValue(memInfo, "MemAvailable").c_str(), nullptr, 10) *
         std::uint64_t{1024};
}

std::vector<std::string> diskNames(std::string_view partitions) {
  std::vector<std::string> names;
  while (!partitions.empty()) {
    const std::string_view line = trimmed(takeLine(partitions));
    const std::string_view name = line.substr(line.find_last_of(kBlanks) + 1);
    if (isWholeDisk(name)) names.emplace_back(name);
  }
  std::sort(names.begin(), names.end(), comesBefore);
  return names;
}

std::vector<std::string> interfaceNames(std::string_view netDev) {
  std::vector<std::string> names;
  while (!netDev.empty()) {
    const std::string_view line = takeLine(netDev);
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    const std::string_view name = trimmed(line.substr(0, colon));
    if (name != "lo") names.emplace_back(name);
  }
  return names;
}

// The loaders of disks and floppies say so on the kernel's command line.
bool wasBootedFromMedium(std::string_view commandLine) {
  return commandLine.find("load_ramdisk=1") != std::string_view::npos ||
         commandLine.find(kOwnDiskWord) != std::string_view::npos;
}

bool installsOwnDisk(std::string_view commandLine) {
  for (auto word = takeWord(commandLine); !word.empty(); word = takeWord(commandLine)) {
    if (word == kOwnDiskWord) return true;
  }
  return false;
}

std::optional<std::uint32_t> bootedVolumeNumber(std::string_view commandLine) {
  std::string_view told;
  for (auto word = takeWord(commandLine); !word.empty(); word = takeWord(commandLine)) {
    if (word.starts_with(kVolumeKey)) told = word;
  }
  if (told.empty()) return {};
  std::uint32_t number = 0;
  const std::string_view digits = told.substr(kVolumeKey.size());
  const char* const last = digits.data() + digits.size();
  if (digits.size() == 8 && std::from_chars(digits.data(), last, number, 16).ptr == last) {
    return number;
  }
  throw Failure("The kernel's command line does not tell which disk this PC was started from: \"" +
                std::string(told) +
                "\" has to have 8 hexadecimal digits. Start this PC from the disk by the loader on "
                "it. Nothing was changed on any disk.");
}

}  // namespace omniset
