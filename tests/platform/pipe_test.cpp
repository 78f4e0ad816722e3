#include "platform/pipe.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace rowvane::platform {
namespace {

constexpr size_t kCapacity = size_t{1} << 18;

TEST(BytePipe, CarriesEveryByteInOrder) {
  BytePipe pipe;
  ASSERT_TRUE(pipe.create(kCapacity));
  constexpr size_t kTotal = size_t{8} << 20;
  const auto byte_at = [](size_t i) { return static_cast<std::byte>(i * 2654435761u >> 24); };
  std::thread writer([&] {
    std::vector<std::byte> block;
    for (size_t sent = 0; sent < kTotal; sent += block.size()) {
      block.resize(std::min(kTotal - sent, 1 + sent % 70001));
      for (size_t i = 0; i < block.size(); ++i) block[i] = byte_at(sent + i);
      ASSERT_EQ(pipe.write(block), block.size());
    }
    pipe.close_write_end();
  });
  std::vector<std::byte> buffer(50000);
  size_t received = 0;
  size_t wrong = 0;
  while (const size_t count = pipe.read(buffer)) {
    for (size_t i = 0; i < count; ++i) wrong += buffer[i] != byte_at(received + i);
    received += count;
  }
  writer.join();
  EXPECT_EQ(received, kTotal);
  EXPECT_EQ(wrong, 0u);
}

TEST(BytePipe, WriteEndsShortWhenTheReaderGoes) {
  BytePipe pipe;
  ASSERT_TRUE(pipe.create(kCapacity));
  const std::vector<std::byte> large(64 * kCapacity);
  size_t written = large.size();
  std::thread writer([&] { written = pipe.write(large); });
  std::byte first[1000];
  EXPECT_GT(pipe.read(first), 0u);
  pipe.close_read_end();
  writer.join();
  EXPECT_LT(written, large.size());
  EXPECT_EQ(pipe.write(large), 0u);
}

TEST(BytePipe, KeepsWhatWasWrittenBeforeTheWriterLeft) {
  BytePipe pipe;
  ASSERT_TRUE(pipe.create(kCapacity));
  std::byte sent[3] = {std::byte{1}, std::byte{2}, std::byte{3}};
  ASSERT_EQ(pipe.write(sent), 3u);
  pipe.close_write_end();
  std::byte received[8];
  EXPECT_EQ(pipe.read(received), 3u);
  EXPECT_EQ(received[2], std::byte{3});
  EXPECT_EQ(pipe.read(received), 0u);
}

TEST(BytePipe, CanBeMadeAgainAndAgain) {
  BytePipe pipe;
  for (int i = 0; i < 3000; ++i) ASSERT_TRUE(pipe.create(kCapacity)) << "handles leak";
}

}  // namespace
}  // namespace rowvane::platform
