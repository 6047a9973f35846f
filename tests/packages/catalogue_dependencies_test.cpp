#include <gmock/gmock.h>

#include "catalogue_fixture.h"

namespace omniset::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kV28 = versionWord(2, 8);
constexpr std::uint32_t kV29 = versionWord(2, 9);
constexpr std::uint32_t kV297 = versionWord(2, 9, 7);

using CatalogueDependencies = CatalogueTest;

TEST_F(CatalogueDependencies, PackageWithoutDependenciesMissesNothing) {
  add({.name = "system"});
  EXPECT_EQ(catalogue.checkDependencies(0), "");
  EXPECT_FALSE(catalogue.record(0).unresolved);
  EXPECT_THAT(catalogue.record(0).providers, IsEmpty());
}

TEST_F(CatalogueDependencies, PackageOfTheFolderSatisfiesADependency) {
  add({.name = "routing", .dependencies = {{"system", kV28, kV297}}});
  add({.name = "system", .version = kV29});
  EXPECT_EQ(catalogue.checkDependencies(0), "");
  EXPECT_THAT(catalogue.record(0).providers, ElementsAre(1));
  EXPECT_FALSE(catalogue.record(0).unresolved);
}

TEST_F(CatalogueDependencies, AbsentPackageIsMissing) {
  add({.name = "routing", .dependencies = {{"system", kV28, 0}}});
  EXPECT_EQ(catalogue.checkDependencies(0), "Missing: system");
  EXPECT_TRUE(catalogue.record(0).unresolved);
  EXPECT_THAT(catalogue.record(0).missing, ElementsAre("system"));
}

TEST_F(CatalogueDependencies, MissingNamesAreListedInFileOrder) {
  add({.name = "all", .dependencies = {{"zulu", 0, 0}, {"system", 0, 0}, {"alpha", 0, 0}}});
  add({.name = "system"});
  EXPECT_EQ(catalogue.checkDependencies(0), "Missing: zulu, alpha");
  EXPECT_THAT(catalogue.record(0).providers, ElementsAre(1));
}

TEST_F(CatalogueDependencies, VersionOutsideTheRangeIsMissing) {
  add({.name = "system", .version = kV29});
  add({.name = "newer", .dependencies = {{"system", kV29 + 1, 0}}});
  add({.name = "older", .dependencies = {{"system", 0, kV29 - 1}}});
  EXPECT_EQ(catalogue.checkDependencies(1), "Missing: system");
  EXPECT_EQ(catalogue.checkDependencies(2), "Missing: system");
}

TEST_F(CatalogueDependencies, BothBoundsBelongToTheRange) {
  add({.name = "system", .version = kV29});
  add({.name = "exact", .dependencies = {{"system", kV29, kV29}}});
  EXPECT_EQ(catalogue.checkDependencies(1), "");
}

TEST_F(CatalogueDependencies, VersionsCompareUnsigned) {
  add({.name = "system", .version = 0xF0000000});
  add({.name = "open", .dependencies = {{"system", kV29, 0}}});
  add({.name = "bounded", .dependencies = {{"system", 0, kV29}}});
  EXPECT_EQ(catalogue.checkDependencies(1), "");
  EXPECT_EQ(catalogue.checkDependencies(2), "Missing: system");
}

TEST_F(CatalogueDependencies, BetaIsBelowTheFinalReleaseOfTheSameVersion) {
  add({.name = "system", .version = versionWord(2, 9, 200, 'b')});
  add({.name = "routing", .dependencies = {{"system", kV29, 0}}});
  EXPECT_EQ(catalogue.checkDependencies(1), "Missing: system");
}

TEST_F(CatalogueDependencies, HighestVersionZeroIsNoBoundAndIsStoredAsSuch) {
  add({.name = "system", .version = kAnyVersion});
  add({.name = "routing", .dependencies = {{"system", kV28, 0}}});
  EXPECT_EQ(catalogue.checkDependencies(1), "");
  EXPECT_EQ(catalogue.record(1).dependencies[0].maxVersion, 0xFFFFFFFFu);
}

TEST_F(CatalogueDependencies, FirstFittingVersionInScanOrderIsTaken) {
  add({.name = "system", .version = kV28}, "system-2.8.bdl");
  add({.name = "system", .version = kV297}, "system-2.9.7.bdl");
  add({.name = "system", .version = kV29}, "system-2.9.bdl");
  add({.name = "routing", .dependencies = {{"system", kV29, 0}}});
  add({.name = "dhcp", .dependencies = {{"system", 0, 0}}});
  add({.name = "old", .dependencies = {{"system", 0, kV29}}});
  add({.name = "middle", .dependencies = {{"system", kV29, kV29}}});
  for (int index = 3; index <= 6; ++index) EXPECT_EQ(catalogue.checkDependencies(index), "");
  EXPECT_THAT(catalogue.record(3).providers, ElementsAre(1));
  EXPECT_THAT(catalogue.record(4).providers, ElementsAre(0));
  EXPECT_THAT(catalogue.record(5).providers, ElementsAre(0));
  EXPECT_THAT(catalogue.record(6).providers, ElementsAre(2));
}

TEST_F(CatalogueDependencies, ProvidersComeInTheOrderOfTheDependencies) {
  add({.name = "system"});
  add({.name = "security"});
  add({.name = "tunnels", .dependencies = {{"security", 0, 0}, {"system", 0, 0}}});
  catalogue.checkDependencies(2);
  EXPECT_THAT(catalogue.record(2).providers, ElementsAre(1, 0));
}

TEST_F(CatalogueDependencies, CheckingAgainChangesNothing) {
  add({.name = "system"});
  add({.name = "routing", .dependencies = {{"system", 0, 0}, {"absent", 0, 0}}});
  catalogue.checkDependencies(1);
  EXPECT_EQ(catalogue.checkDependencies(1), "Missing: absent");
  EXPECT_THAT(catalogue.record(1).providers, ElementsAre(0));
  EXPECT_THAT(catalogue.record(1).missing, ElementsAre("absent"));
}

TEST_F(CatalogueDependencies, CheckingAgainFindsWhatCameLater) {
  add({.name = "routing", .dependencies = {{"system", 0, 0}}});
  EXPECT_EQ(catalogue.checkDependencies(0), "Missing: system");
  add({.name = "system"});
  EXPECT_EQ(catalogue.checkDependencies(0), "");
  EXPECT_FALSE(catalogue.record(0).unresolved);
}

TEST_F(CatalogueDependencies, NamesAreComparedWithTheirCase) {
  add({.name = "System"});
  add({.name = "routing", .dependencies = {{"system", 0, 0}}});
  EXPECT_EQ(catalogue.checkDependencies(1), "Missing: system");
}

TEST_F(CatalogueDependencies, EmptyNameIsListedLikeAnyOther) {
  add({.name = "odd", .dependencies = {{"", 0, 0}, {"system", 0, 0}}});
  EXPECT_EQ(catalogue.checkDependencies(0), "Missing: , system");
}

TEST_F(CatalogueDependencies, TextSaysWhenThereAreNone) {
  add({.name = "system"});
  EXPECT_EQ(catalogue.dependencyText(0), "system depends on nothing");
}

TEST_F(CatalogueDependencies, TextShowsBothVersionsOfARange) {
  add({.name = "routing", .dependencies = {{"system", versionWord(2, 8, 7), kV29}}});
  EXPECT_EQ(catalogue.dependencyText(0), "routing depends on system (2.8.7 - 2.9)");
}

TEST_F(CatalogueDependencies, TextShowsOneVersionWhenBothAreTheSame) {
  add({.name = "routing", .dependencies = {{"system", kV297, kV297}}});
  EXPECT_EQ(catalogue.dependencyText(0), "routing depends on system (2.9.7)");
}

TEST_F(CatalogueDependencies, TextShowsAnOpenBoundAsAny) {
  add({.name = "routing", .dependencies = {{"system", kV28, 0}, {"ppp", 0, 0}}});
  EXPECT_EQ(catalogue.dependencyText(0), "routing depends on system (2.8 - any), ppp (any)");
  catalogue.checkDependencies(0);
  EXPECT_EQ(catalogue.dependencyText(0), "routing depends on system (2.8 - any), ppp (any - any)");
}

}  // namespace
}  // namespace omniset::test
