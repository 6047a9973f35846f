#include "boot/bootp_packet.h"

#include <gmock/gmock.h>

#include <map>

#include "core/ipv4_address.h"
#include "tests/boot/boot_requests.h"
#include "tests/fakes/captured_trace.h"

namespace omniset::test {
namespace {

VendorClasses classesOf(const Bytes& request) {
  const SilentTrace silent;
  return findVendorClasses(received(request));
}

// Options that fill the packet up to the byte before `last` ones, without an end.
Bytes filledUpTo(std::size_t at) {
  Bytes bytes = requestHead();
  bytes.resize(at);  // padding
  return bytes;
}

TEST(BootpPacket, FieldsAreReadInNetworkOrder) {
  const BootpPacket packet = received(pxeRequest());
  const BootpFields fields = readFields(packet);
  EXPECT_EQ(fields.op, 1);
  EXPECT_EQ(fields.htype, 1);
  EXPECT_EQ(fields.hlen, 6);
  EXPECT_EQ(fields.hops, 0);
  EXPECT_EQ(fields.xid, 0x12345678u);
  EXPECT_EQ(fields.secs, 4);
  EXPECT_EQ(fields.flags, 0x8000);
  EXPECT_EQ(fields.giaddr, ipv4(10, 1, 2, 3));
  EXPECT_EQ(fields.cookie, 0x63825363u);
  EXPECT_EQ(clientMac(packet), kClientMac);
}

TEST(IsAddressRequest, TakesOnlyAnEthernetClientOfThisSegmentWithoutAnAddress) {
  EXPECT_TRUE(isAddressRequest(received(pxeRequest())));
  const std::map<std::size_t, Bytes> others{
      {0, {0, 2}},             // op
      {1, {0, 2, 6}},          // htype
      {2, {0, 5, 7, 15, 16}},  // hlen
      {3, {1}},                // hops
      {12, {10}},              // ciaddr
      {15, {1}},
  };
  for (const auto& [at, values] : others) {
    for (const std::uint8_t value : values) {
      Bytes request = pxeRequest();
      request[at] = value;
      EXPECT_FALSE(isAddressRequest(received(request))) << at << " " << static_cast<int>(value);
    }
  }
}

TEST(IsAddressRequest, AnEmptyDatagramIsNone) {
  EXPECT_FALSE(isAddressRequest(received({})));
}

TEST(FindVendorClasses, TellsPxeAndEtherboot) {
  EXPECT_TRUE(classesOf(pxeRequest()).pxe);
  EXPECT_FALSE(classesOf(pxeRequest()).etherboot);
  EXPECT_TRUE(classesOf(etherbootRequest()).etherboot);
  EXPECT_FALSE(classesOf(etherbootRequest()).pxe);
}

TEST(FindVendorClasses, LettersCountInEitherCase) {
  EXPECT_TRUE(classesOf(requestWith({option(60, "pxeclient:Arch:00000:UNDI:002001")})).pxe);
  EXPECT_TRUE(classesOf(requestWith({option(60, "ETHERBOOT")})).etherboot);
}

TEST(FindVendorClasses, OtherClassesAreNone) {
  for (const char* name : {"PXEClien", "MSFT 5.0", "anaconda-Linux", "Etherboo", "XPXEClient"}) {
    const VendorClasses found = classesOf(requestWith({option(60, name)}));
    EXPECT_FALSE(found.pxe || found.etherboot) << name;
  }
}

TEST(FindVendorClasses, TheOptionsOwnLengthDoesNotMatter) {
  Bytes lying{60, 0};
  append(lying, kPxeClass);
  EXPECT_TRUE(classesOf(requestWith({lying})).pxe);
  lying[1] = 255;
  EXPECT_TRUE(classesOf(requestWith({lying})).pxe);
}

TEST(FindVendorClasses, PaddingIsSteppedOver) {
  EXPECT_TRUE(classesOf(requestWith({Bytes(37, 0), option(60, kPxeClass)})).pxe);
}

TEST(FindVendorClasses, NothingBehindTheEndCounts) {
  EXPECT_FALSE(classesOf(requestWith({Bytes{255}, option(60, kPxeClass)})).pxe);
}

TEST(FindVendorClasses, ARequestWithoutAVendorClassHasNone) {
  EXPECT_FALSE(classesOf(requestWith({option(53, "\x01")})).pxe);
  EXPECT_FALSE(classesOf(requestHead()).pxe);
  EXPECT_FALSE(classesOf({}).pxe);
}

// After a vendor class the walk goes on by the second byte of its value, 'X' or 0x58 for a PXE
// client: 90 bytes behind the value's beginning.
TEST(FindVendorClasses, GoesOnByTheSecondByteOfTheValue) {
  Bytes leapt = option(60, kPxeClass);
  const std::size_t value = 2;
  leapt.resize(value + 2 + 'X', 0xFE);  // options that would lead nowhere
  EXPECT_TRUE(classesOf(requestWith({leapt, option(60, kEtherbootClass)})).etherboot);

  Bytes shorter = leapt;
  shorter.pop_back();  // now the next option's length is taken for its code
  EXPECT_FALSE(classesOf(requestWith({shorter, option(60, kEtherbootClass)})).etherboot);
}

TEST(FindVendorClasses, AnOptionBehindAnUnknownClassIsFoundByItsSecondByteToo) {
  Bytes other = option(60, "A\x01");  // goes on at the value + 2 + 1
  other.push_back(0xFE);
  EXPECT_TRUE(classesOf(requestWith({other, option(60, kPxeClass)})).pxe);
}

TEST(FindVendorClasses, NothingIsReadBehindThePacket) {
  for (std::size_t fromEnd = 1; fromEnd <= 12; ++fromEnd) {
    for (const std::uint8_t code : Bytes{60, 1, 254}) {
      Bytes request = filledUpTo(BootpPacket::kSize - fromEnd);
      request.push_back(code);
      append(request, std::string(fromEnd - 1, '\xFF'));
      const VendorClasses found = classesOf(request);
      EXPECT_FALSE(found.pxe || found.etherboot);
    }
  }
}

TEST(FindVendorClasses, AClassThatEndsWithThePacketCounts) {
  Bytes request = filledUpTo(BootpPacket::kSize - 11);
  const Bytes last = option(60, "PXEClient");
  request.insert(request.end(), last.begin(), last.end());
  ASSERT_EQ(request.size(), BootpPacket::kSize);
  EXPECT_TRUE(classesOf(request).pxe);
}

TEST(FindVendorClasses, AClassThatIsCutOffByThePacketsEndDoesNot) {
  Bytes request = filledUpTo(BootpPacket::kSize - 10);
  append(request, "\x3C\x09PXEClien");
  EXPECT_FALSE(classesOf(request).pxe);
}

TEST(MakeReply, ForPxeNamesTheBootFileAndItsSize) {
  const std::string name = "/image";
  BootpPacket packet = received(pxeRequest());
  Bytes expected(packet.bytes.begin(), packet.bytes.end());
  makeReply(packet, {ipv4(192, 168, 88, 20), ipv4(192, 168, 88, 5), &name});

  expected[0] = 2;
  const Bytes addresses{192, 168, 88, 20, 192, 168, 88, 5};
  std::copy(addresses.begin(), addresses.end(), expected.begin() + 16);
  std::fill_n(expected.begin() + 108, 128, std::uint8_t{0});
  std::copy(name.begin(), name.end(), expected.begin() + 108);
  const Bytes options{13, 2, 0, 22, 255};
  std::copy(options.begin(), options.end(), expected.begin() + 240);
  EXPECT_EQ(Bytes(packet.bytes.begin(), packet.bytes.end()), expected);
  EXPECT_EQ(replyLength(packet), 245u);
}

TEST(MakeReply, ForEtherbootLeavesTheFileAsItWas) {
  BootpPacket packet = received(etherbootRequest());
  Bytes expected(packet.bytes.begin(), packet.bytes.end());
  makeReply(packet, {ipv4(192, 168, 88, 20), ipv4(192, 168, 88, 5), nullptr});

  expected[0] = 2;
  const Bytes addresses{192, 168, 88, 20, 192, 168, 88, 5};
  std::copy(addresses.begin(), addresses.end(), expected.begin() + 16);
  expected[240] = 255;
  EXPECT_EQ(Bytes(packet.bytes.begin(), packet.bytes.end()), expected);
  EXPECT_EQ(replyLength(packet), 241u);
}

TEST(MakeReply, ALongFileNameFillsItsFieldWithoutAZero) {
  const std::string name(200, 'n');
  BootpPacket packet = received(pxeRequest());
  makeReply(packet, {0, 0, &name});
  EXPECT_EQ(readFields(packet).file.back(), 'n');
  EXPECT_EQ(readFields(packet).cookie, 0x63825363u);
}

TEST(ReplyLength, CountsPaddingAndOptionsUpToTheEnd) {
  EXPECT_EQ(replyLength(received(requestWith({Bytes{0, 0}, option(1, "abc")}))), 240u + 2 + 5 + 1);
}

TEST(ReplyLength, OfAPacketWithoutAnEndIsAllOfIt) {
  BootpPacket packet = received(requestHead());
  EXPECT_EQ(replyLength(packet), BootpPacket::kSize);
  std::fill(packet.bytes.begin() + 240, packet.bytes.end(), std::uint8_t{7});
  EXPECT_EQ(replyLength(packet), BootpPacket::kSize);
}

TEST(Dump, WritesEveryFieldWithItsLabelInThePacketsOrder) {
  const CapturedTrace captured;
  dump(received(etherbootRequest()));
  const std::string text = captured.text();
  EXPECT_TRUE(
      text.starts_with("opcode: 1\n"
                       "htype: 1\n"
                       "hlen: 6\n"
                       "hops: 0\n"
                       "xid: 12345678\n"
                       "secs: 4\n"
                       "unused: 8000\n"
                       "ciaddr: 0.0.0.0\n"
                       "yiaddr: 0.0.0.0\n"
                       "siaddr: 0.0.0.0\n"
                       "giaddr: 10.1.2.3\n"
                       "chaddr: 02000000000a00000000000000000000\n"
                       "sname: (boot-host)\n"
                       "file: (/tftpboot/own.nbi)\n"
                       "cookie: 63825363\n"
                       "vend: 3c0d"))
      << text;
  EXPECT_EQ(text.substr(text.find("vend: ")).size(), 6u + 2 * 256 + 1);
}

TEST(Dump, EachNumberIsWrittenFromItsOwnPlaceWithItsLeadingZeros) {
  Bytes packet{3, 4, 5, 7};  // op, htype, hlen, hops
  const auto put = [&](const Bytes& bytes) {
    packet.insert(packet.end(), bytes.begin(), bytes.end());
  };
  put({0, 1, 0x2A, 9});                // xid
  put({0, 8, 0, 0x6C});                // secs, flags
  put({10, 1, 2, 3, 11, 4, 5, 6});     // ciaddr, yiaddr
  put({12, 7, 8, 9, 13, 10, 11, 12});  // siaddr, giaddr
  for (int i = 0; i < 16; ++i) packet.push_back(static_cast<std::uint8_t>(i));
  packet.resize(236);
  put({0, 0x0D, 0, 0x0E, 0x0F});
  const CapturedTrace captured;
  dump(received(packet));
  EXPECT_THAT(captured.text(), testing::StartsWith("opcode: 3\n"
                                                   "htype: 4\n"
                                                   "hlen: 5\n"
                                                   "hops: 7\n"
                                                   "xid: 00012a09\n"
                                                   "secs: 8\n"
                                                   "unused: 006c\n"
                                                   "ciaddr: 10.1.2.3\n"
                                                   "yiaddr: 11.4.5.6\n"
                                                   "siaddr: 12.7.8.9\n"
                                                   "giaddr: 13.10.11.12\n"
                                                   "chaddr: 000102030405060708090a0b0c0d0e0f\n"
                                                   "sname: ()\n"
                                                   "file: ()\n"
                                                   "cookie: 000d000e\n"
                                                   "vend: 0f00"));
}

TEST(Dump, NamesFromTheNetworkCannotSteerATerminal) {
  Bytes request = etherbootRequest();
  std::copy_n("\x1B[2J", 4, request.begin() + 44);
  const CapturedTrace captured;
  dump(received(request));
  EXPECT_EQ(captured.text().find('\x1B'), std::string::npos);
}

}  // namespace
}  // namespace omniset::test
