#include "ui/settings.h"

#include "ui/workflow/package_sets.h"

namespace omniset {

namespace {

std::int32_t read(Registry& key, const Setting<std::int32_t>& setting) {
  return key.getInteger(setting.name, setting.absent);
}

bool readFlag(Registry& key, const Setting<std::int32_t>& setting) {
  return read(key, setting) != 0;
}

std::uint32_t readAddress(Registry& key, const Setting<std::int32_t>& setting) {
  return static_cast<std::uint32_t>(read(key, setting));
}

std::string read(Registry& key, const Setting<const char*>& setting) {
  return key.getString(setting.name, setting.absent);
}

void write(Registry& key, const Setting<std::int32_t>& setting, std::int32_t value) {
  key.setInteger(setting.name, value);
}

void writeAddress(Registry& key, const Setting<std::int32_t>& setting, std::uint32_t address) {
  key.setInteger(setting.name, static_cast<std::int32_t>(address));
}

void write(Registry& key, const Setting<const char*>& setting, const std::string& value) {
  key.setString(setting.name, value);
}

void write(Registry& key, const WindowGeometry& geometry) {
  write(key, setting::kX, geometry.x);
  write(key, setting::kY, geometry.y);
  key.setInteger(setting::kHeight, geometry.height);
  write(key, setting::kScreenWidth, geometry.screenWidth);
  write(key, setting::kScreenHeight, geometry.screenHeight);
}

void write(Registry& key, const RememberedParameters& parameters) {
  write(key, setting::kKeepConfiguration, parameters.keepConfiguration ? 1 : 0);
  writeAddress(key, setting::kAddress, parameters.address);
  key.setInteger(setting::kNetmaskLengthWritten, parameters.netmaskLength);
  writeAddress(key, setting::kGateway, parameters.gateway);
  write(key, setting::kBaudRate, parameters.baudRate);
  write(key, setting::kUseScript, parameters.useScript ? 1 : 0);
  write(key, setting::kScriptFile, parameters.scriptFile);
}

void write(Registry& key, const BootServerSettings& bootServer) {
  write(key, setting::kBootServerEnabled, bootServer.enabled ? 1 : 0);
  writeAddress(key, setting::kBootClientAddress, bootServer.clientAddress);
}

}  // namespace

WindowGeometry readGeometry(Registry& key, std::int32_t height) {
  WindowGeometry geometry;
  geometry.x = read(key, setting::kX);
  geometry.y = read(key, setting::kY);
  geometry.height = key.getInteger(setting::kHeight, height);
  geometry.screenWidth = read(key, setting::kScreenWidth);
  geometry.screenHeight = read(key, setting::kScreenHeight);
  return geometry;
}

BootServerSettings readBootServer(Registry& key) {
  BootServerSettings bootServer;
  bootServer.enabled = readFlag(key, setting::kBootServerEnabled);
  bootServer.clientAddress = readAddress(key, setting::kBootClientAddress);
  return bootServer;
}

RememberedParameters readRemembered(Registry& key) {
  RememberedParameters parameters;
  parameters.keepConfiguration = readFlag(key, setting::kKeepConfiguration);
  parameters.address = readAddress(key, setting::kAddress);
  parameters.netmaskLength = read(key, setting::kNetmaskLength);
  parameters.gateway = readAddress(key, setting::kGateway);
  parameters.baudRate = read(key, setting::kBaudRate);
  parameters.useScript = readFlag(key, setting::kUseScript);
  parameters.scriptFile = read(key, setting::kScriptFile);
  return parameters;
}

std::string readPackagePath(Registry& key) {
  return read(key, setting::kPackagePath);
}

std::string readFloppyLabel(Registry& key) {
  return read(key, setting::kFloppyLabel);
}

void writeSettings(RegistryRoot& root, const Settings& settings, const PackageSets& sets) {
  Registry key(root, kSettingsKey);
  write(key, settings.geometry);
  write(key, setting::kPackagePath, settings.packagePath);
  write(key, settings.remembered);
  write(key, settings.bootServer);
  Registry setsKey(key, kPackageSetsSubKey);
  sets.store(setsKey);
  setsKey.close();
  key.close();
}

void writeFloppyLabel(RegistryRoot& root, const std::string& label) {
  Registry key(root, kSettingsKey);
  write(key, setting::kFloppyLabel, label);
  key.close();
}

}  // namespace omniset
