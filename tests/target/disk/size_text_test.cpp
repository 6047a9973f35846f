#include "target/disk/size_text.h"

#include <gtest/gtest.h>

namespace omniset::test {
namespace {

TEST(SizeText, WholeMegabytes) {
  EXPECT_EQ(sizeText(0), "0 MB");
  EXPECT_EQ(sizeText(2047), "0 MB");
  EXPECT_EQ(sizeText(2048), "1 MB");
  EXPECT_EQ(sizeText(64 * 2048), "64 MB");
  EXPECT_EQ(sizeText(3 * 1024 * 2048), "3072 MB");
}

TEST(SizeText, GigabytesFromTenOn) {
  EXPECT_EQ(sizeText(10 * 1024 * 2048ULL - 1), "10239 MB");
  EXPECT_EQ(sizeText(10 * 1024 * 2048ULL), "10 GB");
  EXPECT_EQ(sizeText(976773168), "465 GB");
}

TEST(SizeText, DisksBeyondTwoTerabytes) {
  EXPECT_EQ(sizeText(1ULL << 35), "16384 GB");
}

}  // namespace
}  // namespace omniset::test
