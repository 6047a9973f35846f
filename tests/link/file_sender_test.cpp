#include "link/file_sender.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/error.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/temp_folder.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {
namespace {

std::string patternOf(std::size_t length) {
  std::string text(length, '\0');
  for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<char>(i * 31 + i / 256);
  return text;
}

struct FileSenderTest : ::testing::Test {
  FileSender open(const std::string& name, const std::string& content) {
    return FileSender(folder.write(name, content), link.endpoint, connection);
  }
  // What the session does when the target has acknowledged the frame.
  int acknowledged(FileSender& sender) {
    ++connection.sequence;
    return sender.next(true);
  }

  LinkFixture link;
  TempFolder folder;
  CapturedTrace trace;
  LinkConnection connection = boundConnection(2, 3);
};

using FileSending = FileSenderTest;

TEST(FileNameOf, IsWhatFollowsTheLastSeparator) {
  EXPECT_EQ(fileNameOf("C:\\pkg\\dir\\system-2.9.bdl"), "system-2.9.bdl");
  EXPECT_EQ(fileNameOf("/pkg/dir/system-2.9.bdl"), "system-2.9.bdl");
  EXPECT_EQ(fileNameOf("C:\\pkg/dir\\x/y.bdl"), "y.bdl");
  EXPECT_EQ(fileNameOf("system-2.9.bdl"), "system-2.9.bdl");
  EXPECT_EQ(fileNameOf("dir\\"), "");
}

TEST_F(FileSending, OpeningTracesNameAndSizeAndSendsNothing) {
  const FileSender sender = open("system-2.9.bdl", "12345");
  EXPECT_EQ(trace.text(), "sending system-2.9.bdl, size: 5\n");
  EXPECT_EQ(link.sentCount(), 0u);
  EXPECT_EQ(sender.fileSize(), 5);
  EXPECT_EQ(sender.bytesSent(), 0);
  EXPECT_EQ(sender.name(), "system-2.9.bdl");
}

TEST_F(FileSending, HeaderFrameNamesTheFileAndItsSize) {
  FileSender sender = open("system-2.9.bdl", "12345");
  EXPECT_EQ(sender.next(false), 0);
  ASSERT_EQ(link.sentCount(), 1u);
  const LinkFrame frame = link.sent(0);
  EXPECT_EQ(frame.payloadText(), "FILE\nsystem-2.9.bdl\n5\n");
  EXPECT_EQ(link.network->sent[0].bytes.size(), 20u + 22u);
  const FrameHeader header = frame.header();
  EXPECT_FALSE(header.isAck);
  EXPECT_EQ(header.channel, 0);
  EXPECT_EQ(header.sequence, 2);
  EXPECT_EQ(header.acknowledgement, 0);
}

TEST_F(FileSending, OtherNameCanBeAnnounced) {
  FileSender sender(folder.write("scr12", "x"), link.endpoint, connection, "autorun.scr");
  sender.next(false);
  EXPECT_EQ(link.sent(0).payloadText(), "FILE\nautorun.scr\n1\n");
  EXPECT_EQ(trace.text(), "sending autorun.scr, size: 1\n");
}

TEST_F(FileSending, EmptyFileSendsNoDataFrame) {
  FileSender sender = open("empty", "");
  sender.next(false);
  EXPECT_EQ(link.sent(0).payloadText(), "FILE\nempty\n0\n");
  EXPECT_EQ(acknowledged(sender), 0);
  EXPECT_EQ(link.sentCount(), 1u);
}

TEST_F(FileSending, FileOf2904BytesIsTheHeaderAndExactlyTwoFullChunks) {
  const std::string content = patternOf(2904);
  FileSender sender = open("two", content);
  sender.next(false);
  EXPECT_EQ(acknowledged(sender), 1452);
  EXPECT_EQ(acknowledged(sender), 1452);
  EXPECT_EQ(acknowledged(sender), 0);
  ASSERT_EQ(link.sentCount(), 3u);
  EXPECT_EQ(link.network->sent[1].bytes.size(), 1472u);
  EXPECT_EQ(std::string(link.sent(1).payloadText()) + std::string(link.sent(2).payloadText()),
            content);
  EXPECT_EQ(sender.bytesSent(), 2904);
}

TEST_F(FileSending, LastChunkIsShorter) {
  FileSender sender = open("odd", patternOf(1453));
  sender.next(false);
  EXPECT_EQ(acknowledged(sender), 1452);
  EXPECT_EQ(acknowledged(sender), 1);
  EXPECT_EQ(acknowledged(sender), 0);
  EXPECT_EQ(link.network->sent.back().bytes.size(), 21u);
}

TEST_F(FileSending, DataFramesGoOnTheDataChannelWithTheCurrentNumber) {
  FileSender sender = open("data", "abc");
  sender.next(false);
  acknowledged(sender);
  const FrameHeader header = link.sent(1).header();
  EXPECT_FALSE(header.isAck);
  EXPECT_EQ(header.channel, 1);
  EXPECT_EQ(header.sequence, 3);
  EXPECT_EQ(header.acknowledgement, 0);
  EXPECT_EQ(header.source, kInstallerMac);
  EXPECT_EQ(header.destination, kTargetMac);
}

TEST_F(FileSending, ResendRepeatsTheFrameByteForByte) {
  FileSender sender = open("data", patternOf(2000));
  sender.next(false);
  sender.next(false);
  EXPECT_EQ(link.network->sent[0].bytes, link.network->sent[1].bytes);
  EXPECT_EQ(acknowledged(sender), 1452);
  EXPECT_EQ(sender.next(false), 1452);
  EXPECT_EQ(link.network->sent[2].bytes, link.network->sent[3].bytes);
  EXPECT_EQ(sender.bytesSent(), 1452);
}

TEST_F(FileSending, ResendKeepsTheFrameEvenWhenTheConnectionHasMovedOn) {
  FileSender sender = open("data", "abc");
  sender.next(false);
  ++connection.sequence;
  ++connection.acknowledgement;
  sender.next(false);
  EXPECT_EQ(link.network->sent[0].bytes, link.network->sent[1].bytes);
}

TEST_F(FileSending, CompleteFileStaysComplete) {
  FileSender sender = open("data", "abc");
  acknowledged(sender);
  EXPECT_EQ(acknowledged(sender), 0);
  EXPECT_EQ(acknowledged(sender), 0);
  EXPECT_EQ(link.sentCount(), 1u);
}

TEST_F(FileSending, MissingFileRaisesOpenFailure) {
  std::string message;
  try {
    const FileSender sender(folder.path() + "/missing", link.endpoint, connection);
  } catch (const Error& e) {
    message = e.what();
  }
  constexpr long kNoSuchFile = 2;  // the same number on every system
  EXPECT_EQ(message, errorText("_open() package failed", kNoSuchFile));
  EXPECT_EQ(trace.text(), "");
}

TEST_F(FileSending, FileThatBecameShorterRaisesReadFailure) {
  FileSender sender = open("shrinks", patternOf(60'000));
  std::filesystem::resize_file(folder.path() + "/shrinks", 100);
  try {
    while (acknowledged(sender) != 0) continue;
    FAIL() << "counts as sent";
  } catch (const Error& e) {
    EXPECT_TRUE(std::string_view(e.what()).starts_with("_read() package failed: ")) << e.what();
    EXPECT_NE(std::string_view(e.what()).find("Error code: "), std::string_view::npos);
  }
  EXPECT_LT(sender.bytesSent(), 60'000);
}

TEST_F(FileSending, FileThatGrewIsSentAsAnnounced) {
  FileSender sender = open("grows", "abc");
  folder.write("grows", "abcdef");
  EXPECT_EQ(acknowledged(sender), 3);
  EXPECT_EQ(acknowledged(sender), 0);
  EXPECT_EQ(link.sent(0).payloadText(), "abc");
}

TEST_F(FileSending, ClosingLetsTheFileGo) {
  FileSender sender = open("closed", "abc");
  sender.close();
  EXPECT_TRUE(std::filesystem::remove(folder.path() + "/closed"));
}

TEST_F(FileSending, NameThatWouldForgeTheHeaderIsRefused) {
  const std::string path = folder.write("plain", "abc");
  EXPECT_THROW(FileSender(path, link.endpoint, connection, "a\n0\nb"), Failure);
}

TEST_F(FileSending, NameThatDoesNotFitAFrameIsRefused) {
  const std::string path = folder.write("plain", "abc");
  const std::string longest(1452 - 8, 'n');  // with "FILE", "3" and three line feeds
  EXPECT_NO_THROW(FileSender(path, link.endpoint, connection, longest));
  EXPECT_THROW(FileSender(path, link.endpoint, connection, longest + "n"), Failure);
}

}  // namespace
}  // namespace omniset::test
