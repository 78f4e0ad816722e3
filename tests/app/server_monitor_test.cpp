#include "app/start/server_monitor.h"

#include <atomic>
#include <future>

#include <gtest/gtest.h>

namespace rowvane {
namespace {

using std::chrono::milliseconds;

TEST(ServerLifetime, EndsSomeTimeAfterTheLastObject) {
  const ServerLifetime::Time start{};
  ServerLifetime lifetime(ServerTiming().time_out);
  EXPECT_FALSE(lifetime.is_over(start + std::chrono::hours(100)));  // nobody has come yet
  lifetime.release_object(start);
  EXPECT_EQ(lifetime.deadline(), ServerLifetime::kNever);
  lifetime.add_object();
  lifetime.add_object();
  lifetime.release_object(start);
  EXPECT_FALSE(lifetime.is_over(start + std::chrono::hours(100)));
  lifetime.release_object(start + milliseconds(100));
  EXPECT_FALSE(lifetime.is_over(start + milliseconds(5099)));
  EXPECT_TRUE(lifetime.is_over(start + milliseconds(5100)));
  // A new client in time starts it all over.
  lifetime.add_object();
  EXPECT_FALSE(lifetime.is_over(start + milliseconds(5100)));
  lifetime.release_object(start + milliseconds(6000));
  EXPECT_FALSE(lifetime.is_over(start + milliseconds(10'999)));
  EXPECT_TRUE(lifetime.is_over(start + milliseconds(11'000)));
  EXPECT_EQ(ServerTiming().pause, milliseconds(1000));
}

TEST(ServerMonitor, EndsTheLoopOnceAfterTheLastRelease) {
  std::promise<void> ended;
  std::atomic<int> calls = 0;
  ServerMonitor monitor(milliseconds(1), [&] {
    if (++calls == 1) ended.set_value();
  });
  monitor.start();
  monitor.add_object();
  monitor.add_object();
  monitor.release_object();
  EXPECT_EQ(calls, 0);
  monitor.release_object();
  ended.get_future().wait();
  monitor.add_object();
  monitor.release_object();
  monitor.stop();
  EXPECT_EQ(calls, 1);
}

TEST(ServerMonitor, StopsWithoutEndingTheLoop) {
  std::atomic<int> calls = 0;
  {
    ServerMonitor monitor(std::chrono::hours(1), [&] { ++calls; });
    monitor.start();
    monitor.add_object();
    monitor.release_object();
  }
  ServerMonitor never_started(milliseconds(0), [&] { ++calls; });
  never_started.add_object();
  never_started.release_object();
  never_started.stop();
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace rowvane
