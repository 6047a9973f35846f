#include "ui/settings.h"

#include <gmock/gmock.h>

#include "core/error.h"
#include "core/ipv4_address.h"
#include "tests/contract/raised_text.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_registry.h"
#include "ui/workflow/package_sets.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;

class SettingsTest : public ::testing::Test {
 protected:
  Registry key() { return Registry(store_, kSettingsKey); }

  FakeRegistry store_;
};

Settings allDifferentFromDefaults() {
  Settings settings;
  settings.geometry = {-5, 7, 400, 1280, 1024};
  settings.packagePath = "D:\\packages";
  settings.remembered = {true, ipv4(10, 0, 0, 1), 24, ipv4(10, 0, 0, 254), 115'200, true, "a.rsc"};
  settings.bootServer = {true, ipv4(10, 0, 0, 200)};
  return settings;
}

TEST_F(SettingsTest, FirstRunHasTheDefaults) {
  Registry settings = key();
  const WindowGeometry geometry = readGeometry(settings, 333);
  EXPECT_EQ(geometry.x, 20);
  EXPECT_EQ(geometry.y, 20);
  EXPECT_EQ(geometry.height, 333);
  EXPECT_EQ(geometry.screenWidth, 0);
  EXPECT_EQ(geometry.screenHeight, 0);
  EXPECT_EQ(readPackagePath(settings), "C:\\");
  const BootServerSettings bootServer = readBootServer(settings);
  EXPECT_FALSE(bootServer.enabled);
  EXPECT_EQ(bootServer.clientAddress, 0u);
}

TEST_F(SettingsTest, FirstRunHasTheDefaultParameters) {
  Registry settings = key();
  const RememberedParameters remembered = readRemembered(settings);
  EXPECT_FALSE(remembered.keepConfiguration);
  EXPECT_EQ(remembered.address, 0u);
  EXPECT_EQ(remembered.netmaskLength, 0);
  EXPECT_EQ(remembered.gateway, 0u);
  EXPECT_EQ(remembered.baudRate, 9600);
  EXPECT_FALSE(remembered.useScript);
  EXPECT_EQ(remembered.scriptFile, "");
}

TEST_F(SettingsTest, ComeBack) {
  writeSettings(store_, allDifferentFromDefaults(), {});
  Registry settings = key();
  const WindowGeometry geometry = readGeometry(settings, 333);
  EXPECT_EQ(geometry.x, -5);
  EXPECT_EQ(geometry.y, 7);
  EXPECT_EQ(geometry.height, 400);
  EXPECT_EQ(geometry.screenWidth, 1280);
  EXPECT_EQ(geometry.screenHeight, 1024);
  EXPECT_EQ(readPackagePath(settings), "D:\\packages");
  const BootServerSettings bootServer = readBootServer(settings);
  EXPECT_TRUE(bootServer.enabled);
  EXPECT_EQ(bootServer.clientAddress, ipv4(10, 0, 0, 200));
}

TEST_F(SettingsTest, ParametersComeBack) {
  writeSettings(store_, allDifferentFromDefaults(), {});
  Registry settings = key();
  const RememberedParameters remembered = readRemembered(settings);
  EXPECT_TRUE(remembered.keepConfiguration);
  EXPECT_EQ(remembered.address, ipv4(10, 0, 0, 1));
  EXPECT_EQ(remembered.netmaskLength, 24);
  EXPECT_EQ(remembered.gateway, ipv4(10, 0, 0, 254));
  EXPECT_EQ(remembered.baudRate, 115'200);
  EXPECT_TRUE(remembered.useScript);
  EXPECT_EQ(remembered.scriptFile, "a.rsc");
}

TEST_F(SettingsTest, AnyNumberButZeroSetsAFlag) {
  Registry settings = key();
  settings.setInteger("Previous KeepConfig", -1);
  settings.setInteger("Previous Script", 2);
  settings.setInteger("PXE Enabled", 256);
  EXPECT_TRUE(readRemembered(settings).keepConfiguration);
  EXPECT_TRUE(readRemembered(settings).useScript);
  EXPECT_TRUE(readBootServer(settings).enabled);
}

TEST_F(SettingsTest, AddressIsStoredWithItsFirstOctetInTheLowestByte) {
  writeSettings(store_, allDifferentFromDefaults(), {});
  const StoredValue* address = store_.keys[kSettingsKey].find("Previous Address");
  ASSERT_TRUE(address);
  EXPECT_THAT(address->data, ElementsAre(10, 0, 0, 1));
}

TEST_F(SettingsTest, TooLongScriptPathIsForgotten) {
  Settings settings = allDifferentFromDefaults();
  settings.remembered.scriptFile.assign(5000, 'x');
  writeSettings(store_, settings, {});
  Registry read = key();
  EXPECT_EQ(readRemembered(read).scriptFile, "");
}

TEST_F(SettingsTest, AreWrittenInOrder) {
  PackageSets sets;
  sets.add("second", {"b"});
  sets.add("first", {"a"});
  writeSettings(store_, allDifferentFromDefaults(), sets);
  EXPECT_THAT(
      store_.calls,
      ElementsAre("open SOFTWARE\\Veltrona\\Deployhub", "write Rect X", "write Rect Y",
                  "write Rect H", "write Screen X", "write Screen Y", "write Package Path",
                  "write Previous KeepConfig", "write Previous Address", "write Previous NetMask",
                  "write Previous Gateway", "write Previous Baud", "write Previous Script",
                  "write Previous ScriptFile", "write PXE Enabled", "write PXE Client Address",
                  "open SOFTWARE\\Veltrona\\Deployhub\\Package Sets", "write first", "write second",
                  "close", "close"));
}

TEST_F(SettingsTest, ReadsFollowTheirOrder) {
  Registry settings = key();
  store_.calls.clear();
  readGeometry(settings, 0);
  readBootServer(settings);
  readRemembered(settings);
  readPackagePath(settings);
  EXPECT_THAT(store_.calls,
              ElementsAre("read Rect X", "read Rect Y", "read Rect H", "read Screen X",
                          "read Screen Y", "read PXE Enabled", "read PXE Client Address",
                          "read Previous KeepConfig", "read Previous Address",
                          "read Previous Netmask", "read Previous Gateway", "read Previous Baud",
                          "read Previous Script", "read Previous ScriptFile", "read Package Path"));
}

TEST_F(SettingsTest, SetsLieInTheKeyThatIsReadForThem) {
  PackageSets sets;
  sets.add("one", {"a"});
  writeSettings(store_, {}, sets);
  EXPECT_THAT(Registry(store_, kPackageSetsKey).valueNames(), ElementsAre("one"));
}

TEST_F(SettingsTest, FailureToWriteEndsTheWritingAndClosesTheKey) {
  store_.failing = "write Package Path";
  const std::string text = raisedText<Error>([&] { writeSettings(store_, {}, {}); });
  EXPECT_TRUE(text.starts_with("str RegSetValueEx: ")) << text;
  ASSERT_GE(store_.calls.size(), 2u);
  EXPECT_EQ(store_.calls[store_.calls.size() - 2], "write Package Path");
  EXPECT_EQ(store_.calls.back(), "close");
}

TEST_F(SettingsTest, FailureToOpenOrCloseRaises) {
  const SilentTrace silence;
  for (const auto& [call, label] :
       {std::pair{"open SOFTWARE\\Veltrona\\Deployhub", "RegCreateKeyEx: "},
        std::pair{"open SOFTWARE\\Veltrona\\Deployhub\\Package Sets", "RegCreateKeyEx: "},
        std::pair{"close", "RegCloseKey: "}}) {
    store_.failing = call;
    const std::string text = raisedText<Error>([&] { writeSettings(store_, {}, {}); });
    EXPECT_TRUE(text.starts_with(label)) << text;
  }
}

TEST_F(SettingsTest, FailedOpeningWritesNothing) {
  store_.failing = "open SOFTWARE\\Veltrona\\Deployhub";
  EXPECT_THROW(writeSettings(store_, {}, {}), Error);
  EXPECT_EQ(store_.keys, StoredKeys());
}

TEST_F(SettingsTest, FloppyLabelIsReadAsItWasWritten) {
  Registry settings = key();
  EXPECT_EQ(readFloppyLabel(settings), "veltrona");
  writeFloppyLabel(store_, "attic");
  EXPECT_EQ(readFloppyLabel(settings), "attic");
  EXPECT_EQ(settings.getString("Default Label", ""), "attic");
}

TEST_F(SettingsTest, FloppyLabelHasItsNameAndDefault) {
  EXPECT_STREQ(setting::kFloppyLabel.name, "Default Label");
  EXPECT_STREQ(setting::kFloppyLabel.absent, "veltrona");
}

}  // namespace
}  // namespace omniset::test
