#include "install/configuration_script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/error.h"
#include "core/ipv4_address.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/temp_folder.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

RouterRecord addressedRecord() {
  RouterRecord record;
  record.mac = {{0x02, 0x00, 0x00, 0x01, 0x02, 0x03}};
  record.address = ipv4(192, 168, 88, 1);
  record.netmaskLength = 24;
  record.baudRate = 9600;
  return record;
}

constexpr const char* kAddressBlock =
    "\n:local eth\n"
    ":set eth [/interface ethernet get [/interface ethernet find mac-address=02:00:00:01:02:03]"
    " name]\n"
    "/interface enable $eth\n"
    "/ip address add address=192.168.88.1/24 interface=$eth\n"
    "/port set [/port find] baud-rate=9600\n";

TEST(GeneratedScript, AddressMakesTheAddressBlockWithoutARoute) {
  EXPECT_EQ(generatedScript(addressedRecord()), kAddressBlock);
}

TEST(GeneratedScript, GatewayAddsTheRouteAsTheLastLine) {
  RouterRecord record = addressedRecord();
  record.gateway = ipv4(192, 168, 88, 254);
  EXPECT_EQ(generatedScript(record),
            std::string(kAddressBlock) + "/ip route add gateway=192.168.88.254\n");
}

TEST(GeneratedScript, MacIsWrittenInUpperCase) {
  RouterRecord record = addressedRecord();
  record.mac = {{0xAB, 0xCD, 0xEF, 0x0A, 0x1B, 0x2C}};
  EXPECT_THAT(generatedScript(record), ::testing::HasSubstr("mac-address=AB:CD:EF:0A:1B:2C] name"));
}

TEST(GeneratedScript, IsEmptyWithoutANetmaskLength) {
  RouterRecord record = addressedRecord();
  record.netmaskLength = 0;
  record.gateway = ipv4(192, 168, 88, 254);
  EXPECT_EQ(generatedScript(record), "");
}

TEST(GeneratedScript, IsEmptyWithoutAnAddressWhateverElseIsSet) {
  RouterRecord record = addressedRecord();
  record.address = 0;
  record.gateway = ipv4(192, 168, 88, 254);
  EXPECT_EQ(generatedScript(record), "");
}

TEST(ScriptName, IsWhatTheTargetRuns) {
  EXPECT_STREQ(kScriptName, "autorun.scr");
}

struct BuildScript : ::testing::Test {
  std::string contentOf(const RouterRecord& record) {
    return readFile(buildScript(record, tempFiles));
  }
  // The failure's sentence; no temporary file may be left.
  std::string failureOf(const RouterRecord& record, TempFiles& files) {
    try {
      buildScript(record, files);
    } catch (const Failure& e) {
      EXPECT_THAT(folder.names(), IsEmpty());
      return e.what();
    }
    return "none";
  }

  TempFolder folder;
  TempFolder own;
  FakeTempFiles tempFiles{folder};
  CapturedTrace trace;
};

TEST_F(BuildScript, WritesTheGeneratedTextUnchanged) {
  EXPECT_EQ(contentOf(addressedRecord()), kAddressBlock);
}

TEST_F(BuildScript, TemporaryFileHasThePrefixAndIsTraced) {
  const std::string path = buildScript(addressedRecord(), tempFiles);
  EXPECT_THAT(folder.names(), ElementsAre("scr1"));
  EXPECT_EQ(trace.text(), "tempfile:" + path + "\n");
}

TEST_F(BuildScript, WithoutAnAddressTheFileIsEmpty) {
  EXPECT_EQ(contentOf(RouterRecord{}), "");
}

TEST_F(BuildScript, KeptConfigurationLeavesTheFileEmptyWhateverElseIsSet) {
  RouterRecord record = addressedRecord();
  record.keepConfiguration = true;
  record.useOwnScript = true;
  record.scriptPath = own.write("own.scr", "/system identity print\n");
  EXPECT_EQ(contentOf(record), "");
}

TEST_F(BuildScript, OwnScriptIsCopiedUnchangedInsteadOfTheGeneratedOne) {
  const std::string bytes("line\r\nzero \0 and \xFF\x1A\n", 21);
  RouterRecord record = addressedRecord();
  record.useOwnScript = true;
  record.scriptPath = own.write("own.scr", bytes);
  EXPECT_EQ(contentOf(record), bytes);
}

TEST_F(BuildScript, OwnScriptOfManyBlocksIsCopiedWhole) {
  RouterRecord record;
  record.useOwnScript = true;
  for (const std::size_t length : {std::size_t{0}, std::size_t{4095}, std::size_t{4096},
                                   std::size_t{4097}, std::size_t{3 * 4096 + 1}}) {
    std::string bytes(length, '\0');
    for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<char>(i % 251);
    record.scriptPath = own.write("own.scr", bytes);
    EXPECT_EQ(contentOf(record), bytes) << length;
  }
}

TEST_F(BuildScript, OwnScriptPathIsNotReadWithoutItsFlag) {
  RouterRecord record = addressedRecord();
  record.scriptPath = own.path() + "/missing";
  EXPECT_EQ(contentOf(record), kAddressBlock);
}

TEST_F(BuildScript, MissingOwnScriptFailsAndLeavesNoFile) {
  RouterRecord record;
  record.useOwnScript = true;
  record.scriptPath = own.path() + "/missing";
  EXPECT_EQ(failureOf(record, tempFiles), "Could not open script");
}

TEST_F(BuildScript, OwnScriptWithoutAPathFails) {
  RouterRecord record;
  record.useOwnScript = true;
  EXPECT_EQ(failureOf(record, tempFiles), "Could not open script");
}

// Names a file that cannot be opened.
class UnusableTempFiles : public TempFiles {
 public:
  explicit UnusableTempFiles(std::string path) : path_(std::move(path)) {}
  std::string create(const char*) override { return path_; }

 private:
  std::string path_;
};

TEST_F(BuildScript, TemporaryFileThatCannotBeOpenedFails) {
  UnusableTempFiles unusable(folder.path() + "/no/such/folder/scr1");
  EXPECT_EQ(failureOf(addressedRecord(), unusable), "Could not open temporary file");
}

class RefusingTempFiles : public TempFiles {
 public:
  std::string create(const char*) override { throw Error("GetTempPath"); }
};

TEST_F(BuildScript, NoTemporaryFileToBeHadPassesTheErrorOn) {
  RefusingTempFiles refusing;
  EXPECT_THROW(buildScript(addressedRecord(), refusing), Error);
  EXPECT_EQ(trace.text(), "");
}

}  // namespace
}  // namespace omniset::test
