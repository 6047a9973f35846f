#include "tests/fakes/fake_volumes.h"

#include <algorithm>

#include "core/byte_cursor.h"
#include "core/error.h"
#include "core/format_text.h"

namespace omniset::test {

namespace {

std::uint32_t diskNumber(char letter) {
  return static_cast<std::uint32_t>(letter - 'C' + 1);
}

// Files and first sectors alike: some bytes with a position.
class FakeDevice : public Device {
 public:
  FakeDevice(FakeVolumes& volumes, std::string name, char letter = 0)
      : volumes_(volumes), name_(std::move(name)), letter_(letter) {
    ++volumes_.openDevices;
  }
  ~FakeDevice() override { release(); }

  std::optional<std::size_t> read(std::span<std::uint8_t> into) override {
    const bool faulty = volumes_.isFaulty("read " + name_);
    if (faulty && volumes_.fault == Fault::kFails) return std::nullopt;
    std::size_t count = std::min(into.size(), bytes().size() - std::min(at_, bytes().size()));
    if (faulty) count /= 2;
    std::copy_n(bytes().begin() + static_cast<std::ptrdiff_t>(at_), count, into.begin());
    at_ += count;
    return count;
  }

  std::optional<std::size_t> write(std::span<const std::uint8_t> from) override {
    const bool faulty = volumes_.isFaulty("write " + name_);
    if (faulty && volumes_.fault == Fault::kFails) return std::nullopt;
    const std::size_t count = faulty ? from.size() / 2 : from.size();
    put(from.first(count));
    at_ += count;
    return count;
  }

  bool seek(std::uint64_t offset) override {
    if (volumes_.isFaulty("seek " + name_)) return false;
    at_ = static_cast<std::size_t>(offset);
    return true;
  }

  std::optional<std::size_t> control(std::uint32_t code, std::span<const std::uint8_t>,
                                     std::span<std::uint8_t> out) override {
    const bool faulty = volumes_.isFaulty(formatText("control %x %s", code, name_.c_str()));
    if (faulty && volumes_.fault == Fault::kFails) return std::nullopt;
    ByteWriter writer(out);
    writer.u32le(7);
    writer.u32le(diskNumber(letter_));
    writer.u32le(2);
    return faulty ? 8 : 12;
  }

  std::optional<std::uint64_t> size() override {
    if (volumes_.isFaulty("size " + name_)) return std::nullopt;
    return bytes().size();
  }

  bool close() override {
    const bool faulty = volumes_.isFaulty("close " + name_);
    release();
    return !faulty;
  }

 protected:
  virtual std::span<const std::uint8_t> bytes() = 0;
  virtual void put(std::span<const std::uint8_t> from) = 0;

  FakeVolumes& volumes_;
  std::string name_;
  std::size_t at_ = 0;

 private:
  void release() {
    if (isOpen_) --volumes_.openDevices;
    isOpen_ = false;
  }

  char letter_;
  bool isOpen_ = true;
};

class FakeFile : public FakeDevice {
 public:
  FakeFile(FakeVolumes& volumes, const std::string& path, Bytes& file)
      : FakeDevice(volumes, path), file_(file) {}

 private:
  std::span<const std::uint8_t> bytes() override { return file_; }
  void put(std::span<const std::uint8_t> from) override {
    Bytes changed(from.begin(), from.end());
    if (volumes_.corrupt) volumes_.corrupt(name_, changed);
    file_.insert(file_.end(), changed.begin(), changed.end());
  }

  Bytes& file_;
};

class FakeRaw : public FakeDevice {
 public:
  FakeRaw(FakeVolumes& volumes, const std::string& name, char letter)
      : FakeDevice(volumes, name, letter), drive_(volumes.drives.at(letter)) {}

 private:
  std::span<const std::uint8_t> bytes() override { return drive_.firstSector; }
  void put(std::span<const std::uint8_t> from) override {
    Bytes changed(from.begin(), from.end());
    if (volumes_.corrupt) volumes_.corrupt(name_, changed);
    std::copy_n(changed.begin(), std::min(changed.size(), drive_.firstSector.size() - at_),
                drive_.firstSector.begin() + static_cast<std::ptrdiff_t>(at_));
  }

  FakeDrive& drive_;
};

class FakeAbsoluteDisk : public Volumes::AbsoluteDisk {
 public:
  explicit FakeAbsoluteDisk(FakeVolumes& volumes) : volumes_(volumes) { ++volumes_.openDevices; }
  ~FakeAbsoluteDisk() override { release(); }

  bool readSector(int drive, DriveSector& into) override {
    if (volumes_.isFaulty(formatText("absolute read %d", drive))) return false;
    into = volumes_.drives.at(static_cast<char>('A' + drive)).firstSector;
    return true;
  }
  bool writeSector(int drive, const DriveSector& from) override {
    if (volumes_.isFaulty(formatText("absolute write %d", drive))) return false;
    volumes_.drives.at(static_cast<char>('A' + drive)).firstSector = from;
    return true;
  }
  bool close() override {
    release();
    return !volumes_.isFaulty("absolute close");
  }

 private:
  void release() {
    if (isOpen_) --volumes_.openDevices;
    isOpen_ = false;
  }

  FakeVolumes& volumes_;
  bool isOpen_ = true;
};

}  // namespace

bool FakeVolumes::isFaulty(const std::string& call) {
  calls.push_back(call);
  if (onCall) onCall();
  return static_cast<int>(calls.size()) - 1 == faultyCall;
}

std::vector<std::string> FakeVolumes::driveStrings() {
  std::vector<std::string> roots;
  for (const auto& [letter, drive] : drives) roots.push_back(rootPath(letter));
  return roots;
}

std::uint32_t FakeVolumes::driveType(const std::string& root) {
  return drives.at(root.front()).type;
}

DriveFacts FakeVolumes::facts(const std::string& root) {
  const auto found = drives.find(root.empty() ? '\0' : root.front());
  return found == drives.end() ? DriveFacts{} : found->second.facts;
}

DevicePtr FakeVolumes::openVolume(char letter) {
  if (isFaulty(std::string("open volume ") + letter) || !drives.contains(letter)) return nullptr;
  return std::make_unique<FakeRaw>(*this, std::string("volume ") + letter, letter);
}

DevicePtr FakeVolumes::openPhysicalDisk(std::uint32_t number) {
  if (isFaulty(formatText("open disk %u", number))) return nullptr;
  const char letter = static_cast<char>('C' + number - 1);
  if (!drives.contains(letter)) return nullptr;
  return std::make_unique<FakeRaw>(*this, formatText("disk %u", number), letter);
}

bool FakeVolumes::flushVolume(char letter) {
  return !isFaulty(std::string("flush ") + letter);
}

Bytes* FakeVolumes::find(const std::string& path) {
  std::map<std::string, Bytes>* folder = &files;
  std::string name = path;
  const auto drive = drives.find(path.empty() ? '\0' : path.front());
  if (drive != drives.end() && path.starts_with(rootPath(drive->first))) {
    folder = &drive->second.files;
    name = path.substr(rootPath(drive->first).size());
  }
  const auto found = folder->find(name);
  return found == folder->end() ? nullptr : &found->second;
}

DevicePtr FakeVolumes::createFile(const std::string& path, Creation creation) {
  if (isFaulty((creation == Creation::kNew ? "create " : "overwrite ") + path)) return nullptr;
  Bytes* file = find(path);
  if (file && creation == Creation::kNew) return nullptr;
  if (!file) {
    const auto drive = drives.find(path.front());
    const bool isOnDrive = drive != drives.end() && path.starts_with(rootPath(drive->first));
    file =
        isOnDrive ? &drive->second.files[path.substr(rootPath(drive->first).size())] : &files[path];
  }
  file->clear();
  return std::make_unique<FakeFile>(*this, path, *file);
}

DevicePtr FakeVolumes::openFile(const std::string& path) {
  return openNoted("open ", path);
}

DevicePtr FakeVolumes::openWritten(const std::string& path) {
  return isFlushed(path.front()) ? openNoted("open written ", path) : nullptr;
}

DevicePtr FakeVolumes::openWithoutAccess(const std::string& path) {
  return openNoted("look at ", path);
}

DevicePtr FakeVolumes::openNoted(const std::string& how, const std::string& path) {
  Bytes* file = find(path);
  if (isFaulty(how + path) || !file) return nullptr;
  return std::make_unique<FakeFile>(*this, path, *file);
}

bool FakeVolumes::isFlushed(char letter) const {
  const auto isFlush = [&](const std::string& call) {
    return call == std::string("flush ") + letter;
  };
  const auto isWrite = [&](const std::string& call) {
    return call.starts_with("write " + rootPath(letter)) ||
           call == std::string("write volume ") + letter;
  };
  const auto flush = std::find_if(calls.rbegin(), calls.rend(), isFlush);
  return flush != calls.rend() && std::none_of(calls.rbegin(), flush, isWrite);
}

std::unique_ptr<Volumes::AbsoluteDisk> FakeVolumes::openAbsoluteDisk() {
  if (isFaulty("open absolute disk")) return nullptr;
  return std::make_unique<FakeAbsoluteDisk>(*this);
}

class FakeFormat::Process : public FormatProcess {
 public:
  explicit Process(FakeFormat& format) : format_(format) { ++format_.openProcesses; }
  ~Process() override { release(); }

  bool feed(std::string_view text) override {
    format_.fed += text;
    return true;
  }
  std::string output(std::size_t most) override {
    std::string text = format_.output.substr(0, most);
    format_.output.erase(0, text.size());
    return text;
  }
  Wait wait(int timeoutMs) override {
    if (format_.volumes_.onCall) format_.volumes_.onCall();
    switch (format_.behaviour) {
      case Behaviour::kFormats:
        formatDrive();
        return Wait::kEnded;
      case Behaviour::kDoesNothing:
        return Wait::kEnded;
      case Behaviour::kWaitFails:
        return Wait::kFailed;
      case Behaviour::kHangs:
      case Behaviour::kCannotBeEnded:
        break;
    }
    format_.waitedMs += timeoutMs;
    return Wait::kRuns;
  }
  bool terminate() override {
    ++format_.terminated;
    return format_.behaviour != Behaviour::kCannotBeEnded;
  }
  bool close() override {
    release();
    return format_.closes;
  }

 private:
  void formatDrive() {
    FakeDrive& drive = format_.volumes_.drives.at(format_.letter_);
    drive.firstSector = formattedSector(static_cast<int>(format_.commandLines.size()));
    drive.files.clear();
  }
  void release() {
    if (isOpen_) --format_.openProcesses;
    isOpen_ = false;
  }

  FakeFormat& format_;
  bool isOpen_ = true;
};

FormatLine FakeFormat::line(char letter) {
  letter_ = letter;
  const std::string folder = volumes_.system.isNt ? "C:\\WINNT\\system32" : "C:\\WINDOWS";
  return windowsFormatLine(volumes_.system, folder, letter);
}

std::unique_ptr<FormatProcess> FakeFormat::start(const FormatLine& line) {
  if (!startFailure.empty()) throw Failure(startFailure);
  commandLines.push_back(line.commandLine);
  return std::make_unique<Process>(*this);
}

DriveSector formattedSector(int format) {
  DriveSector sector{};
  for (std::size_t i = 0; i < sector.size(); ++i) {
    sector[i] = static_cast<std::uint8_t>(i * 7 + static_cast<std::size_t>(format));
  }
  sector[510] = 0x55;
  sector[511] = 0xAA;
  return sector;
}

BootImage fakeImage(int number) {
  static const auto images = [] {
    std::map<int, Bytes> made;
    for (int i = kKernelImage; i <= kEtherbootImage; ++i) {
      made[i] = bytesOf("image " + std::to_string(i));
    }
    return made;
  }();
  const Bytes& image = images.at(number);
  return {image.data(), image.size()};
}

MediaServices fakeServices(FakeVolumes& volumes, FakeFormat& format) {
  const auto borrowed = [](auto& object) {
    return std::shared_ptr<std::remove_reference_t<decltype(object)>>(&object, [](void*) {});
  };
  return {borrowed(volumes), borrowed(format), fakeImage};
}

}  // namespace omniset::test
