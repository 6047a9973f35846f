#include "ui/pxe_boot.h"

#include <gtest/gtest.h>

#include "core/ipv4_address.h"
#include "resources/resource_ids.h"
#include "tests/win/toolkit/drive_modal.h"

namespace omniset::test {

namespace {

constexpr std::uint32_t kAddress = ipv4(192, 168, 88, 10);

struct Outcome {
  bool accepted;
  BootServerSettings settings;
};

Outcome ask(const BootServerSettings& present, std::function<void(Driven<PXEBoot>&)> drive) {
  Driven<PXEBoot> dialog(present);
  dialog.drive = std::move(drive);
  const bool accepted = dialog.ask(nullptr);
  return {accepted, dialog.settings()};
}

}  // namespace

TEST(PXEBoot, ShowsTheSettings) {
  ask({true, kAddress}, [](auto& open) {
    EXPECT_TRUE(open.isChecked(IDC_BOOT_SERVER_ENABLED));
    EXPECT_EQ("192.168.88.10", open.text(IDC_BOOT_CLIENT_ADDRESS));
    EXPECT_TRUE(open.isEnabled(IDC_BOOT_CLIENT_ADDRESS));
    EXPECT_EQ(open.control(IDC_BOOT_SERVER_ENABLED), GetFocus());
    pressButton(open, IDC_NET_BOOTING_CANCEL);
  });
  ask({false, 0}, [](auto& open) {
    EXPECT_FALSE(open.isChecked(IDC_BOOT_SERVER_ENABLED));
    EXPECT_EQ("0.0.0.0", open.text(IDC_BOOT_CLIENT_ADDRESS));
    EXPECT_FALSE(open.isEnabled(IDC_BOOT_CLIENT_ADDRESS));
    pressButton(open, IDC_NET_BOOTING_CANCEL);
  });
}

TEST(PXEBoot, OkTakesBothValues) {
  const Outcome enabled = ask({false, 0}, [](auto& open) {
    SendMessageA(open.control(IDC_BOOT_SERVER_ENABLED), BM_CLICK, 0, 0);
    EXPECT_TRUE(open.isEnabled(IDC_BOOT_CLIENT_ADDRESS));
    open.setText(IDC_BOOT_CLIENT_ADDRESS, "192.168.88.10");
    pressButton(open, IDC_NET_BOOTING_OK);
  });
  EXPECT_TRUE(enabled.accepted);
  EXPECT_TRUE(enabled.settings.enabled);
  EXPECT_EQ(kAddress, enabled.settings.clientAddress);
  const Outcome disabled = ask(enabled.settings, [](auto& open) {
    SendMessageA(open.control(IDC_BOOT_SERVER_ENABLED), BM_CLICK, 0, 0);
    EXPECT_FALSE(open.isEnabled(IDC_BOOT_CLIENT_ADDRESS));
    pressButton(open, IDC_NET_BOOTING_OK);
  });
  EXPECT_TRUE(disabled.accepted);
  EXPECT_FALSE(disabled.settings.enabled);
  EXPECT_EQ(kAddress, disabled.settings.clientAddress);
}

TEST(PXEBoot, EnterIsOk) {
  const Outcome outcome = ask({true, kAddress}, [](auto& open) {
    pressKey(open.control(IDC_BOOT_CLIENT_ADDRESS), VK_RETURN);
  });
  EXPECT_TRUE(outcome.accepted);
}

TEST(PXEBoot, CancelEscapeAndClosingChangeNothing) {
  const std::function<void(Driven<PXEBoot>&)> ways[] = {
      [](auto& open) { pressButton(open, IDC_NET_BOOTING_CANCEL); },
      [](auto& open) { pressKey(open.control(IDC_BOOT_SERVER_ENABLED), VK_ESCAPE); },
      [](auto& open) { PostMessageA(open.handle(), WM_SYSCOMMAND, SC_CLOSE, 0); },
  };
  for (const auto& way : ways) {
    const Outcome outcome = ask({true, kAddress}, [&](auto& open) {
      open.setText(IDC_BOOT_CLIENT_ADDRESS, "10.0.0.1");
      way(open);
    });
    EXPECT_FALSE(outcome.accepted);
    EXPECT_EQ(kAddress, outcome.settings.clientAddress);
  }
}

}  // namespace omniset::test
