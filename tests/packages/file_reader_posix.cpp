// A pipe cannot be sought in: what is passed over there has to be read.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <thread>

#include "expect_bad_file.h"
#include "packages/package_reader.h"
#include "tests/tools/bdl_builder.h"

namespace omniset::test {
namespace {

class PipeReader : public testing::Test {
 protected:
  std::FILE* pipeOf(std::string content) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    feeder_ = std::jthread([content = std::move(content), to = ends[1]] {
      std::size_t at = 0;
      while (at < content.size()) {
        const ssize_t count = write(to, content.data() + at, content.size() - at);
        if (count <= 0) break;
        at += static_cast<std::size_t>(count);
      }
      close(to);
    });
    file_ = fdopen(ends[0], "rb");
    return file_;
  }

  ~PipeReader() override {
    while (std::fgetc(file_) != EOF) {  // lets the feeder come to its end
    }
    std::fclose(file_);
  }

 private:
  std::FILE* file_ = nullptr;
  std::jthread feeder_;
};

TEST_F(PipeReader, PassesOverSectionsByReadingThem) {
  Reader reader(kPackageMagic,
                pipeOf(bdlFile(bdlSection(4, std::string(3 * 4096 + 1, 'x')) +
                               bdlSection(4, std::string(4096, 'x')) + bdlSection(2, "text"))));
  reader.want(2);
  ASSERT_TRUE(reader.nextSection());
  std::uint8_t text[4];
  reader.read(text, sizeof text);
  EXPECT_EQ(asText(text), "text");
  EXPECT_FALSE(reader.nextSection());
}

TEST_F(PipeReader, SectionCutOffByTheEndIsAReadError) {
  Reader reader(kPackageMagic, pipeOf(bdlFile(bdlSection(4, "cut", 1'000'000), 1'000'012)));
  EXPECT_BAD_FILE(reader.nextSection(), "read error");
}

}  // namespace
}  // namespace omniset::test
