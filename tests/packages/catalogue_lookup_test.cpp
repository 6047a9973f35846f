#include <stdexcept>

#include "catalogue_fixture.h"

namespace omniset::test {
namespace {

class CatalogueLookup : public CatalogueTest {
 protected:
  CatalogueLookup() {
    add({.name = "system", .version = 1}, "first.bdl");
    add({.name = "routing"}, "second.bdl");
    add({.name = "system", .version = 2}, "third.bdl");
    add({.name = "dhcp"}, "fourth.bdl");
  }
};

TEST_F(CatalogueLookup, FindsARecordByItsFileName) {
  EXPECT_EQ(catalogue.findByFileName("first.bdl"), 0);
  EXPECT_EQ(catalogue.findByFileName("fourth.bdl"), 3);
}

TEST_F(CatalogueLookup, FileNamesAreComparedExactly) {
  EXPECT_EQ(catalogue.findByFileName("First.bdl"), -1);
  EXPECT_EQ(catalogue.findByFileName("first"), -1);
  EXPECT_EQ(catalogue.findByFileName(""), -1);
}

TEST_F(CatalogueLookup, FileLoadedTwiceIsFoundAtItsFirstRecord) {
  catalogue.addPack("second.bdl");
  EXPECT_EQ(catalogue.count(), 5);
  EXPECT_EQ(catalogue.findByFileName("second.bdl"), 1);
}

TEST_F(CatalogueLookup, SearchByNameGoesOnBehindThePreviousFind) {
  EXPECT_EQ(catalogue.findByName("system", true), 0);
  EXPECT_EQ(catalogue.findByName("system", false), 2);
  EXPECT_EQ(catalogue.findByName("system", false), -1);
}

TEST_F(CatalogueLookup, EndedSearchStaysEnded) {
  EXPECT_EQ(catalogue.findByName("absent", true), -1);
  EXPECT_EQ(catalogue.findByName("system", false), -1);
  EXPECT_EQ(catalogue.findByName("dhcp", false), -1);
}

TEST_F(CatalogueLookup, RestartBeginsAtTheFirstRecord) {
  EXPECT_EQ(catalogue.findByName("dhcp", true), 3);
  EXPECT_EQ(catalogue.findByName("system", true), 0);
}

TEST_F(CatalogueLookup, SearchesShareOneCursor) {
  EXPECT_EQ(catalogue.findByName("routing", true), 1);
  EXPECT_EQ(catalogue.findByName("system", false), 2);
}

TEST_F(CatalogueLookup, FirstSearchNeedsNoRestart) {
  EXPECT_EQ(catalogue.findByName("system", false), 0);
}

TEST_F(CatalogueLookup, EmptyCatalogueFindsNothing) {
  PackageCatalogue empty(rows, status);
  EXPECT_EQ(empty.findByName("system", true), -1);
  EXPECT_EQ(empty.findByName("system", false), -1);
  EXPECT_EQ(empty.findByFileName("first.bdl"), -1);
  EXPECT_EQ(empty.sizeOf("first.bdl"), 0);
  EXPECT_EQ(empty.count(), 0);
}

TEST_F(CatalogueLookup, NewScanRestartsTheSearch) {
  EXPECT_EQ(catalogue.findByName("dhcp", true), 3);
  catalogue.scan(folder.path());
  const int first = catalogue.findByName("system", false);
  EXPECT_EQ(first, catalogue.findByName("system", true));
  EXPECT_GE(first, 0);
}

TEST_F(CatalogueLookup, FileNameAtGivesTheNameOfARecord) {
  EXPECT_EQ(catalogue.fileNameAt(2), "third.bdl");
  EXPECT_THROW(catalogue.fileNameAt(4), std::out_of_range);
  EXPECT_THROW(catalogue.fileNameAt(-1), std::out_of_range);
}

TEST_F(CatalogueLookup, SizeOfAnUnknownFileIsZero) {
  EXPECT_GT(catalogue.sizeOf("first.bdl"), 0);
  EXPECT_EQ(catalogue.sizeOf("unknown.bdl"), 0);
}

}  // namespace
}  // namespace omniset::test
