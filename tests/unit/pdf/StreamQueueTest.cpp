#include "platform/system/pdf/StreamQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "tests/unit/pdf/Tools.h"

namespace chatsum::platform::system {
namespace {

std::vector<PdfStream> streamOf(int number) { return {{number, "", "stream " + std::to_string(number)}}; }

std::string written(unsigned threads, int count) {
  auto bytes = std::make_shared<std::string>();
  WorkPool pool(threads);
  PdfFile file(std::make_unique<MemoryFile>(bytes));
  StreamQueue queue(file, pool);
  for (int i = 0; i < count; ++i) {
    const int number = file.newObject();
    queue.add(1, [number] {
      if (number % 7 == 0) std::this_thread::yield();
      return streamOf(number);
    });
    // Objects between the streams come to the same place, whoever makes the streams.
    file.writeObject(file.newObject(), std::string(2000, 'o'));
  }
  queue.finish();
  EXPECT_FALSE(file.finish(1, 1));
  return *bytes;
}

TEST(StreamQueue, WritesInTheOrderOfAsking) {
  const std::string bytes = written(3, 200), mark = "\nstream ";
  int last = 0, count = 0;
  for (std::size_t at = bytes.find(mark); at != std::string::npos; at = bytes.find(mark, at + 1), ++count) {
    const int number = std::stoi(bytes.substr(at + mark.size(), 10));
    EXPECT_GT(number, last);
    last = number;
  }
  EXPECT_EQ(count, 200);
}

TEST(StreamQueue, WritesTheSameWithAnyNumberOfThreads) {
  const std::string bytes = written(0, 200);
  for (const unsigned threads : {1U, 2U, 5U}) EXPECT_EQ(written(threads, 200), bytes);
}

TEST(StreamQueue, HoldsFewStreamsAtATime) {
  auto bytes = std::make_shared<std::string>();
  WorkPool pool(0);  // does nothing before it must
  PdfFile file(std::make_unique<MemoryFile>(bytes));
  int held = 0, most = 0;
  {
    StreamQueue queue(file, pool);
    for (int i = 0; i < 300; ++i) {
      // Counts jobs that were added and are not yet forgotten.
      const std::shared_ptr<int> token(new int(0), [&held](const int* p) {
        --held;
        delete p;
      });
      most = std::max(most, ++held);
      queue.add(1, [token, number = file.newObject()] { return streamOf(number); });
    }
    queue.finish();
  }
  EXPECT_EQ(held, 0);
  EXPECT_GT(most, 1);
  EXPECT_LE(most, 20);
}

TEST(StreamQueue, HoldsHeavyJobsOneByOne) {
  auto bytes = std::make_shared<std::string>();
  WorkPool pool(0);
  PdfFile file(std::make_unique<MemoryFile>(bytes));
  StreamQueue queue(file, pool);
  int made = 0;
  for (int i = 0; i < 5; ++i) {
    queue.add(std::size_t{1} << 30, [&made, number = file.newObject()] {
      ++made;
      return streamOf(number);
    });
    EXPECT_EQ(made, i);  // the one before had to go first
  }
  queue.finish();
  EXPECT_EQ(made, 5);
}

TEST(StreamQueue, MakesNothingAfterAnError) {
  auto bytes = std::make_shared<std::string>();
  WorkPool pool(0);
  PdfFile file(std::make_unique<MemoryFile>(bytes, 10));
  StreamQueue queue(file, pool);
  file.writeStream(file.newObject(), "", std::string(1 << 20, 'x'));
  file.writeStream(file.newObject(), "", "x");
  ASSERT_TRUE(file.error());
  int made = 0;
  for (int i = 0; i < 100; ++i) {
    queue.add(1, [&made] {
      ++made;
      return std::vector<PdfStream>();
    });
  }
  queue.finish();
  EXPECT_EQ(made, 0);
}

TEST(StreamQueue, WaitsForWhatIsUnderWayWhenItIsGivenUp) {
  auto bytes = std::make_shared<std::string>();
  WorkPool pool(2);
  PdfFile file(std::make_unique<MemoryFile>(bytes));
  std::atomic<int> made = 0;
  {
    StreamQueue queue(file, pool);
    for (int i = 0; i < 10; ++i) {
      queue.add(1, [&made] {
        ++made;
        return std::vector<PdfStream>();
      });
    }
  }
  EXPECT_EQ(made, 10);
}

}  // namespace
}  // namespace chatsum::platform::system
