#include "cli/install_plan.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "cli/bad_input.h"
#include "core/ipv4_address.h"
#include "install/configuration_script.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/temp_folder.h"
#include "tests/tools/bdl_builder.h"

namespace omniset::test {

namespace {

class InstallPlanTest : public testing::Test {
 protected:
  InstallPlanTest() {
    add("system-2.8.bdl", {.name = "system", .version = versionWord(2, 8), .description = "Base"});
    add("routing.bdl", {.name = "routing",
                        .description = "Routes",
                        .dependencies = {{"system", versionWord(2, 8), 0}},
                        .payloadBytes = 5'000});
    options.folder = folder.path();
  }

  void add(const std::string& file, const BdlPackage& package) {
    sizes[file] = static_cast<std::int64_t>(buildBdl(package).size());
    folder.write(file, buildBdl(package));
  }

  InstallPlan plan() {
    catalogue.scan(folder.path());
    return planInstallation(options, catalogue);
  }

  std::vector<std::string> files() { return plan().run.request.packageFiles; }

  std::string refusal() {
    try {
      plan();
    } catch (const BadInput& e) {
      return e.what();
    }
    return "planned";
  }

  bool warns(const std::string& part) {
    for (const std::string& warning : plan().warnings) {
      if (warning.find(part) != std::string::npos) return true;
    }
    return false;
  }

  SilentTrace silent;
  TempFolder folder;
  TempFolder elsewhere;
  std::map<std::string, std::int64_t> sizes;
  NoPackageRows rows;
  NoStatusText status;
  PackageCatalogue catalogue{rows, status};
  InstallOptions options;
};

using Files = std::vector<std::string>;

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST_F(InstallPlanTest, SelectionIsCompletedByItsDependenciesInInstallOrder) {
  options.select = {"routing"};
  EXPECT_EQ(files(), (Files{"system-2.8.bdl", "routing.bdl"}));
  EXPECT_EQ(plan().packages, "system 2.8, routing 1.0");
}

TEST_F(InstallPlanTest, FileNamesAreTakenToo) {
  options.select = {"system-2.8.bdl"};
  EXPECT_EQ(files(), Files{"system-2.8.bdl"});
}

TEST_F(InstallPlanTest, NameWithSeveralVersionsMeansTheNewest) {
  add("system-2.10.bdl", {.name = "system", .version = versionWord(2, 10), .description = "Base"});
  add("system-2.9.bdl", {.name = "system", .version = versionWord(2, 9), .description = "Base"});
  options.select = {"system"};
  EXPECT_EQ(files(), Files{"system-2.10.bdl"});
  options.select = {"system-2.9.bdl"};
  EXPECT_EQ(files(), Files{"system-2.9.bdl"});
}

TEST_F(InstallPlanTest, WithoutNamesEveryPackageIsTaken) {
  EXPECT_EQ(files(), (Files{"system-2.8.bdl", "routing.bdl"}));
}

TEST_F(InstallPlanTest, UnknownNameIsRefusedWithTheNamesThatAreThere) {
  options.select = {"sytem"};
  EXPECT_EQ(refusal(), "There is no package 'sytem' in '" + folder.path() +
                           "': select among routing, system.");
}

TEST_F(InstallPlanTest, MissingDependencyIsNamedWithTheVersionsThatAreThere) {
  add("ppp.bdl", {.name = "ppp",
                  .description = "Dial",
                  .dependencies = {{"system", versionWord(2, 9), 0}, {"serial", 0, 0}}});
  options.select = {"ppp"};
  const std::string text = refusal();
  EXPECT_TRUE(contains(text, "Package ppp needs system 2.9 or later")) << text;
  EXPECT_TRUE(
      contains(text, "(there is only 2.8): put that package into the folder, or leave ppp"));
  EXPECT_TRUE(contains(text, "Package ppp needs serial, which is not in"));
}

TEST_F(InstallPlanTest, DependencyMissingFurtherDownIsNamed) {
  add("a.bdl", {.name = "a", .description = "A", .dependencies = {{"b", 0, 0}}});
  add("b.bdl", {.name = "b", .description = "B", .dependencies = {{"c", 0, 0}}});
  options.select = {"a"};
  EXPECT_TRUE(contains(refusal(), "Package b needs c, which is not in"));
}

TEST_F(InstallPlanTest, DependencyMissingOfAnUnselectedPackageDoesNotMatter) {
  add("ppp.bdl", {.name = "ppp", .description = "Dial", .dependencies = {{"serial", 0, 0}}});
  options.select = {"routing"};
  EXPECT_EQ(files(), (Files{"system-2.8.bdl", "routing.bdl"}));
}

TEST_F(InstallPlanTest, EveryRouterGetsWhatWasAskedFor) {
  options.address = ipv4(192, 168, 88, 1);
  options.netmaskLength = 24;
  options.gateway = ipv4(192, 168, 88, 254);
  options.baudRate = 19200;
  options.choice = RouterChoice::kFirst;
  options.count = 7;
  options.reboot = true;
  options.wait = 33 * kSecond;
  const InstallRunOptions run = plan().run;
  EXPECT_EQ(run.request.address, options.address);
  EXPECT_EQ(run.request.netmaskLength, 24);
  EXPECT_EQ(run.request.gateway, options.gateway);
  EXPECT_EQ(run.request.baudRate, 19200);
  EXPECT_FALSE(run.request.useOwnScript);
  EXPECT_EQ(run.choice, RouterChoice::kFirst);
  EXPECT_EQ(run.count, 7u);
  EXPECT_TRUE(run.reboot);
  EXPECT_EQ(run.wait, 33 * kSecond);
  EXPECT_EQ(run.packagesFolder, folder.path());
}

TEST_F(InstallPlanTest, TotalCountsThePackagesAndTheGeneratedScript) {
  const std::int64_t packages = sizes["system-2.8.bdl"] + sizes["routing.bdl"];
  EXPECT_EQ(plan().run.totalBytes, packages);
  options.address = ipv4(192, 168, 88, 1);
  options.netmaskLength = 24;
  RouterRecord router = plan().run.request;
  router.mac = {{0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54}};
  EXPECT_EQ(plan().run.totalBytes,
            packages + static_cast<std::int64_t>(generatedScript(router).size()));
}

TEST_F(InstallPlanTest, TotalCountsTheOwnScript) {
  options.script = elsewhere.write("own.rsc", std::string(777, '#'));
  const InstallPlan made = plan();
  EXPECT_EQ(made.run.totalBytes, sizes["system-2.8.bdl"] + sizes["routing.bdl"] + 777);
  EXPECT_TRUE(made.run.request.useOwnScript);
  EXPECT_EQ(made.run.request.scriptPath, options.script);
}

TEST_F(InstallPlanTest, KeptConfigurationSendsAnEmptyScript) {
  options.keepConfiguration = true;
  EXPECT_EQ(plan().run.totalBytes, sizes["system-2.8.bdl"] + sizes["routing.bdl"]);
  EXPECT_TRUE(plan().run.request.keepConfiguration);
}

TEST_F(InstallPlanTest, UnreadableScriptIsRefused) {
  options.script = elsewhere.path() + "/none.rsc";
  EXPECT_TRUE(contains(refusal(), "none.rsc' cannot be read: name a file, and check its path"));
  options.script = elsewhere.path();
  EXPECT_TRUE(contains(refusal(), "cannot be read"));
}

TEST_F(InstallPlanTest, SpeedWithoutAnAddressIsWarnedOf) {
  EXPECT_TRUE(plan().warnings.empty());
  options.baudGiven = true;
  EXPECT_TRUE(warns("--baud has no effect without --address"));
  options.address = ipv4(10, 0, 0, 1);
  options.netmaskLength = 8;
  EXPECT_TRUE(plan().warnings.empty());
}

TEST_F(InstallPlanTest, SeveralVersionsOfAPackageAreWarnedOf) {
  add("system-2.9.bdl", {.name = "system", .version = versionWord(2, 9), .description = "Base"});
  EXPECT_TRUE(warns("several versions of system will be installed"));
}

TEST_F(InstallPlanTest, MoreFramesThanATargetCanCountAreWarnedOf) {
  // With the offer, the reboot and the headers of the package and of the empty script.
  constexpr std::uintmax_t kMostChunks = 65'535 - 4;
  options.select = {"huge"};
  add("huge.bdl", {.name = "huge", .description = "H"});
  const std::string path = folder.path() + "/huge.bdl";
  std::filesystem::resize_file(path, kMostChunks * 1452);
  EXPECT_TRUE(plan().warnings.empty());
  std::filesystem::resize_file(path, kMostChunks * 1452 + 1);
  EXPECT_TRUE(warns("takes 65536 frames for each router, but a router can take only 65535"));
}

}  // namespace omniset::test
