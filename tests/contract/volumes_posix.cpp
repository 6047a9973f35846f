// The volume of an image file, as on drives that are not mounted.
#include <unistd.h>

#include "core/path.h"
#include "media/format_drive.h"
#include "tests/contract/volumes_contract.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_volumes.h"
#include "tests/fakes/temp_folder.h"

namespace omniset::test {
namespace {

class ImageRoot {
 public:
  ImageRoot() {
    const SilentTrace silence;
    const std::string image = folder_.write("disk.img", "");
    EXPECT_EQ(truncate(image.c_str(), 8 << 20), 0);
    services_ = makeMediaServices(fakeImage, {'D', image});
    Event stopEvent(true, false);
    formatDrive(services_, 'D', stopEvent);
  }
  Volumes& volumes() { return *services_.volumes; }
  std::string path(const std::string& name) { return "D:/" + name; }

 private:
  TempFolder folder_;
  MediaServices services_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Image, VolumesContract, ::testing::Types<ImageRoot>);

}  // namespace
}  // namespace omniset::test
