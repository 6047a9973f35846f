// Drives in memory, whose every call can be made to fail, and a format command for them.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "media/format_command.h"
#include "media/media_services.h"
#include "media/volumes.h"
#include "tests/fakes/bytes_of.h"

namespace omniset::test {

struct FakeDrive {
  std::uint32_t type = 2;
  DriveFacts facts{64 << 20, "CARD", "FAT16 volume", "", 64 << 20};
  DriveSector firstSector{};
  std::map<std::string, Bytes> files;  // in its root folder

  bool operator==(const FakeDrive& other) const {
    return firstSector == other.firstSector && files == other.files;
  }
};

// What a call that is to fail does.
enum class Fault { kFails, kIsShort };

class FakeVolumes : public Volumes {
 public:
  // The first sector and the files of "letter:"; its physical disk has the number 1 for C, and so
  // on.
  std::map<char, FakeDrive> drives;
  std::map<std::string, Bytes> files;  // of this computer, by path
  SystemVersion system;
  std::string systemFolder = "c:\\windows\\system32";
  // "Read from device failed", and so on, for the call of this number from 0.
  int faultyCall = -1;
  Fault fault = Fault::kFails;
  // Changes what is written to a file on a drive or to "volume E", on its way.
  std::function<void(const std::string& name, Bytes& bytes)> corrupt;

  // Called with every call, of the format too.
  std::function<void()> onCall;

  std::vector<std::string> calls;  // "open volume E", "write E:\linux", ...
  int openDevices = 0;

  // Counts a call; true when it is the faulty one.
  bool isFaulty(const std::string& call);

  SystemVersion version() const override { return system; }
  std::string systemDirectory() override { return systemFolder; }
  std::vector<std::string> driveStrings() override;
  std::uint32_t driveType(const std::string& root) override;
  DriveFacts facts(const std::string& root) override;
  std::string rootPath(char letter) const override { return std::string(1, letter) + ":\\"; }
  DevicePtr openVolume(char letter) override;
  DevicePtr openPhysicalDisk(std::uint32_t number) override;
  bool flushVolume(char letter) override;
  DevicePtr createFile(const std::string& path, Creation creation) override;
  DevicePtr openFile(const std::string& path) override;
  // Only of a drive on which nothing was written since it was flushed.
  DevicePtr openWritten(const std::string& path) override;
  DevicePtr openWithoutAccess(const std::string& path) override;
  std::unique_ptr<AbsoluteDisk> openAbsoluteDisk() override;

 private:
  Bytes* find(const std::string& path);
  DevicePtr openNoted(const std::string& how, const std::string& path);
  bool isFlushed(char letter) const;
};

class FakeFormat : public FormatCommand {
 public:
  enum class Behaviour { kFormats, kHangs, kWaitFails, kCannotBeEnded, kDoesNothing };

  explicit FakeFormat(FakeVolumes& volumes) : volumes_(volumes) {}

  Behaviour behaviour = Behaviour::kFormats;
  std::string startFailure;  // text of the Failure that start() raises
  std::string output;        // that the command writes
  bool closes = true;

  std::vector<std::string> commandLines;
  std::string fed;
  int waitedMs = 0;
  int terminated = 0;
  int openProcesses = 0;

  FormatLine line(char letter) override;
  std::unique_ptr<FormatProcess> start(const FormatLine& line) override;

 private:
  class Process;

  FakeVolumes& volumes_;
  char letter_ = 0;
};

// What the format writes into the first sector: the bytes of the BIOS parameter block, and the
// signature; different for each format.
DriveSector formattedSector(int format);

// Images of a few bytes, different for each number.
BootImage fakeImage(int number);

// Both are the caller's and outlive the services.
MediaServices fakeServices(FakeVolumes& volumes, FakeFormat& format);

}  // namespace omniset::test
