#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "resources/resource_ids.h"

namespace omniset::test {

namespace {

// RT_MANIFEST, RT_VERSION and RT_GROUP_ICON, whose macros follow the build's character set.
constexpr int kManifest = 24;
constexpr int kVersion = 16;
constexpr int kGroupIcon = 14;

std::string resource(int id, int type) {
  const HRSRC found = FindResourceA(nullptr, MAKEINTRESOURCEA(id), MAKEINTRESOURCEA(type));
  if (found == nullptr) return {};
  const void* bytes = LockResource(LoadResource(nullptr, found));
  return {static_cast<const char*>(bytes), SizeofResource(nullptr, found)};
}

// The value for the one language of the version resource.
std::string versionText(const std::string& name) {
  std::string block = resource(1, kVersion);
  // The query writes into the block, and reads past the resource proper.
  block.resize(block.size() * 2);
  void* text = nullptr;
  UINT length = 0;
  const std::string path = "\\StringFileInfo\\040904E4\\" + name;
  if (!VerQueryValueA(block.data(), path.c_str(), &text, &length)) return "(none)";
  return static_cast<const char*>(text);
}

int iconWidth(int id, int wanted) {
  const auto icon = static_cast<HICON>(LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(id),
                                                  IMAGE_ICON, wanted, wanted, LR_DEFAULTCOLOR));
  if (icon == nullptr) return 0;
  ICONINFO info{};
  BITMAP bitmap{};
  GetIconInfo(icon, &info);
  GetObjectA(info.hbmColor, sizeof bitmap, &bitmap);
  DeleteObject(info.hbmColor);
  DeleteObject(info.hbmMask);
  DestroyIcon(icon);
  return bitmap.bmWidth;
}

}  // namespace

TEST(ProgramResources, ManifestAsksForModernControlsScalingAndRights) {
  using testing::HasSubstr;
  const std::string manifest = resource(1, kManifest);
  EXPECT_THAT(manifest,
              HasSubstr("name=\"Microsoft.Windows.Common-Controls\" version=\"6.0.0.0\""));
  EXPECT_THAT(manifest, HasSubstr(">true</dpiAware>"));
  EXPECT_THAT(manifest, HasSubstr(">PerMonitorV2, System</dpiAwareness>"));
  EXPECT_THAT(manifest, HasSubstr("level=\"highestAvailable\""));
}

TEST(ProgramResources, VersionNamesTheProduct) {
  EXPECT_EQ("Omniset", versionText("ProductName"));
  EXPECT_EQ("Veltrona", versionText("CompanyName"));
  EXPECT_EQ("Veltrona Router Installer", versionText("FileDescription"));
  EXPECT_EQ(versionText("FileVersion"), versionText("ProductVersion"));
}

TEST(ProgramResources, IconsHaveTheUsualSmallSizes) {
  for (const int id : {IDI_APPLICATION_ICON, IDI_ROUTER, IDI_FIXED_DRIVE, IDI_REMOVABLE_DRIVE,
                       IDI_PACKAGE, IDI_UNMET_DEPENDENCY}) {
    // A group's entries follow a head of three words; the last of these is their count.
    const std::string group = resource(id, kGroupIcon);
    ASSERT_GE(group.size(), 6u) << id;
    EXPECT_GE(group[4], 5) << id;
    for (const int size : {16, 20, 24, 32, 48}) EXPECT_EQ(size, iconWidth(id, size)) << id;
  }
}

}  // namespace omniset::test
