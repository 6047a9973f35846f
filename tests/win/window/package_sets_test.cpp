// Selections of packages that are kept under a name.
#include <gmock/gmock.h>

#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

constexpr Milliseconds kInstallationLimit{40'000};

class PackageSets : public WindowTest {
 protected:
  // Opens the prompt and answers it with this name.
  void saveAs(const std::string& name) {
    window().click(IDC_SAVE_SET);
    answerPrompt(name);
  }

  void answerPrompt(const std::string& name) {
    DrivenDialog prompt = window().awaitDialog("Save set");
    prompt.type(IDC_SET_NAME, name);
    prompt.click(IDC_SET_NAME_OK);
    prompt.awaitClosed();
  }

  void awaitSaved(const std::string& name) {
    waitUntil(
        "the set \"" + name + "\" is chosen", [&] { return window().chosenLine(IDC_SETS) == name; },
        [&] { return window().chosenLine(IDC_SETS); });
    window().settle();
  }
};

TEST_F(PackageSets, ASetIsSavedUnderTheProposedName) {
  startWithRouter();
  window().toggle("routing");
  EXPECT_TRUE(window().isEnabled(IDC_SAVE_SET));
  EXPECT_FALSE(window().isEnabled(IDC_DELETE_SET));
  window().click(IDC_SAVE_SET);
  DrivenDialog prompt = window().awaitDialog("Save set");
  EXPECT_THAT(prompt.allTexts(),
              UnorderedElementsAre("Save package set as:", "Router x", "OK", "Cancel"));
  prompt.click(IDC_SET_NAME_OK);
  prompt.awaitClosed();
  awaitSaved("Router x");
  EXPECT_THAT(window().lines(IDC_SETS), ElementsAre("Router x"));
  EXPECT_FALSE(window().isEnabled(IDC_SAVE_SET));
  EXPECT_TRUE(window().isEnabled(IDC_DELETE_SET));
}

TEST_F(PackageSets, AnEmptySelectionIsNotSaved) {
  startWithRouter();
  window().click(IDC_SAVE_SET);
  expectBox("Error", "Cannot create empty package set", "OK");
  EXPECT_TRUE(window().hasOnlyMainWindow());
  EXPECT_THAT(window().lines(IDC_SETS), IsEmpty());
}

TEST_F(PackageSets, ANameThatExistsIsRefusedAndAskedForAgain) {
  storeSet("edge", {"system"});
  startWithRouter();
  window().toggle("routing");
  saveAs("edge");
  expectBox("Error", "Package set with this name already exists", "OK");
  answerPrompt("core");
  awaitSaved("core");
  EXPECT_THAT(window().lines(IDC_SETS), UnorderedElementsAre("core", "edge"));
}

TEST_F(PackageSets, PreviousInstallIsANameThatExists) {
  storeSet("Previous Install", {"system"});
  startWithRouter();
  window().settle();
  if (packages().marked().empty()) window().toggle("system");
  saveAs("Previous Install");
  expectBox("Error", "Package set with this name already exists", "OK");
  DrivenDialog prompt = window().awaitDialog("Save set");
  prompt.click(IDC_SET_NAME_CANCEL);
  prompt.awaitClosed();
}

TEST_F(PackageSets, CancelSavesNothing) {
  startWithRouter();
  window().toggle("routing");
  window().click(IDC_SAVE_SET);
  DrivenDialog prompt = window().awaitDialog("Save set");
  prompt.click(IDC_SET_NAME_CANCEL);
  prompt.awaitClosed();
  window().settle();
  EXPECT_THAT(window().lines(IDC_SETS), IsEmpty());
  EXPECT_TRUE(window().isEnabled(IDC_SAVE_SET));
}

TEST_F(PackageSets, EscapeAndTheCloseButtonSaveNothing) {
  startWithRouter();
  window().toggle("routing");
  window().click(IDC_SAVE_SET);
  DrivenDialog prompt = window().awaitDialog("Save set");
  prompt.press(IDC_SET_NAME, VK_ESCAPE);
  prompt.awaitClosed();
  window().settle();
  window().click(IDC_SAVE_SET);
  DrivenDialog again = window().awaitDialog("Save set");
  again.close();
  again.awaitClosed();
  window().settle();
  EXPECT_THAT(window().lines(IDC_SETS), IsEmpty());
}

TEST_F(PackageSets, EnterInThePromptSaves) {
  startWithRouter();
  window().toggle("routing");
  window().click(IDC_SAVE_SET);
  DrivenDialog prompt = window().awaitDialog("Save set");
  prompt.type(IDC_SET_NAME, "by key");
  prompt.press(IDC_SET_NAME, VK_RETURN);
  prompt.awaitClosed();
  awaitSaved("by key");
}

TEST_F(PackageSets, AChosenSetBecomesTheRoutersSelection) {
  storeSet("basic", {"system"});
  storeSet("radio", {"system", "security", "wireless"});
  startWithRouter();
  EXPECT_THAT(window().lines(IDC_SETS), UnorderedElementsAre("basic", "radio"));
  window().choose(IDC_SETS, "radio");
  window().awaitText(IDC_PACKAGES_GROUP, "Selected 3 package(s)");
  EXPECT_THAT(packages().marked(), UnorderedElementsAre("security", "system", "wireless"));
  window().choose(IDC_SETS, "basic");
  window().awaitText(IDC_PACKAGES_GROUP, "Selected 1 package(s)");
  EXPECT_THAT(packages().marked(), ElementsAre("system"));
}

TEST_F(PackageSets, AChangedSelectionCanBeSavedAsAnotherSet) {
  storeSet("basic", {"system"});
  startWithRouter();
  window().choose(IDC_SETS, "basic");
  window().awaitEnabled(IDC_SAVE_SET, false);
  EXPECT_TRUE(window().isEnabled(IDC_DELETE_SET));
  window().toggle("routing");
  window().awaitEnabled(IDC_SAVE_SET);
}

TEST_F(PackageSets, AChoiceWithoutRouterChangesNoMark) {
  storeSet("basic", {"system"});
  startWindow();
  window().choose(IDC_SETS, "basic");
  window().settle();
  EXPECT_THAT(packages().marked(), IsEmpty());
  window().awaitEnabled(IDC_DELETE_SET);
}

TEST_F(PackageSets, ADeletedSetLeavesTheStoreAtOnce) {
  storeSet("basic", {"system"});
  storeSet("radio", {"wireless"});
  startWithRouter();
  window().choose(IDC_SETS, "basic");
  window().awaitEnabled(IDC_DELETE_SET);
  window().click(IDC_DELETE_SET);
  waitUntil("the set leaves the store", [] { return !storedSet("basic"); });
  window().settle();
  EXPECT_TRUE(window().hasOnlyMainWindow());
  EXPECT_THAT(window().lines(IDC_SETS), ElementsAre("radio"));
  EXPECT_EQ(window().chosenLine(IDC_SETS), "");
  EXPECT_TRUE(window().isEnabled(IDC_SAVE_SET));
  EXPECT_FALSE(window().isEnabled(IDC_DELETE_SET));
  window().process().kill();
  EXPECT_THAT(storedSetNames(), ElementsAre("radio"));
}

TEST_F(PackageSets, ADeletedSetDoesNotComeBackAtTheEnd) {
  storeSet("basic", {"system"});
  startWindow();
  window().choose(IDC_SETS, "basic");
  window().awaitEnabled(IDC_DELETE_SET);
  window().click(IDC_DELETE_SET);
  waitUntil("the set leaves the store", [] { return !storedSet("basic"); });
  endWindow();
  EXPECT_THAT(storedSetNames(), IsEmpty());
}

TEST_F(PackageSets, ASavedSetReachesTheStoreAtTheEnd) {
  startWithRouter();
  window().toggle("routing");
  saveAs("mine");
  awaitSaved("mine");
  EXPECT_FALSE(storedSet("mine"));
  const Texts shown = packages().marked();
  endWindow();
  EXPECT_EQ(storedSet("mine"), shown);
}

TEST_F(PackageSets, PackagesThatTheFolderLacksStayInTheirSet) {
  storeSet("elsewhere", {"system", "tunnels"});
  startWithRouter();
  window().choose(IDC_SETS, "elsewhere");
  waitUntil("the set is applied", [&] { return packages().marked() == Texts{"system"}; });
  endWindow();
  EXPECT_EQ(storedSet("elsewhere"), (Texts{"system", "tunnels"}));
}

TEST_F(PackageSets, NamesThatDifferInCaseMeetInTheStore) {
  startWithRouter();
  window().toggle("system");
  saveAs("Edge");
  awaitSaved("Edge");
  window().toggle("routing");
  saveAs("edge");
  awaitSaved("edge");
  EXPECT_THAT(window().lines(IDC_SETS), UnorderedElementsAre("Edge", "edge"));
  endWindow();
  EXPECT_EQ(storedSetNames().size(), 1u);
  EXPECT_THAT(storedSet("EDGE").value_or(Texts{}), UnorderedElementsAre("routing", "system"));
}

TEST_F(PackageSets, TheLastInstallationIsASetAndTheNextRunStartsWithIt) {
  startWithRouter();
  window().toggle("routing");
  window().click(IDC_INSTALL);
  awaitStatus("Waiting reboot", kTargetAddress, kInstallationLimit);
  EXPECT_THAT(window().lines(IDC_SETS), ElementsAre("Previous Install"));
  EXPECT_FALSE(storedSet("Previous Install"));
  endWindow();
  EXPECT_THAT(storedSet("Previous Install").value_or(Texts{}),
              UnorderedElementsAre("routing", "system"));
  stopTarget();
  startWithRouter();
  EXPECT_THAT(packages().marked(), UnorderedElementsAre("routing", "system"));
  EXPECT_THAT(window().lines(IDC_SETS), Contains("Previous Install"));
}

}  // namespace
}  // namespace omniset::test
