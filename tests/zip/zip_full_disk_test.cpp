// A limit on the size of files stands in for a full disk; only some systems have one.
#ifndef _WIN32

#include <csignal>

#include <sys/resource.h>

#include "zip/zip_test_support.h"

namespace rowvane {
namespace {

TEST(ZipFullDisk, LosesNothing) {
  TestFolder folder;
  const std::string path = folder.path("a.zip");
  write_file(path, "old");
  rlimit former{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
  const auto former_handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{.rlim_cur = 200'000, .rlim_max = former.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  ZipWriter writer;
  ASSERT_EQ(writer.create(path, {.level = 0, .threads = 2}), ErrorCode::kOk);
  const auto produce = [](uint64_t block, std::string& out) {
    out = sample_text(50'000, static_cast<unsigned>(block));
    return ErrorCode::kOk;
  };
  const ErrorCode error = writer.add_blocks("t", ZipMethod::kDeflated, 100, produce);
  setrlimit(RLIMIT_FSIZE, &former);
  std::signal(SIGXFSZ, former_handler);
  EXPECT_EQ(error, ErrorCode::kFileWrite);
  EXPECT_FALSE(writer.size_limit_reached());
  EXPECT_EQ(writer.finish(), ErrorCode::kFileWrite);
  EXPECT_EQ(read_file(path), "old");
  EXPECT_EQ(folder.file_count(), 1U);
}

}  // namespace
}  // namespace rowvane

#endif
