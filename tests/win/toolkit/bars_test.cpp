#include <gtest/gtest.h>

#include <memory>

#include "core/error.h"
#include "resources/resource_ids.h"
#include "tests/contract/raised_text.h"
#include "tests/win/toolkit/test_ids.h"
#include "ui/toolkit/button.h"
#include "ui/toolkit/dialog.h"
#include "ui/toolkit/image_list.h"
#include "ui/toolkit/rebar.h"
#include "ui/toolkit/status_bar.h"
#include "ui/toolkit/window_text.h"

namespace omniset::test {

namespace {

std::string classOf(HWND window) {
  char name[64] = "";
  GetClassNameA(window, name, sizeof name);
  return name;
}

class Parent : public Dialog {
 public:
  Parent() { create(IDD_CONTROLS); }
};

// Answers one message itself.
class AnsweringButton : public Button {
 public:
  LRESULT windowProcedure(UINT message, WPARAM word, LPARAM value) override {
    return message == WM_APP ? 42 : Button::windowProcedure(message, word, value);
  }
};

}  // namespace

TEST(StatusBar, ShowsOneText) {
  Parent parent;
  StatusBar bar;
  bar.create(parent.handle());
  EXPECT_EQ("msctls_statusbar32", classOf(bar.handle()));
  EXPECT_EQ("", bar.text());
  bar.setText("2 packages");
  EXPECT_EQ("2 packages", bar.text());
  bar.setText("");
  EXPECT_EQ("", bar.text());
}

TEST(StatusBar, LiesAlongTheLowerEdgeOfItsParent) {
  Parent parent;
  StatusBar bar;
  bar.create(parent.handle());
  for (const int width : {400, 600}) {
    SetWindowPos(parent.handle(), nullptr, 0, 0, width, 300, SWP_NOZORDER | SWP_NOACTIVATE);
    bar.followParent();
    RECT client{}, place{};
    GetClientRect(parent.handle(), &client);
    GetWindowRect(bar.handle(), &place);
    MapWindowPoints(nullptr, parent.handle(), reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(client.right, place.right - place.left);
    EXPECT_EQ(client.bottom, place.bottom);
    EXPECT_EQ(bar.height(), place.bottom - place.top);
    EXPECT_GT(bar.height(), 10);
  }
}

TEST(StatusBar, FailedCreationIsNamedAfterTheCall) {
  StatusBar bar;
  EXPECT_TRUE(raisedText<Error>([&] { bar.create(nullptr); }).starts_with("CreateStatusWindow: "));
}

TEST(StatusBar, IsDestroyedOnRequestAndByItsDestructor) {
  Parent parent;
  HWND handle = nullptr;
  {
    StatusBar bar;
    bar.create(parent.handle());
    handle = bar.handle();
    bar.destroy();
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(nullptr, bar.handle());
    bar.create(parent.handle());
    handle = bar.handle();
    EXPECT_TRUE(IsWindow(handle));
  }
  EXPECT_FALSE(IsWindow(handle));
}

TEST(Button, IsAPushButtonWhoseMessagesPassTheObject) {
  Parent parent;
  AnsweringButton button;
  button.create({.text = "Press", .place = {1, 2, 61, 22}, .parent = parent.handle(), .id = 77});
  EXPECT_EQ("Button", classOf(button.handle()));
  EXPECT_EQ("Press", windowText(button.handle()));
  EXPECT_EQ(77, GetDlgCtrlID(button.handle()));
  EXPECT_EQ(42, SendMessageA(button.handle(), WM_APP, 0, 0));
}

TEST(Button, FailedCreationIsNamedAfterTheCall) {
  Button button;
  EXPECT_TRUE(raisedText<Error>([&] { button.create({}); }).starts_with("CreateWindow BUTTON: "));
  EXPECT_EQ(nullptr, button.handle());
}

TEST(Button, DestructorEndsTheControl) {
  Parent parent;
  auto button = std::make_unique<Button>();
  button->create({.text = "Press", .place = {0, 0, 60, 20}, .parent = parent.handle()});
  const HWND handle = button->handle();
  button.reset();
  EXPECT_FALSE(IsWindow(handle));
}

TEST(Rebar, HoldsABand) {
  INITCOMMONCONTROLSEX wanted{sizeof wanted, ICC_COOL_CLASSES};
  ASSERT_TRUE(InitCommonControlsEx(&wanted));
  Parent parent;
  Rebar rebar;
  rebar.create({.place = {0, 0, 200, 30}, .parent = parent.handle(), .id = 88});
  EXPECT_EQ("ReBarWindow32", classOf(rebar.handle()));
  EXPECT_EQ(0, SendMessageA(rebar.handle(), RB_GETBANDCOUNT, 0, 0));
  REBARBANDINFOA band{};
  // The size of the first version, which every version of the control takes.
  band.cbSize = REBARBANDINFOA_V3_SIZE;
  band.fMask = RBBIM_SIZE;
  band.cx = 50;
  SendMessageA(rebar.handle(), RB_INSERTBANDA, static_cast<WPARAM>(-1),
               reinterpret_cast<LPARAM>(&band));
  EXPECT_EQ(1, SendMessageA(rebar.handle(), RB_GETBANDCOUNT, 0, 0));
}

TEST(Rebar, FailedCreationIsNamedAfterTheCall) {
  Rebar rebar;
  EXPECT_TRUE(raisedText<Error>([&] { rebar.create({}); }).starts_with("CreateWindowEx Rebar: "));
}

TEST(ImageList, HoldsTheIconsInTheSizeOfSmallIcons) {
  const ImageList images({IDI_PACKAGE, IDI_UNMET_DEPENDENCY});
  EXPECT_EQ(2, images.count());
  int width = 0, height = 0;
  ASSERT_TRUE(ImageList_GetIconSize(images.handle(), &width, &height));
  EXPECT_EQ(GetSystemMetrics(SM_CXSMICON), width);
  EXPECT_EQ(GetSystemMetrics(SM_CYSMICON), height);
}

TEST(ImageList, MissingIconIsNamedAfterTheCall) {
  EXPECT_TRUE(raisedText<Error>([] { ImageList({IDI_ROUTER, 999}); }).starts_with("LoadImage: "));
}

}  // namespace omniset::test
