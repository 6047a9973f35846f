// A catalogue over a folder of the test.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "fake_package_view.h"
#include "packages/package_catalogue.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/temp_folder.h"
#include "tests/tools/bdl_builder.h"

namespace omniset::test {

class CatalogueTest : public testing::Test {
 protected:
  // Makes the folder the catalogue's own, so that addPack() loads from it in an order that the
  // test chooses, which a scan leaves to the system.
  CatalogueTest() { catalogue.scan(folder.path()); }

  void write(const std::string& fileName, const BdlPackage& package) {
    folder.write(fileName, buildBdl(package));
  }

  // Writes the package into NAME.bdl, or into the file named, and loads it.
  void add(const BdlPackage& package, std::string fileName = {}) {
    if (fileName.empty()) fileName = package.name + ".bdl";
    write(fileName, package);
    catalogue.addPack(fileName);
  }

  TempFolder folder;
  CapturedTrace traced;
  FakePackageRows rows;
  FakeStatusText status;
  PackageCatalogue catalogue{rows, status};
};

}  // namespace omniset::test
