// The dialog "Network Booting Settings", and what the boot service does with what is entered there.
#include <gmock/gmock.h>

#include "tests/win/driver/top_windows.h"
#include "tests/win/window/asking_pc.h"
#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

// This computer's, one beside it, and one on no network of it.
constexpr char kOwn[] = "192.168.88.1";
constexpr char kNearby[] = "192.168.88.10";
constexpr DWORD kNearbyStored = 0x0A58A8C0;
constexpr char kFar[] = "10.77.0.10";
// Long enough for a service that would answer.
constexpr Milliseconds kSilence{2'500};

class NetBooting : public WindowTest {
 protected:
  DrivenDialog openDialog() {
    window().click(IDC_NET_BOOTING);
    return window().awaitDialog("Network Booting Settings");
  }

  void tick(DrivenDialog& dialog, bool on = true) {
    if (dialog.isChecked(IDC_BOOT_SERVER_ENABLED) == on) return;
    dialog.click(IDC_BOOT_SERVER_ENABLED);
    dialog.awaitEnabled(IDC_BOOT_CLIENT_ADDRESS, on);
  }

  void confirm(DrivenDialog& dialog) {
    dialog.click(IDC_NET_BOOTING_OK);
    dialog.awaitClosed();
  }

  void enable(const std::string& address = kNearby) {
    DrivenDialog dialog = openDialog();
    tick(dialog);
    dialog.type(IDC_BOOT_CLIENT_ADDRESS, address);
    confirm(dialog);
  }

  void disable() {
    DrivenDialog dialog = openDialog();
    tick(dialog, false);
    confirm(dialog);
  }

  void expectShown(bool enabled, const std::string& address) {
    DrivenDialog dialog = openDialog();
    EXPECT_EQ(dialog.isChecked(IDC_BOOT_SERVER_ENABLED), enabled);
    EXPECT_EQ(dialog.text(IDC_BOOT_CLIENT_ADDRESS), address);
    EXPECT_EQ(dialog.isEnabled(IDC_BOOT_CLIENT_ADDRESS), enabled);
    dialog.click(IDC_NET_BOOTING_CANCEL);
    dialog.awaitClosed();
  }

  // Presses "OK", which must be refused.
  void expectRefused(DrivenDialog& dialog) {
    dialog.click(IDC_NET_BOOTING_OK);
    DrivenMessageBox box = window().awaitBox("Error");
    EXPECT_EQ(box.text(), "Bad client address");
    EXPECT_EQ(box.buttons(), Texts{"OK"});
    box.answer("OK");
    dialog.awaitText(IDC_BOOT_CLIENT_ADDRESS, "");
    EXPECT_TRUE(dialog.isOpen());
  }

  // The sentence about the service's end, once.
  void expectFailureIsTold() {
    DrivenMessageBox box = window().awaitBox("Error");
    EXPECT_THAT(box.text(), AllOf(StartsWith("Network booting needs the UDP ports 67 and 69"),
                                  HasSubstr("bind failed")));
    EXPECT_EQ(box.buttons(), Texts{"OK"});
    box.answer("OK");
    awaitTicks();
    EXPECT_TRUE(window().hasOnlyMainWindow());
  }

  // What the timer does comes about every 250 ms.
  void awaitTicks() {
    Sleep(1'000);
    window().settle();
  }

  void awaitTrace(const std::string& line) {
    waitUntil("the trace says \"" + line + "\"", [&] {
      const Texts lines = window().process().outputLines();
      return std::find(lines.begin(), lines.end(), line) != lines.end();
    });
  }
};

TEST_F(NetBooting, IsOffOnAComputerOnWhichItNeverRan) {
  startWindow();
  EXPECT_THAT(window().process().outputLines(), Contains("conf: en:0, addr:0.0.0.0"));
  expectShown(false, "0.0.0.0");
}

TEST_F(NetBooting, TheDialogHasItsTexts) {
  startWindow();
  DrivenDialog dialog = openDialog();
  EXPECT_THAT(dialog.allTexts(),
              IsSupersetOf({"There you can set parameters for PXE (Pre-boot eXecution Environment) "
                            "and Etherboot server that can boot your router over network",
                            "Boot Server enabled", "Client IP address:", "OK", "Cancel"}));
}

TEST_F(NetBooting, ShowsWhatIsStored) {
  storeNumber("PXE Enabled", 7);
  storeNumber("PXE Client Address", kNearbyStored);
  startWindow();
  EXPECT_THAT(window().process().outputLines(), Contains("conf: en:1, addr:192.168.88.10"));
  expectShown(true, kNearby);
}

TEST_F(NetBooting, TheBoxEnablesTheField) {
  startWindow();
  DrivenDialog dialog = openDialog();
  EXPECT_FALSE(dialog.isEnabled(IDC_BOOT_CLIENT_ADDRESS));
  dialog.click(IDC_BOOT_SERVER_ENABLED);
  dialog.awaitEnabled(IDC_BOOT_CLIENT_ADDRESS);
  dialog.click(IDC_BOOT_SERVER_ENABLED);
  dialog.awaitEnabled(IDC_BOOT_CLIENT_ADDRESS, false);
}

TEST_F(NetBooting, WhatIsConfirmedOutlivesTheProgram) {
  startWindow();
  enable();
  awaitTrace("new conf: en:1, addr:192.168.88.10");
  expectShown(true, kNearby);
  EXPECT_EQ(storedNumber("PXE Enabled"), std::nullopt);
  restartWindow();
  EXPECT_EQ(storedNumber("PXE Enabled"), 1u);
  EXPECT_EQ(storedNumber("PXE Client Address"), kNearbyStored);
  expectShown(true, kNearby);
  disable();
  restartWindow();
  EXPECT_EQ(storedNumber("PXE Enabled"), 0u);
  EXPECT_EQ(storedNumber("PXE Client Address"), kNearbyStored);
  expectShown(false, kNearby);
}

TEST_F(NetBooting, EnterConfirms) {
  startWindow();
  DrivenDialog dialog = openDialog();
  tick(dialog);
  dialog.type(IDC_BOOT_CLIENT_ADDRESS, kNearby);
  dialog.press(IDC_BOOT_CLIENT_ADDRESS, VK_RETURN);
  dialog.awaitClosed();
  expectShown(true, kNearby);
}

TEST_F(NetBooting, CancelEscapeAndTheCloseButtonChangeNothing) {
  startWindow();
  const auto leaveBy = [this](const std::function<void(DrivenDialog&)>& way) {
    DrivenDialog dialog = openDialog();
    tick(dialog);
    dialog.type(IDC_BOOT_CLIENT_ADDRESS, kNearby);
    way(dialog);
    dialog.awaitClosed();
    expectShown(false, "0.0.0.0");
  };
  leaveBy([](DrivenDialog& dialog) { dialog.click(IDC_NET_BOOTING_CANCEL); });
  leaveBy([](DrivenDialog& dialog) { dialog.press(IDC_BOOT_CLIENT_ADDRESS, VK_ESCAPE); });
  leaveBy([](DrivenDialog& dialog) { dialog.close(); });
  EXPECT_THAT(window().process().outputLines(), ::testing::Not(Contains(StartsWith("new conf:"))));
}

TEST_F(NetBooting, WhatIsNoAddressIsRefusedAndTheFieldEmptied) {
  startWindow();
  DrivenDialog dialog = openDialog();
  tick(dialog);
  for (const char* text : {"192.168.88", "192.168.88.256", "router", "255.255.255.255"}) {
    dialog.type(IDC_BOOT_CLIENT_ADDRESS, text);
    dialog.focus(IDC_NET_BOOTING_OK);
    expectRefused(dialog);
    dialog.awaitFocus(IDC_BOOT_CLIENT_ADDRESS);
  }
  expectRefused(dialog);
  dialog.type(IDC_BOOT_CLIENT_ADDRESS, kNearby);
  confirm(dialog);
  expectShown(true, kNearby);
}

TEST_F(NetBooting, WhatIsNoAddressIsRefusedInTheGreyedFieldToo) {
  startWindow();
  DrivenDialog dialog = openDialog();
  tick(dialog);
  dialog.type(IDC_BOOT_CLIENT_ADDRESS, "192.168.88.");
  tick(dialog, false);
  dialog.focus(IDC_NET_BOOTING_OK);
  expectRefused(dialog);
  EXPECT_FALSE(dialog.isEnabled(IDC_BOOT_CLIENT_ADDRESS));
  dialog.awaitFocus(IDC_BOOT_SERVER_ENABLED);
  expectRefused(dialog);
  dialog.click(IDC_NET_BOOTING_CANCEL);
  dialog.awaitClosed();
  expectShown(false, "0.0.0.0");
}

TEST_F(NetBooting, AnAddressOnNoSubnetOfThisComputerIsWarnedOfAndKept) {
  startWindow();
  enable(kFar);
  DrivenMessageBox box = window().awaitBox("Warning");
  EXPECT_THAT(box.text(), AllOf(StartsWith("The client address 10.77.0.10 is on no subnet of this"),
                                HasSubstr("192.168.88.1 (netmask 255.255.255.0)")));
  EXPECT_EQ(box.buttons(), Texts{"OK"});
  awaitTrace("new conf: en:1, addr:10.77.0.10");
  box.answer("OK");
  expectShown(true, kFar);
}

TEST_F(NetBooting, AnAddressIsNotWarnedOfWhileTheServiceIsOff) {
  startWindow();
  enable(kFar);
  window().awaitBox("Warning").answer("OK");
  disable();
  awaitTrace("new conf: en:0, addr:10.77.0.10");
  EXPECT_TRUE(window().hasOnlyMainWindow());
}

TEST_F(NetBooting, ABootRequestIsAnsweredWhileTheServiceIsEnabled) {
  AskingPc client;
  startWindow();
  EXPECT_FALSE(client.ask(kSilence));
  enable();
  std::vector<std::uint8_t> reply = client.askUntilAnswered();
  ASSERT_EQ(reply.size(), 245u);
  EXPECT_EQ(addressAt(reply, 16), kNearby);
  EXPECT_EQ(addressAt(reply, 20), kOwn);
  // As it was sent, but for what the service fills in.
  std::vector<std::uint8_t> expected(client.request().begin(), client.request().begin() + 245);
  expected[0] = 2;
  std::copy(reply.begin() + 16, reply.begin() + 24, expected.begin() + 16);
  std::fill(expected.begin() + 108, expected.begin() + 236, std::uint8_t{0});
  const std::string file = "/image";
  std::copy(file.begin(), file.end(), expected.begin() + 108);
  const std::vector<std::uint8_t> options{13, 2, 0, 22, 255};
  std::copy(options.begin(), options.end(), expected.begin() + 240);
  EXPECT_EQ(reply, expected);
  disable();
  client.askUntilUnanswered();
  EXPECT_FALSE(client.ask(kSilence));
}

TEST_F(NetBooting, AnotherAddressIsGivenOutOnceItIsEntered) {
  AskingPc client;
  startWindow();
  enable();
  client.askUntilAnswered();
  enable("192.168.88.11");
  waitUntil("the other address is given out",
            [&] { return addressAt(client.askUntilAnswered(), 16) == "192.168.88.11"; });
}

TEST_F(NetBooting, TheServiceAnswersFromTheStartWhenItWasLeftEnabled) {
  storeNumber("PXE Enabled", 1);
  storeNumber("PXE Client Address", kNearbyStored);
  startWindow();
  AskingPc client;
  EXPECT_EQ(addressAt(client.askUntilAnswered(), 16), kNearby);
}

TEST_F(NetBooting, TheProgramEndsWhileAClientIsExpectedToFetchItsImages) {
  AskingPc client;
  startWindow();
  enable();
  client.askUntilAnswered();
  endWindow();
  EXPECT_EQ(window().process().outputLines().back(), "exit");
}

TEST_F(NetBooting, TheProgramEndsWhileAnImageIsSent) {
  AskingPc client;
  startWindow();
  enable(kOwn);
  window().awaitBox("Warning").answer("OK");
  client.askUntilAnswered();
  const std::vector<std::uint8_t> block = client.askForImage();
  ASSERT_EQ(block.size(), 4u + 512u);
  EXPECT_EQ(std::vector<std::uint8_t>(block.begin(), block.begin() + 4),
            (std::vector<std::uint8_t>{0, 3, 0, 1}));
  endWindow();
  EXPECT_EQ(window().process().outputLines().back(), "exit");
}

TEST_F(NetBooting, ATakenPortIsToldOnceAndFreedServesAfterTheNextOk) {
  auto occupant = std::make_unique<UdpPort>(67);
  storeNumber("PXE Enabled", 1);
  storeNumber("PXE Client Address", kNearbyStored);
  startWindow();
  expectFailureIsTold();
  enable();
  expectFailureIsTold();
  occupant.reset();
  enable();
  AskingPc client;
  EXPECT_EQ(addressAt(client.askUntilAnswered(), 16), kNearby);
}

TEST_F(NetBooting, ATakenPortIsNotToldUntilTheServiceIsEnabled) {
  const UdpPort occupant(67);
  startWindow();
  awaitTicks();
  EXPECT_TRUE(window().hasOnlyMainWindow());
  disable();
  awaitTicks();
  EXPECT_TRUE(window().hasOnlyMainWindow());
  enable();
  expectFailureIsTold();
  endWindow();
  EXPECT_EQ(storedNumber("PXE Enabled"), 1u);
}

TEST_F(NetBooting, ATakenPortIsNotToldWhileADialogIsOpen) {
  startWindow();
  enable();
  AskingPc client;
  auto occupant = std::make_unique<UdpPort>(69);
  DrivenDialog dialog = openDialog();
  client.askUntilAnswered();
  awaitTicks();
  EXPECT_THAT(topWindows(window().process()),
              UnorderedElementsAre(dialog.handle(), window().handle()));
  dialog.click(IDC_NET_BOOTING_CANCEL);
  expectFailureIsTold();
  EXPECT_FALSE(client.ask(kSilence));
  occupant.reset();
  enable();
  client.askUntilAnswered();
  awaitTicks();
  EXPECT_TRUE(window().hasOnlyMainWindow());
}

TEST_F(NetBooting, ATakenTftpPortIsToldAtOnce) {
  const UdpPort occupant(69);
  startWindow();
  enable();
  expectFailureIsTold();
}

}  // namespace
}  // namespace omniset::test
