#include "core/error.h"
#include "ui/registry.h"
#include "workflow_fixture.h"

namespace omniset::test {

namespace {
using Names = std::vector<std::string>;

struct WorkflowSets : WorkflowTest {
  void storeSet(const std::string& name, const Names& packages) {
    Registry(registry, kPackageSetsKey).setStringList(name, packages);
  }
  Names storedSets() { return Registry(registry, kPackageSetsKey).valueNames(); }
};

}  // namespace

TEST_F(WorkflowSets, SavedSetIsChosenAndNotYetStored) {
  selectedTarget();
  toggle("routing");
  person.names = {"edge"};
  workflow.saveSet();
  EXPECT_EQ(Names{"Router x"}, person.proposals);
  EXPECT_EQ(routers.find(routerMac(1))->packages, set("edge"));
  EXPECT_EQ(Names{"edge"}, view.sets);
  EXPECT_EQ("edge", view.chosen);
  EXPECT_FALSE(view.controls.saveSet);
  EXPECT_TRUE(view.controls.deleteSet);
  EXPECT_TRUE(storedSets().empty());
}

TEST_F(WorkflowSets, WithoutAnEntryNothingIsSaved) {
  person.names = {"edge"};
  workflow.saveSet();
  EXPECT_TRUE(person.proposals.empty());
  EXPECT_TRUE(sets.names().empty());
}

TEST_F(WorkflowSets, EmptySelectionIsRefused) {
  selectedTarget();
  workflow.saveSet();
  EXPECT_EQ(Names{"Error: Cannot create empty package set"}, person.said);
  EXPECT_TRUE(person.proposals.empty());
}

TEST_F(WorkflowSets, TakenNameIsRefusedAndAskedAgain) {
  selectedTarget();
  toggle("system");
  sets.add("edge", {"routing"});
  person.names = {"edge", "", "core"};
  workflow.saveSet();
  EXPECT_EQ((Names{"Error: Package set with this name already exists",
                   "Error: A package set needs a name"}),
            person.said);
  EXPECT_EQ((Names{"Router x", "Router x", "Router x"}), person.proposals);
  EXPECT_EQ(Names{"routing"}, set("edge"));
  EXPECT_EQ(Names{"system"}, set("core"));
}

TEST_F(WorkflowSets, NameThatDiffersInCaseIsAnother) {
  selectedTarget();
  toggle("system");
  sets.add("edge", {"routing"});
  person.names = {"Edge"};
  workflow.saveSet();
  EXPECT_EQ((Names{"Edge", "edge"}), sets.names());
}

TEST_F(WorkflowSets, PreviousInstallIsTakenOnceSomethingWasInstalled) {
  selectedTarget();
  toggle("system");
  workflow.install();
  workflow.cancel();
  person.names = {kPreviousInstall};
  workflow.saveSet();
  EXPECT_EQ(Names{"Error: Package set with this name already exists"}, person.said);
}

TEST_F(WorkflowSets, CancelledPromptSavesNothing) {
  selectedTarget();
  toggle("system");
  person.names = {std::nullopt};
  workflow.saveSet();
  EXPECT_TRUE(sets.names().empty());
}

TEST_F(WorkflowSets, PackagesAreThoseOfTheClickEvenIfTheEntryGoes) {
  selectedTarget();
  toggle("system");
  person.names = {"edge"};
  person.whileAsked = [&] {
    clock.advance(61 * kSecond);
    workflow.poll();
  };
  workflow.saveSet();
  EXPECT_EQ(Names{"system"}, set("edge"));
}

TEST_F(WorkflowSets, ChosenSetIsAppliedToTheEntryAndEditsStay) {
  selectedTarget();
  view.typed.address = "10.0.0.1";
  sets.add("edge", {"routing", "not in this folder"});
  view.chosen = "edge";
  workflow.applyChosenSet();
  EXPECT_EQ((Names{"routing", "not in this folder"}), routers.find(routerMac(1))->packages);
  EXPECT_TRUE(isMarked("routing"));
  EXPECT_TRUE(isMarked("system"));
  EXPECT_EQ("Selected 2 package(s)", view.title);
  EXPECT_EQ("10.0.0.1", view.typed.address);
  EXPECT_FALSE(view.controls.saveSet);
  EXPECT_TRUE(view.controls.deleteSet);
}

TEST_F(WorkflowSets, ChangedSelectionCanBeSavedAgain) {
  selectedTarget();
  sets.add("edge", {"routing"});
  view.chosen = "edge";
  workflow.applyChosenSet();
  workflow.selectNoPackages();
  EXPECT_TRUE(view.controls.saveSet);
}

TEST_F(WorkflowSets, WithoutAnEntryAChosenSetCanBeDeletedOnly) {
  sets.add("edge", {"routing"});
  view.chosen = "edge";
  workflow.applyChosenSet();
  EXPECT_TRUE(view.controls.deleteSet);
  EXPECT_FALSE(view.controls.saveSet);
  EXPECT_FALSE(isMarked("routing"));
}

TEST_F(WorkflowSets, ChosenSetDoesNotTouchARouterThatInstalls) {
  selectedTarget();
  toggle("system");
  workflow.install();
  sets.add("edge", {"routing"});
  view.chosen = "edge";
  workflow.applyChosenSet();
  EXPECT_EQ(Names{"system"}, routers.find(routerMac(1))->packages);
}

TEST_F(WorkflowSets, DeletedSetIsGoneFromTheStoreAtOnce) {
  storeSet("edge", {"routing"});
  storeSet("core", {"system"});
  sets.add("edge", {"routing"});
  view.addSet("edge");
  view.chosen = "edge";
  selectedTarget();
  workflow.deleteSet();
  EXPECT_EQ(Names{"core"}, storedSets());
  EXPECT_EQ(nullptr, sets.find("edge"));
  EXPECT_TRUE(view.sets.empty());
  EXPECT_FALSE(view.chosen.has_value());
  EXPECT_FALSE(view.controls.deleteSet);
  EXPECT_TRUE(view.controls.saveSet);
  EXPECT_TRUE(person.said.empty());
}

// By then the line has gone from the list, but the set is still there: it is stored at the end.
TEST_F(WorkflowSets, StoreThatCannotBeOpenedRaisesAndKeepsTheSet) {
  sets.add("edge", {"routing"});
  view.addSet("edge");
  view.chosen = "edge";
  registry.failing = {std::string("open ") + kPackageSetsKey};
  try {
    workflow.deleteSet();
    FAIL() << "nothing was raised";
  } catch (const Error& failure) {
    EXPECT_TRUE(std::string(failure.what()).starts_with("RegCreateKeyEx: ")) << failure.what();
  }
  EXPECT_TRUE(view.sets.empty());
  EXPECT_NE(nullptr, sets.find("edge"));
}

TEST_F(WorkflowSets, WithoutAChoiceNothingIsDeleted) {
  storeSet("edge", {"routing"});
  sets.add("edge", {"routing"});
  workflow.deleteSet();
  EXPECT_EQ(Names{"edge"}, storedSets());
}

}  // namespace omniset::test
