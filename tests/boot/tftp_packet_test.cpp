#include "boot/tftp_packet.h"

#include <gmock/gmock.h>

#include <string>

#include "tests/boot/tftp_datagrams.h"

namespace omniset::test {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;

TEST(ReadTftpRequest, GivesTheFileName) {
  const Bytes datagram = bytesOf("\0\1/image\0octet\0"s);
  const auto request = readTftpRequest(datagram);
  ASSERT_TRUE(request);
  EXPECT_EQ(request->fileName, "/image");
  EXPECT_FALSE(request->sizeAsked);
}

TEST(ReadTftpRequest, AnyNameAndModeWillDo) {
  for (const std::string& rest :
       {"\0"s, "a"s, "a\0netascii\0"s, "a\0mail\0"s, "\0\0"s, std::string(4000, 'x'), "no end"s,
        "name\0no end"s, "\x1B[2J\0octet\0"s}) {
    EXPECT_TRUE(readTftpRequest(bytesOf("\0\1"s + rest + "!"))) << rest;
  }
}

TEST(ReadTftpRequest, ThreeBytesAreTooFew) {
  EXPECT_FALSE(readTftpRequest(bytesOf("\0\1a"s)));
  EXPECT_FALSE(readTftpRequest(bytesOf("\0\1"s)));
  EXPECT_FALSE(readTftpRequest({}));
  EXPECT_TRUE(readTftpRequest(bytesOf("\0\1a\0"s)));
}

TEST(ReadTftpRequest, OtherOpcodesAreNone) {
  for (const std::string& opcode :
       {"\0\0"s, "\0\2"s, "\0\3"s, "\0\4"s, "\0\5"s, "\0\6"s, "\1\0"s, "\1\1"s, "\0\xFF"s}) {
    EXPECT_FALSE(readTftpRequest(bytesOf(opcode + "/image\0octet\0"s))) << opcode;
  }
}

TEST(ReadTftpRequest, TheSizeOptionIsFoundInEitherCaseAmongOthers) {
  for (const std::string& options : {"tsize\0"s
                                     "0\0"s,
                                     "TSIZE\0"s
                                     "0\0"s,
                                     "blksize\0"s
                                     "1428\0TSize\0"s
                                     "0\0"s,
                                     "tsize"s, "tsize\0"s,
                                     "\0\0tsize\0"s
                                     "0\0"s}) {
    const auto datagram = bytesOf("\0\1f\0octet\0"s + options);
    EXPECT_TRUE(readTftpRequest(datagram)->sizeAsked) << options;
  }
}

TEST(ReadTftpRequest, ItIsNoSizeOptionAsAValueOrAPartOfAName) {
  for (const std::string& options : {"blksize\0tsize\0"s,
                                     "xtsize\0"s
                                     "0\0"s,
                                     "tsizes\0"s
                                     "0\0"s,
                                     "tsiz\0"s
                                     "0\0"s,
                                     "tsiz"s}) {
    const auto datagram = bytesOf("\0\1f\0octet\0"s + options);
    EXPECT_FALSE(readTftpRequest(datagram)->sizeAsked) << options;
  }
}

TEST(ReadTftpAcknowledgement, TakesFourBytesExactly) {
  EXPECT_EQ(readTftpAcknowledgement(bytesOf("\0\4\x12\x34"s)), 0x1234);
  EXPECT_FALSE(readTftpAcknowledgement(bytesOf("\0\4\x12"s)));
  EXPECT_FALSE(readTftpAcknowledgement(bytesOf("\0\4\x12\x34!"s)));
  EXPECT_FALSE(readTftpAcknowledgement(bytesOf("\0\3\x12\x34"s)));
  EXPECT_FALSE(readTftpAcknowledgement({}));
}

TEST(ReadTftpError, GivesCodeAndMessageUpToItsEnd) {
  const Bytes datagram = bytesOf("\0\5\0\3full\0rest"s);
  const auto error = readTftpError(datagram);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, 3);
  EXPECT_EQ(error->message, "full");
}

TEST(ReadTftpError, MayLackItsEndItsMessageAndItsCode) {
  const Bytes open = bytesOf("\0\5\0\1no end"s);
  EXPECT_EQ(readTftpError(open)->message, "no end");
  EXPECT_EQ(readTftpError(bytesOf("\0\5\0\2"s))->message, "");
  EXPECT_EQ(readTftpError(bytesOf("\0\5"s))->code, 0);
  EXPECT_FALSE(readTftpError(bytesOf("\0"s)));
  EXPECT_FALSE(readTftpError(bytesOf("\0\4\0\1"s)));
}

TEST(TftpErrorText, KnowsNineCodes) {
  EXPECT_EQ(tftpErrorText(0), "not defined");
  EXPECT_EQ(tftpErrorText(1), "file not found");
  EXPECT_EQ(tftpErrorText(2), "access violation");
  EXPECT_EQ(tftpErrorText(3), "disk full or allocation exceeded");
  EXPECT_EQ(tftpErrorText(4), "illegal tftp operation");
  EXPECT_EQ(tftpErrorText(5), "unknown transfer ID");
  EXPECT_EQ(tftpErrorText(6), "file already exists");
  EXPECT_EQ(tftpErrorText(7), "no such user");
  EXPECT_EQ(tftpErrorText(8), "option negotiation failed");
  EXPECT_EQ(tftpErrorText(9), "");
  EXPECT_EQ(tftpErrorText(0xFFFF), "");
}

TEST(TftpPacket, DataHasOpcodeBlockAndBytes) {
  TftpPacket packet;
  packet.makeData(0x1234, bytesOf("abc"s));
  EXPECT_THAT(packet.datagram(), ElementsAre(0, 3, 0x12, 0x34, 'a', 'b', 'c'));
  packet.makeData(2, {});
  EXPECT_THAT(packet.datagram(), ElementsAre(0, 3, 0, 2));
  packet.makeData(3, Bytes(512, 9));
  EXPECT_EQ(packet.datagram().size(), 516u);
}

TEST(TftpPacket, AnOptionAcknowledgementTellsTheSize) {
  TftpPacket packet;
  packet.makeOptionAcknowledgement(10824);
  EXPECT_EQ(asText(packet.datagram()),
            "\0\6tsize\0"s
            "10824\0"s);
  packet.makeOptionAcknowledgement(0xFFFFFFFF);
  EXPECT_EQ(asText(packet.datagram()),
            "\0\6tsize\0"s
            "4294967295\0"s);
}

TEST(TftpPacket, AnOptionAcknowledgementOfAnEmptyFileTellsNothing) {
  TftpPacket packet;
  packet.makeOptionAcknowledgement(0);
  EXPECT_THAT(packet.datagram(), ElementsAre(0, 6));
}

}  // namespace
}  // namespace omniset::test
