#include "cli/boot_event.h"

#include "boot/boot_images.h"
#include "core/ipv4_address.h"
#include "core/shown_text.h"

namespace omniset {

namespace {

constexpr std::size_t kLongestFileName = 60;

// A name that fills a whole datagram helps nobody.
std::string shownFileName(const std::string& name) {
  const std::string shown = shownText(name);
  if (columnsOf(shown) <= kLongestFileName) return "'" + shown + "'";
  return "'" + cutToColumns(shown, kLongestFileName) + "...'";
}

bool isFirstImage(int number) {
  return number == kNetworkBootProgramImage || number == kEtherbootImage;
}

std::string gaveUpText(const BootEvent& event) {
  const std::string name = bootImageName(event.image);
  if (event.requested && isFirstImage(event.image)) {
    return "fell silent while it got the " + name +
           ": check the cable, and that no firewall keeps it from the UDP ports from 32768 on of "
           "this computer; it may boot again";
  }
  if (event.requested) return "fell silent while it got the " + name + "; it may boot again";
  if (!isFirstImage(event.image)) return "did not ask for the " + name + "; it may boot again";
  return "fetched nothing: check that no firewall keeps it from UDP port 69 of this computer, and "
         "that no other DHCP server answered it; it may boot again";
}

std::string textOf(const BootEvent& event) {
  switch (event.kind) {
    case BootEvent::Kind::kAnswered:
      return "asked to boot, gets " + dottedQuad(event.address);
    case BootEvent::Kind::kRefused:
      return "asked to boot, gets no answer: " + shownText(event.text);
    case BootEvent::Kind::kRequested:
      return "asked for " + shownFileName(event.text) + ", gets the " + bootImageName(event.image);
    case BootEvent::Kind::kSent:
      return bootImageName(event.image) + " sent (" + std::to_string(event.length) + " bytes)";
    case BootEvent::Kind::kGaveUp:
      return gaveUpText(event);
    case BootEvent::Kind::kDone:
      return "all images sent; it starts the installer system now";
  }
  return {};
}

}  // namespace

std::string bootImageName(int number) {
  switch (number) {
    case kNetworkBootProgramImage:
      return "boot program";
    case kNetworkConfigurationImage:
      return "boot configuration";
    case kKernelImage:
      return "kernel";
    case kRamDiskImage:
      return "RAM disk";
    case kEtherbootImage:
      return "Etherboot image";
    default:
      return "image " + std::to_string(number);
  }
}

std::string bootEventLine(const BootEvent& event) {
  return event.client.text() + "  " + textOf(event);
}

}  // namespace omniset
