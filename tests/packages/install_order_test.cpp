#include <gmock/gmock.h>

#include <algorithm>

#include "catalogue_fixture.h"
#include "core/format_text.h"

namespace omniset::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class InstallOrder : public CatalogueTest {
 protected:
  // Loads NAME.bdl, which depends on any version of the packages named.
  void addNamed(const std::string& name, const std::vector<std::string>& dependsOn = {}) {
    BdlPackage package{.name = name};
    for (const std::string& each : dependsOn) package.dependencies.push_back({each, 0, 0});
    add(package);
  }

  std::vector<std::string> order(const std::vector<std::string>& selected) {
    for (int index = 0; index < catalogue.count(); ++index) catalogue.checkDependencies(index);
    return catalogue.installOrder(selected);
  }
};

TEST_F(InstallOrder, NothingSelectedIsNothingToInstall) {
  addNamed("system");
  EXPECT_THAT(order({}), IsEmpty());
}

TEST_F(InstallOrder, IndependentPackagesKeepTheOrderOfTheSelection) {
  addNamed("a");
  addNamed("b");
  addNamed("c");
  EXPECT_THAT(order({"c.bdl", "a.bdl"}), ElementsAre("c.bdl", "a.bdl"));
}

TEST_F(InstallOrder, DependencyPrecedesThePackageThatNeedsIt) {
  addNamed("routing", {"system"});
  addNamed("system");
  EXPECT_THAT(order({"routing.bdl", "system.bdl"}), ElementsAre("system.bdl", "routing.bdl"));
}

TEST_F(InstallOrder, UnselectedDependenciesAreAddedTransitively) {
  addNamed("tunnels", {"security"});
  addNamed("security", {"crypto"});
  addNamed("crypto", {"system"});
  addNamed("system");
  EXPECT_THAT(order({"tunnels.bdl"}),
              ElementsAre("system.bdl", "crypto.bdl", "security.bdl", "tunnels.bdl"));
}

TEST_F(InstallOrder, SharedDependencyComesOnce) {
  addNamed("system");
  addNamed("left", {"system"});
  addNamed("right", {"system"});
  addNamed("top", {"right", "left"});
  EXPECT_THAT(order({"top.bdl", "left.bdl", "top.bdl"}),
              ElementsAre("system.bdl", "right.bdl", "left.bdl", "top.bdl"));
}

TEST_F(InstallOrder, DependenciesComeInTheOrderInWhichThePackageNamesThem) {
  addNamed("a");
  addNamed("b");
  addNamed("c");
  addNamed("top", {"b", "c", "a"});
  EXPECT_THAT(order({"top.bdl"}), ElementsAre("b.bdl", "c.bdl", "a.bdl", "top.bdl"));
}

TEST_F(InstallOrder, OnlyTheVersionThatFitsIsAdded) {
  add({.name = "system", .version = versionWord(2, 8)}, "system-2.8.bdl");
  add({.name = "system", .version = versionWord(2, 9)}, "system-2.9.bdl");
  add({.name = "routing", .dependencies = {{"system", versionWord(2, 9), 0}}});
  EXPECT_THAT(order({"routing.bdl"}), ElementsAre("system-2.9.bdl", "routing.bdl"));
}

TEST_F(InstallOrder, MissingDependencyIsLeftOut) {
  addNamed("system");
  addNamed("routing", {"absent", "system"});
  EXPECT_THAT(order({"routing.bdl"}), ElementsAre("system.bdl", "routing.bdl"));
}

TEST_F(InstallOrder, UnknownFileNamesAreLeftOut) {
  addNamed("system");
  EXPECT_THAT(order({"gone.bdl", "system.bdl", ""}), ElementsAre("system.bdl"));
}

TEST_F(InstallOrder, CircleOfDependenciesComesToAnEndWithEachPackageOnce) {
  addNamed("a", {"b"});
  addNamed("b", {"c"});
  addNamed("c", {"a"});
  EXPECT_THAT(order({"a.bdl"}), ElementsAre("c.bdl", "b.bdl", "a.bdl"));
  EXPECT_THAT(order({"b.bdl", "a.bdl"}), ElementsAre("a.bdl", "c.bdl", "b.bdl"));
}

TEST_F(InstallOrder, PackageThatDependsOnItselfComesOnce) {
  addNamed("self", {"self"});
  EXPECT_THAT(order({"self.bdl"}), ElementsAre("self.bdl"));
}

TEST_F(InstallOrder, EachCallStartsAnew) {
  addNamed("system");
  addNamed("routing", {"system"});
  EXPECT_THAT(order({"routing.bdl"}), SizeIs(2));
  EXPECT_THAT(order({"routing.bdl"}), SizeIs(2));
}

TEST_F(InstallOrder, LongChainOfDependenciesIsFollowedToItsEnd) {
  constexpr int kCount = 300;
  for (int i = 0; i < kCount; ++i) {
    addNamed(formatText("p%d", i), {formatText("p%d", i + 1)});
  }
  const auto files = order({"p0.bdl"});
  ASSERT_THAT(files, SizeIs(kCount));
  EXPECT_EQ(files.front(), formatText("p%d.bdl", kCount - 1));
  EXPECT_EQ(files.back(), "p0.bdl");
}

}  // namespace
}  // namespace omniset::test
