// How the events of a boot are shown.

#include "cli/boot_event.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "boot/boot_images.h"
#include "cli/json_lines.h"
#include "core/ipv4_address.h"

namespace omniset::test {

namespace {

using Kind = BootEvent::Kind;

const MacAddress kMac{{2, 0, 0, 0, 1, 10}};

BootEvent answered() {
  return {.kind = Kind::kAnswered, .client = kMac, .address = ipv4(192, 168, 88, 20)};
}
BootEvent refused(const std::string& reason) {
  return {.kind = Kind::kRefused, .client = kMac, .text = reason};
}
BootEvent requested(int image, const std::string& file) {
  return {.kind = Kind::kRequested, .client = kMac, .image = image, .text = file};
}
BootEvent sent(int image, std::size_t length) {
  return {.kind = Kind::kSent, .client = kMac, .image = image, .length = length};
}
BootEvent gaveUp(int image, bool hadRequested) {
  return {.kind = Kind::kGaveUp, .client = kMac, .image = image, .requested = hadRequested};
}
BootEvent done() {
  return {.kind = Kind::kDone, .client = kMac};
}

// Without the MAC address that each line begins with.
std::string shown(const BootEvent& event) {
  const std::string line = bootEventLine(event);
  const std::string start = "02:00:00:00:01:0A  ";
  EXPECT_TRUE(line.starts_with(start)) << line;
  return line.substr(std::min(start.size(), line.size()));
}

std::string everyByte() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

}  // namespace

TEST(BootEventLine, TellsEachStepOfABoot) {
  EXPECT_EQ(shown(answered()), "asked to boot, gets 192.168.88.20");
  EXPECT_EQ(shown(requested(kNetworkBootProgramImage, "/image")),
            "asked for '/image', gets the boot program");
  EXPECT_EQ(shown(sent(kNetworkBootProgramImage, 10824)), "boot program sent (10824 bytes)");
  EXPECT_EQ(shown(sent(kNetworkConfigurationImage, 64)), "boot configuration sent (64 bytes)");
  EXPECT_EQ(shown(sent(kKernelImage, 1290752)), "kernel sent (1290752 bytes)");
  EXPECT_EQ(shown(sent(kRamDiskImage, 96695)), "RAM disk sent (96695 bytes)");
  EXPECT_EQ(shown(sent(kEtherbootImage, 1406819)), "Etherboot image sent (1406819 bytes)");
  EXPECT_EQ(shown(done()), "all images sent; it starts the installer system now");
}

TEST(BootEventLine, RefusalSaysWhy) {
  EXPECT_EQ(shown(refused("it has been installed")),
            "asked to boot, gets no answer: it has been installed");
}

TEST(BootEventLine, SilenceIsTellableFromNeverAsking) {
  EXPECT_EQ(shown(gaveUp(kKernelImage, true)),
            "fell silent while it got the kernel; it may boot again");
  EXPECT_EQ(shown(gaveUp(kKernelImage, false)), "did not ask for the kernel; it may boot again");
}

TEST(BootEventLine, ClientThatFetchesNothingHasALikelyCause) {
  for (const int first : {kNetworkBootProgramImage, kEtherbootImage}) {
    const std::string line = shown(gaveUp(first, false));
    EXPECT_TRUE(line.starts_with("fetched nothing: check that no firewall"));
    EXPECT_NE(line.find("UDP port 69"), std::string::npos);
    EXPECT_NE(line.find("no other DHCP server"), std::string::npos);
  }
}

TEST(BootEventLine, ClientThatFallsSilentWithinItsFirstImageHasALikelyCause) {
  for (const int first : {kNetworkBootProgramImage, kEtherbootImage}) {
    const std::string line = shown(gaveUp(first, true));
    EXPECT_TRUE(line.starts_with("fell silent while it got the " + bootImageName(first))) << line;
    EXPECT_NE(line.find("no firewall keeps it from the UDP ports from 32768 on"), std::string::npos)
        << line;
  }
}

TEST(BootEventLine, FileNameOfAnyBytesMovesNoTerminal) {
  EXPECT_EQ(shown(requested(kKernelImage, "a\x1b[2J\nb")), "asked for 'a?[2J b', gets the kernel");
  const std::string line = bootEventLine(requested(kKernelImage, everyByte()));
  EXPECT_TRUE(std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '~'; }));
}

TEST(BootEventLine, LongFileNameIsCut) {
  const std::string line = shown(requested(kKernelImage, std::string(250, 'x')));
  EXPECT_EQ(line, "asked for '" + std::string(60, 'x') + "...', gets the kernel");
  EXPECT_EQ(shown(requested(kKernelImage, std::string(60, 'x'))),
            "asked for '" + std::string(60, 'x') + "', gets the kernel");
}

TEST(BootJson, HasTheStepAndWhatBelongsToIt) {
  const std::string mac = "\"mac\":\"02:00:00:00:01:0A\"";
  const std::string start = "{\"event\":\"boot\",\"step\":";
  EXPECT_EQ(bootJson(answered()),
            start + "\"answered\"," + mac + ",\"address\":\"192.168.88.20\"}\n");
  EXPECT_EQ(bootJson(refused("it has been installed")),
            start + "\"refused\"," + mac + ",\"text\":\"it has been installed\"}\n");
  EXPECT_EQ(
      bootJson(requested(kKernelImage, "linux")),
      start + "\"requested\"," + mac + ",\"image\":120,\"name\":\"kernel\",\"file\":\"linux\"}\n");
  EXPECT_EQ(bootJson(sent(kKernelImage, 1290752)),
            start + "\"sent\"," + mac + ",\"image\":120,\"name\":\"kernel\",\"bytes\":1290752}\n");
  EXPECT_EQ(
      bootJson(gaveUp(kRamDiskImage, true)),
      start + "\"gave-up\"," + mac + ",\"image\":121,\"name\":\"RAM disk\",\"requested\":true}\n");
  EXPECT_EQ(bootJson(done()), start + "\"done\"," + mac + "}\n");
}

TEST(BootJson, IsOneLineWhateverTheFileNameHolds) {
  const std::string line = bootJson(requested(kKernelImage, everyByte()));
  EXPECT_TRUE(
      std::all_of(line.begin(), line.end() - 1, [](char c) { return c >= ' ' && c <= '~'; }));
  const auto object = nlohmann::json::parse(line);
  EXPECT_EQ(object["file"].get<std::string>().substr(0, 128), everyByte().substr(0, 128));
}

}  // namespace omniset::test
