// What the program remembers from one run to the next, and under which names.
#pragma once

#include <cstdint>
#include <string>

#include "media/floppy_maker.h"
#include "ui/registry.h"

namespace omniset {

class PackageSets;

// The keys, below the user's root.
inline constexpr const char* kSettingsKey = "SOFTWARE\\Veltrona\\Deployhub";
inline constexpr const char* kPackageSetsSubKey = "Package Sets";
inline constexpr const char* kPackageSetsKey = "SOFTWARE\\Veltrona\\Deployhub\\Package Sets";

// A value's name, and what holds while it is absent.
template <class Value>
struct Setting {
  const char* name;
  Value absent;
};

// All values of the settings key. Addresses are IPv4 addresses in network byte order, lengths and
// coordinates are in pixels, flags are 0 or another number. The package sets have a key of their
// own, with a list of strings for each.
namespace setting {

inline constexpr Setting<std::int32_t> kX{"Rect X", 20};
inline constexpr Setting<std::int32_t> kY{"Rect Y", 20};
inline constexpr const char* kHeight = "Rect H";  // absent: the height that the window has
inline constexpr Setting<std::int32_t> kScreenWidth{"Screen X", 0};
inline constexpr Setting<std::int32_t> kScreenHeight{"Screen Y", 0};
inline constexpr Setting<const char*> kPackagePath{"Package Path", "C:\\"};
inline constexpr Setting<std::int32_t> kKeepConfiguration{"Previous KeepConfig", 0};
inline constexpr Setting<std::int32_t> kAddress{"Previous Address", 0};
// Read in one spelling and written in the other; the store takes them for the same name.
inline constexpr Setting<std::int32_t> kNetmaskLength{"Previous Netmask", 0};
inline constexpr const char* kNetmaskLengthWritten = "Previous NetMask";
inline constexpr Setting<std::int32_t> kGateway{"Previous Gateway", 0};
inline constexpr Setting<std::int32_t> kBaudRate{"Previous Baud", 9600};
inline constexpr Setting<std::int32_t> kUseScript{"Previous Script", 0};
inline constexpr Setting<const char*> kScriptFile{"Previous ScriptFile", ""};
inline constexpr Setting<std::int32_t> kBootServerEnabled{"PXE Enabled", 0};
inline constexpr Setting<std::int32_t> kBootClientAddress{"PXE Client Address", 0};
inline constexpr Setting<const char*> kFloppyLabel{"Default Label", kProposedLabel};

}  // namespace setting

// Of the main window; the screen is the one that it was last shown on. As stored, so nothing is
// known to be sensible.
struct WindowGeometry {
  std::int32_t x = setting::kX.absent;
  std::int32_t y = setting::kY.absent;
  std::int32_t height = 0;
  std::int32_t screenWidth = setting::kScreenWidth.absent;
  std::int32_t screenHeight = setting::kScreenHeight.absent;
};

// The parameters of the last installation that was started.
struct RememberedParameters {
  bool keepConfiguration = setting::kKeepConfiguration.absent != 0;
  std::uint32_t address = setting::kAddress.absent;  // network byte order
  std::int32_t netmaskLength = setting::kNetmaskLength.absent;
  std::uint32_t gateway = setting::kGateway.absent;  // network byte order
  std::int32_t baudRate = setting::kBaudRate.absent;
  bool useScript = setting::kUseScript.absent != 0;
  std::string scriptFile = setting::kScriptFile.absent;
};

struct BootServerSettings {
  bool enabled = setting::kBootServerEnabled.absent != 0;
  std::uint32_t clientAddress = setting::kBootClientAddress.absent;  // network byte order
};

// Reads, from the settings key. The height is the window's present one.
WindowGeometry readGeometry(Registry& key, std::int32_t height);
BootServerSettings readBootServer(Registry& key);
RememberedParameters readRemembered(Registry& key);
std::string readPackagePath(Registry& key);
std::string readFloppyLabel(Registry& key);

struct Settings {
  WindowGeometry geometry;
  std::string packagePath;
  RememberedParameters remembered;
  BootServerSettings bootServer;
};

// Writes all settings, then the package sets, and closes the keys. Raises Error at the first thing
// that fails and leaves the rest unwritten. Deletes nothing.
void writeSettings(RegistryRoot& root, const Settings& settings, const PackageSets& sets);

// The label of new floppies, which is written by itself when it was used. Raises Error.
void writeFloppyLabel(RegistryRoot& root, const std::string& label);

}  // namespace omniset
