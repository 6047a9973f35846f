#include "target/disk/fat_boot_sector.h"

#include <bit>
#include <string_view>

#include "core/byte_cursor.h"
#include "core/error.h"

namespace omniset {

namespace {

constexpr std::string_view kBegun = "Omniset has begun to install this disk.\r\n";
constexpr std::string_view kMaker = "OMNISET ";

constexpr std::size_t kMakerAt = 3;
constexpr std::size_t kCodeAt = 62;
constexpr std::size_t kEndMarkAt = 510;
constexpr std::uint16_t kEndMark = 0xAA55;
constexpr std::uint8_t kFixedDisk = 0xF8;
constexpr std::uint8_t kFloppy = 0xF0;
constexpr std::uint8_t kExtendedSignature = 0x29;

void putParameters(ByteWriter& out, const Fat16Plan& plan, std::uint32_t hiddenSectors) {
  constexpr std::uint16_t kTrackSectors = 63;
  constexpr std::uint16_t kHeads = 255;
  const bool isSmall = plan.sectors < 65536;
  out.u16le(kSectorSize);
  out.u8(static_cast<std::uint8_t>(plan.clusterSectors));
  out.u16le(static_cast<std::uint16_t>(kFat16ReservedSectors));
  out.u8(static_cast<std::uint8_t>(kFat16Tables));
  out.u16le(static_cast<std::uint16_t>(kFat16RootEntries));
  out.u16le(static_cast<std::uint16_t>(isSmall ? plan.sectors : 0));
  out.u8(kFixedDisk);
  out.u16le(static_cast<std::uint16_t>(plan.tableSectors));
  out.u16le(kTrackSectors);
  out.u16le(kHeads);
  out.u32le(hiddenSectors);
  out.u32le(isSmall ? 0 : plan.sectors);
}

bool isPowerOfTwo(unsigned value, unsigned from, unsigned to) {
  return value >= from && value <= to && std::has_single_bit(value);
}

}  // namespace

Sector makeFat16BootSector(std::span<const std::uint8_t> bootCode, const Fat16Plan& plan,
                           std::uint32_t hiddenSectors, std::uint32_t serialNumber) {
  if (bootCode.size() > kVolumeCodeLength)
    throw Failure("The boot code of the volume is too long.");
  Sector sector{};
  ByteWriter out(sector);
  out.u8(0xEB);  // a short jump to the code
  out.u8(kCodeAt - 2);
  out.u8(0x90);
  out.put(kMaker);
  putParameters(out, plan, hiddenSectors);
  out.u8(0x80);  // the BIOS number of the first fixed disk
  out.u8(0);
  out.u8(kExtendedSignature);
  out.u32le(serialNumber);
  out.put(kFat16Label);
  out.put(std::string_view("FAT16   "));
  out.put(bootCode);
  ByteWriter(std::span(sector).subspan(kEndMarkAt)).u16le(kEndMark);
  return sector;
}

Sector makeBegunSector() {
  Sector sector{};
  ByteWriter(sector).put(kBegun);
  return sector;
}

bool looksLikeFat(std::span<const std::uint8_t, kSectorSize> sector) {
  if (ByteReader(sector.subspan(kEndMarkAt)).u16le() != kEndMark) return false;
  ByteReader in(sector);
  const std::uint8_t jump = in.u8();
  in.take(10);
  const unsigned sectorSize = in.u16le();
  const unsigned clusterSectors = in.u8();
  const unsigned reservedSectors = in.u16le();
  const unsigned tables = in.u8();
  in.take(4);
  const std::uint8_t medium = in.u8();
  return (jump == 0xEB || jump == 0xE9) && isPowerOfTwo(sectorSize, 512, 4096) &&
         isPowerOfTwo(clusterSectors, 1, 128) && reservedSectors > 0 && tables > 0 &&
         (medium >= kFixedDisk || medium == kFloppy);
}

bool isOurVolume(std::span<const std::uint8_t, kSectorSize> sector) {
  return asText(sector).starts_with(kBegun) ||
         (looksLikeFat(sector) && asText(sector.subspan(kMakerAt)).starts_with(kMaker));
}

}  // namespace omniset
