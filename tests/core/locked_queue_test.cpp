#include "core/locked_queue.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace omniset::test {
namespace {

TEST(LockedQueue, BeginsEmptyAndUnsignalled) {
  LockedQueue<int> queue;
  EXPECT_EQ(queue.pop(), std::nullopt);
  EXPECT_FALSE(queue.notEmpty().wait(0));
}

TEST(LockedQueue, GivesTheOldestFirst) {
  LockedQueue<int> queue;
  for (const int i : {1, 2, 3}) queue.push(i);
  EXPECT_EQ(queue.pop(), 1);
  EXPECT_EQ(queue.pop(), 2);
  EXPECT_EQ(queue.pop(), 3);
  EXPECT_EQ(queue.pop(), std::nullopt);
}

TEST(LockedQueue, KeepsTheLatestAloneWhereThatIsAskedFor) {
  LockedQueue<int> queue;
  for (const int i : {1, 2, 3}) queue.pushLatest(i);
  EXPECT_TRUE(queue.notEmpty().wait(0));
  EXPECT_EQ(queue.pop(), 3);
  EXPECT_FALSE(queue.notEmpty().wait(0));
  EXPECT_EQ(queue.pop(), std::nullopt);
}

TEST(LockedQueue, IsSignalledUntilTheLastItemIsTaken) {
  LockedQueue<int> queue;
  queue.push(1);
  queue.push(2);
  EXPECT_TRUE(queue.notEmpty().wait(0));
  EXPECT_TRUE(queue.notEmpty().wait(0)) << "waiting takes nothing from the queue";
  queue.pop();
  EXPECT_TRUE(queue.notEmpty().wait(0));
  queue.pop();
  EXPECT_FALSE(queue.notEmpty().wait(0));
  queue.push(3);
  EXPECT_TRUE(queue.notEmpty().wait(0));
}

TEST(LockedQueue, CarriesItemsThatCanOnlyBeMoved) {
  LockedQueue<std::unique_ptr<int>> queue;
  queue.push(std::make_unique<int>(7));
  const auto item = queue.pop();
  ASSERT_TRUE(item.has_value());
  EXPECT_EQ(**item, 7);
}

TEST(LockedQueue, WakesAThreadThatWaitsForAnItem) {
  LockedQueue<int> queue;
  int received = 0;
  std::thread consumer([&] {
    if (queue.notEmpty().wait(60'000)) received = queue.pop().value_or(-1);
  });
  queue.push(42);
  consumer.join();
  EXPECT_EQ(received, 42);
}

TEST(LockedQueue, LosesAndDoublesNothingBetweenThreads) {
  constexpr int kProducers = 4;
  constexpr int kEach = 500;
  LockedQueue<int> queue;
  std::vector<std::thread> producers;
  for (int p = 0; p < kProducers; ++p) {
    producers.emplace_back([&queue, p] {
      for (int i = 0; i < kEach; ++i) queue.push(p * kEach + i);
    });
  }
  std::vector<int> lastOf(kProducers, -1);
  for (int count = 0; count < kProducers * kEach;) {
    ASSERT_TRUE(queue.notEmpty().wait(60'000));
    while (const auto item = queue.pop()) {
      int& last = lastOf[static_cast<std::size_t>(*item / kEach)];
      EXPECT_EQ(*item % kEach, last + 1) << "items of one thread keep their order";
      last = *item % kEach;
      ++count;
    }
  }
  for (auto& producer : producers) producer.join();
  EXPECT_FALSE(queue.notEmpty().wait(0));
}

}  // namespace
}  // namespace omniset::test
