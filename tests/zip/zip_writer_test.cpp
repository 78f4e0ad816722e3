#include "zip/zip_writer.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <mutex>

#include "zip/zip_test_support.h"

namespace rowvane {
namespace {

class ZipWriting : public testing::Test {
 protected:
  TestFolder folder_;
  std::string path_ = folder_.path("a.zip");
  ZipWriter writer_;
};

ErrorCode produce_sample(uint64_t block, std::string& out) {
  out = sample_text(50'000, static_cast<unsigned>(block));
  return ErrorCode::kOk;
}

// Asks to stop once half of the bytes are there.
class StoppingProgress final : public Progress {
 public:
  void report(uint64_t done, uint64_t total) override {
    EXPECT_GE(done, done_);
    EXPECT_LE(done, total);
    done_ = done;
    total_ = total;
  }
  bool cancelled() const override { return stops_ && done_ * 2 > total_; }

  std::atomic<uint64_t> done_ = 0;
  std::atomic<uint64_t> total_ = 1;
  bool stops_ = false;
};

TEST_F(ZipWriting, TargetIsUntouchedUntilFinish) {
  write_file(path_, "old");
  {
    ZipWriter abandoned;
    ASSERT_EQ(abandoned.create(path_, {}), ErrorCode::kOk);
    ASSERT_EQ(abandoned.add("a", "new", ZipMethod::kStored), ErrorCode::kOk);
    EXPECT_EQ(read_file(path_), "old");
  }
  EXPECT_EQ(read_file(path_), "old");
  EXPECT_EQ(folder_.file_count(), 1U);
  EXPECT_EQ(writer_.create(folder_.path("no/such/folder"), {}), ErrorCode::kFileCreate);
}

TEST_F(ZipWriting, MistakesOfTheCallerLeaveTheWriterUsable) {
  EXPECT_EQ(writer_.add("a", "", ZipMethod::kStored), ErrorCode::kZipState);
  EXPECT_EQ(writer_.finish(), ErrorCode::kZipState);
  ASSERT_EQ(writer_.create(path_, {}), ErrorCode::kOk);
  ASSERT_EQ(writer_.add("a", "1", ZipMethod::kStored), ErrorCode::kOk);
  EXPECT_EQ(writer_.add("a", "2", ZipMethod::kStored), ErrorCode::kNameNotUnique);
  for (const char* name : {"", "../x", "x/..", "/x", "C:x", "x\\y", "x\ty", "\xFF"}) {
    EXPECT_EQ(writer_.begin(name, ZipMethod::kStored), ErrorCode::kInvalidPath) << name;
  }
  EXPECT_EQ(writer_.add(std::string(65536, 'x'), "", ZipMethod::kStored), ErrorCode::kInvalidPath);
  EXPECT_EQ(writer_.write("x"), ErrorCode::kZipState);
  EXPECT_EQ(writer_.end(), ErrorCode::kZipState);
  ASSERT_EQ(writer_.begin("b", ZipMethod::kStored), ErrorCode::kOk);
  EXPECT_EQ(writer_.add("c", "", ZipMethod::kStored), ErrorCode::kZipState);
  EXPECT_EQ(writer_.finish(), ErrorCode::kZipState);
  ASSERT_EQ(writer_.end(), ErrorCode::kOk);
  ASSERT_EQ(writer_.add(std::string(65535, 'x'), "long name", ZipMethod::kStored), ErrorCode::kOk);
  ASSERT_EQ(writer_.finish(), ErrorCode::kOk);
  EXPECT_EQ(writer_.finish(), ErrorCode::kZipState);

  ZipReader reader;
  ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
  EXPECT_EQ(reader.members().size(), 3U);
  EXPECT_EQ(content_of(reader, "a"), "1");
  EXPECT_EQ(content_of(reader, std::string(65535, 'x')), "long name");
}

TEST_F(ZipWriting, ProducersRunInOrderOncePerBlockAndTheirErrorEndsTheArchive) {
  write_file(path_, "old");
  std::mutex mutex;
  std::vector<uint64_t> seen;
  ASSERT_EQ(writer_.create(path_, {.threads = 3}), ErrorCode::kOk);
  const auto produce = [&](uint64_t block, std::string& out) {
    EXPECT_TRUE(out.empty());
    out.assign(9, 't');
    const std::lock_guard lock(mutex);
    seen.push_back(block);
    return ErrorCode::kOk;
  };
  ASSERT_EQ(writer_.add_blocks("fine", ZipMethod::kDeflated, 100, produce), ErrorCode::kOk);
  ASSERT_EQ(seen.size(), 100U);
  std::ranges::sort(seen);
  for (uint64_t block = 0; block < 100; ++block) EXPECT_EQ(seen[block], block);

  std::atomic<uint64_t> highest = 0;
  const auto failing = [&](uint64_t block, std::string& out) {
    highest = std::max<uint64_t>(highest, block);
    out.assign(1, 'x');
    return block == 20 ? ErrorCode::kFileDecrypt : ErrorCode::kOk;
  };
  EXPECT_EQ(writer_.add_blocks("broken", ZipMethod::kDeflated, 1'000'000, failing), ErrorCode::kFileDecrypt);
  EXPECT_LE(highest, 20U + 8U);  // no more than the blocks in flight
  EXPECT_EQ(writer_.add("later", "", ZipMethod::kStored), ErrorCode::kFileDecrypt);
  EXPECT_EQ(writer_.finish(), ErrorCode::kFileDecrypt);
  EXPECT_EQ(read_file(path_), "old");
  EXPECT_EQ(folder_.file_count(), 1U);
}

TEST_F(ZipWriting, ExhaustedMemoryInAProducerIsAnError) {
  ASSERT_EQ(writer_.create(path_, {.threads = 2}), ErrorCode::kOk);
  const auto greedy = [](uint64_t block, std::string& out) {
    if (block == 5) out.resize(out.max_size() + 1);
    return ErrorCode::kOk;
  };
  EXPECT_EQ(writer_.add_blocks("t", ZipMethod::kDeflated, 10, greedy), ErrorCode::kZipMemory);
}

TEST_F(ZipWriting, ReportsAndCancels) {
  StoppingProgress progress;
  writer_.set_progress(progress, 100 * 50'000 + 3);
  ASSERT_EQ(writer_.create(path_, {.level = 1, .threads = 2}), ErrorCode::kOk);
  ASSERT_EQ(writer_.add("a", "abc", ZipMethod::kStored), ErrorCode::kOk);
  ASSERT_EQ(writer_.add_blocks("t", ZipMethod::kDeflated, 100, produce_sample), ErrorCode::kOk);
  EXPECT_EQ(progress.done_, progress.total_);
  ASSERT_EQ(writer_.finish(), ErrorCode::kOk);
  const std::string before = read_file(path_);

  progress.done_ = 0;
  progress.stops_ = true;
  ASSERT_EQ(writer_.create(path_, {.level = 1, .threads = 2}), ErrorCode::kOk);
  EXPECT_EQ(writer_.add_blocks("t", ZipMethod::kDeflated, 100, produce_sample), ErrorCode::kZipState);
  EXPECT_TRUE(writer_.cancelled());
  EXPECT_LT(progress.done_, 60U * 50'000);
  EXPECT_EQ(writer_.finish(), ErrorCode::kZipState);
  EXPECT_EQ(read_file(path_), before);
  EXPECT_EQ(folder_.file_count(), 1U);
}

TEST_F(ZipWriting, MemberLimitOfTheOldVariant) {
  for (const ZipVariant variant : {ZipVariant::kZip32, ZipVariant::kZip64}) {
    ASSERT_EQ(writer_.create(path_, {.variant = variant}), ErrorCode::kOk);
    for (int i = 0; i < 65535; ++i)
      ASSERT_EQ(writer_.add(std::to_string(i), "", ZipMethod::kStored), ErrorCode::kOk);
    const bool is_limited = variant == ZipVariant::kZip32;
    EXPECT_EQ(writer_.add("one more", "x", ZipMethod::kDeflated),
              is_limited ? ErrorCode::kTooManyZipStreams : ErrorCode::kOk);
    ASSERT_EQ(writer_.finish(), ErrorCode::kOk);
    ZipReader reader;
    ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
    EXPECT_EQ(reader.members().size(), is_limited ? 65535U : 65536U);
    EXPECT_EQ(reader.variant(), variant);
    EXPECT_EQ(content_of(reader, "65534"), "");
    EXPECT_EQ(reader.find("one more") == nullptr, is_limited);
  }
}

TEST_F(ZipWriting, SizeLimitOfTheOldVariant) {
  const ZipWriterOptions options{.variant = ZipVariant::kZip32, .max_zip32_bytes = 100'000};
  ASSERT_EQ(writer_.create(path_, options), ErrorCode::kOk);
  ASSERT_EQ(writer_.add("a", std::string(60'000, 'a'), ZipMethod::kStored), ErrorCode::kOk);
  EXPECT_GT(writer_.bytes_written(), 60'000U);
  EXPECT_FALSE(writer_.size_limit_reached());
  EXPECT_EQ(writer_.add("b", std::string(60'000, 'b'), ZipMethod::kStored), ErrorCode::kFileWrite);
  EXPECT_TRUE(writer_.size_limit_reached());
  ASSERT_EQ(writer_.finish(), ErrorCode::kOk);  // noticed before b was begun
  ZipReader reader;
  ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
  EXPECT_EQ(reader.members().size(), 1U);

  ASSERT_EQ(writer_.create(path_, options), ErrorCode::kOk);
  EXPECT_FALSE(writer_.size_limit_reached());
  ASSERT_EQ(writer_.begin("b", ZipMethod::kStored), ErrorCode::kOk);
  ASSERT_EQ(writer_.write(std::string(120'000, 'b')), ErrorCode::kOk);  // not a block yet
  EXPECT_EQ(writer_.end(), ErrorCode::kFileWrite);
  EXPECT_TRUE(writer_.size_limit_reached());
  EXPECT_EQ(writer_.finish(), ErrorCode::kFileWrite);
  ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
  EXPECT_EQ(content_of(reader, "a").size(), 60'000U);

  // Files stay within the limit, directory and all, wherever it lies.
  for (uint64_t limit = 400; limit < 1000; limit += 7) {
    ASSERT_EQ(writer_.create(path_, {.variant = ZipVariant::kZip32, .max_zip32_bytes = limit}),
              ErrorCode::kOk);
    for (int i = 0; writer_.add(std::to_string(i), "some bytes", ZipMethod::kStored) == ErrorCode::kOk;) ++i;
    ASSERT_EQ(writer_.finish(), ErrorCode::kOk);
    EXPECT_LE(std::filesystem::file_size(path_), limit);
  }
}

// Writes 4.5 GB: set ROWVANE_SLOW_TESTS to run it.
TEST_F(ZipWriting, MembersBeyondFourGigabytes) {
  if (std::getenv("ROWVANE_SLOW_TESTS") == nullptr) GTEST_SKIP() << "ROWVANE_SLOW_TESTS is not set";
  const uint64_t blocks = 4608;
  const auto zeros = [](uint64_t, std::string& out) {
    out.assign(kZipBlockSize, '\0');
    return ErrorCode::kOk;
  };
  ASSERT_EQ(writer_.create(path_, {.variant = ZipVariant::kZip32, .level = 1, .threads = 2}), ErrorCode::kOk);
  EXPECT_EQ(writer_.add_blocks("deflated", ZipMethod::kDeflated, blocks, zeros), ErrorCode::kFileWrite);
  EXPECT_TRUE(writer_.size_limit_reached());

  ASSERT_EQ(writer_.create(path_, {.level = 1, .threads = 2}), ErrorCode::kOk);
  ASSERT_EQ(writer_.add_blocks("deflated", ZipMethod::kDeflated, blocks, zeros), ErrorCode::kOk);
  ASSERT_EQ(writer_.add_blocks("stored", ZipMethod::kStored, blocks, zeros), ErrorCode::kOk);
  ASSERT_EQ(writer_.add("after", "beyond", ZipMethod::kDeflated), ErrorCode::kOk);
  ASSERT_EQ(writer_.finish(), ErrorCode::kOk);
  ZipReader reader;
  ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
  EXPECT_EQ(content_of(reader, "after"), "beyond");
  for (const char* name : {"deflated", "stored"}) {
    const ZipMember& member = *reader.find(name);
    EXPECT_EQ(member.size, blocks * kZipBlockSize);
    EXPECT_EQ(ZipReader::block_count(member), blocks);
    std::string block;
    uint32_t crc = 0;
    ASSERT_EQ(reader.read_block(member, blocks - 1, block, crc), ErrorCode::kOk);
    EXPECT_EQ(block, std::string(kZipBlockSize, '\0'));
  }
}

}  // namespace
}  // namespace rowvane
