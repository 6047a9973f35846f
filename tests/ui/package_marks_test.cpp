#include "ui/workflow/package_marks.h"

#include "tests/packages/catalogue_fixture.h"

namespace omniset::test {

namespace {
using Names = std::vector<std::string>;

// system, routing (needs system), an older system behind it, and ppp (needs routing).
struct PackageMarksTest : CatalogueTest {
  PackageMarksTest() {
    add({.name = "system", .version = versionWord(2, 9), .description = "Base"}, "system-2.9.bdl");
    add({.name = "routing", .description = "Routing", .dependencies = {{"system", 0, 0}}});
    add({.name = "system", .version = versionWord(2, 8), .description = "Base"}, "system-2.8.bdl");
    add({.name = "ppp", .description = "PPP", .dependencies = {{"routing", 0, 0}}});
    for (int index = 0; index < catalogue.count(); ++index) catalogue.checkDependencies(index);
  }
};

}  // namespace

TEST_F(PackageMarksTest, NameRefersToTheFirstPackageOfThatName) {
  EXPECT_EQ((PackageMarks{true, false, false, false}), marksOf(catalogue, {"system"}));
}

TEST_F(PackageMarksTest, HiddenPackageIsReferredToByItsFile) {
  EXPECT_EQ((PackageMarks{false, false, true, false}), marksOf(catalogue, {"system-2.8.bdl"}));
  EXPECT_EQ(Names{"system-2.8.bdl"}, choiceOf(catalogue, {false, false, true, false}, {}));
}

TEST_F(PackageMarksTest, DependenciesAreMarkedTransitively) {
  EXPECT_EQ((PackageMarks{true, true, false, true}), marksOf(catalogue, {"ppp"}));
}

TEST_F(PackageMarksTest, ChoiceIsCompletedAndInTheFoldersOrder) {
  EXPECT_EQ((Names{"system", "routing", "ppp"}),
            choiceOf(catalogue, {false, false, false, true}, {}));
}

TEST_F(PackageMarksTest, ChoiceKeepsWhatTheFolderDoesNotHold) {
  EXPECT_EQ((Names{"system", "radio"}),
            choiceOf(catalogue, {true, false, false, false}, {"radio", "routing"}));
}

TEST_F(PackageMarksTest, ChoiceAndMarksTellTheSame) {
  const PackageMarks marks{true, true, true, false};
  EXPECT_EQ(marks, marksOf(catalogue, choiceOf(catalogue, marks, {})));
}

TEST_F(PackageMarksTest, FilesComeInTheOrderOfTheirInstallation) {
  EXPECT_EQ((Names{"system-2.9.bdl", "routing.bdl", "ppp.bdl"}),
            filesOf(catalogue, {false, false, false, true}));
}

TEST_F(PackageMarksTest, UnknownReferencesMarkNothing) {
  EXPECT_EQ(0, countOf(marksOf(catalogue, {"radio", "", "ROUTING"})));
}

TEST_F(PackageMarksTest, EmptyFolderHasNoMarks) {
  const TempFolder empty;
  catalogue.scan(empty.path());
  EXPECT_TRUE(marksOf(catalogue, {"system"}).empty());
  EXPECT_EQ(Names{"system"}, choiceOf(catalogue, {}, {"system"}));
}

}  // namespace omniset::test
