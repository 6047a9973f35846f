#include "media/read_back.h"

#include "core/error.h"
#include "tests/media/media_fixture.h"

namespace omniset::test {
namespace {

class ReadingBack : public MediaFixture {
 protected:
  ReadingBack() {
    volumes.files["source"] = content;
    volumes.drives['E'].files["copy"] = content;
    readBack.expectCopy("E:\\copy", "source");
  }

  std::string check() {
    try {
      readBack.check(volumes, 'E', stopEvent);
      return {};
    } catch (const std::exception& failure) {
      return failure.what();
    }
  }

  Bytes& copy() { return volumes.drives['E'].files["copy"]; }

  // Longer than one piece, and not a multiple of it.
  Bytes content = Bytes(600'001, 'x');
  Event stopEvent{true, false};
  ReadBack readBack;
};

TEST_F(ReadingBack, OfWhatWasWrittenIsSilent) {
  EXPECT_EQ(check(), "");
}

TEST_F(ReadingBack, FindsADifferenceWhereverItIs) {
  for (const std::size_t at :
       {std::size_t{0}, std::size_t{100'001}, std::size_t{262'144}, content.size() - 1}) {
    copy()[at] = 'y';
    EXPECT_EQ(check(), "E:\\copy differs from what was written");
    copy()[at] = 'x';
  }
}

TEST_F(ReadingBack, FindsAFileThatIsShorterOrLonger) {
  copy().pop_back();
  EXPECT_EQ(check(), "E:\\copy differs from what was written");
  copy().resize(content.size() + 1, 'x');
  EXPECT_EQ(check(), "E:\\copy differs from what was written");
}

TEST_F(ReadingBack, FindsAFileThatIsLongerByWholePieces) {
  volumes.files["source"].resize(262'144);
  copy().resize(2 * 262'144, 'x');
  EXPECT_EQ(check(), "E:\\copy differs from what was written");
}

TEST_F(ReadingBack, FindsAFileThatIsGone) {
  volumes.drives['E'].files.clear();
  EXPECT_EQ(check(), "E:\\copy cannot be read back");
}

TEST_F(ReadingBack, OfAnEmptyFileWantsItEmpty) {
  readBack.expectText("E:\\empty", "");
  volumes.drives['E'].files["empty"];
  EXPECT_EQ(check(), "");
  volumes.drives['E'].files["empty"] = bytesOf("x");
  EXPECT_EQ(check(), "E:\\empty differs from what was written");
}

TEST_F(ReadingBack, FindsAnotherBootSector) {
  readBack.expectBootSector(formattedSector(7));
  volumes.drives['E'].firstSector = formattedSector(8);
  EXPECT_EQ(check(), "The boot sector differs from what was written");
}

TEST_F(ReadingBack, ReadsNothingBeforeTheDriveIsFlushed) {
  check();
  EXPECT_EQ(volumes.calls.front(), "flush E");
}

TEST_F(ReadingBack, EndsWhenItIsAskedTo) {
  stopEvent.set();
  EXPECT_EQ(check(), "Canceled");
}

}  // namespace
}  // namespace omniset::test
