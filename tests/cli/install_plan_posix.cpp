#include <gtest/gtest.h>
#include <sys/stat.h>

#include "cli/bad_input.h"
#include "cli/install_plan.h"
#include "tests/fakes/temp_folder.h"
#include "tests/tools/bdl_builder.h"

namespace omniset::test {

// Every router gets the script's content, so it must be there to be read again.
TEST(InstallPlanPosix, ScriptThatCanBeReadOnlyOnceIsRefused) {
  const TempFolder folder;
  folder.write("system.bdl", buildBdl({.name = "system", .description = "Base"}));
  InstallOptions options;
  options.folder = folder.path();
  options.script = folder.path() + "/pipe";
  ASSERT_EQ(mkfifo(options.script.c_str(), 0600), 0);
  NoPackageRows rows;
  NoStatusText status;
  PackageCatalogue catalogue(rows, status);
  catalogue.scan(folder.path());
  EXPECT_THROW(planInstallation(options, catalogue), BadInput);
}

}  // namespace omniset::test
