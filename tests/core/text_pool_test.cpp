#include "core/table/text_pool.h"

#include <map>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace rowvane {
namespace {

std::string text_of(size_t length, unsigned variant) {
  std::string text(length, '\0');
  for (size_t i = 0; i < length; ++i) text[i] = static_cast<char>((i * 31 + variant * 7 + length) & 0xFF);
  return text;
}

TEST(TextPool, KeepsTextsOfAllLengths) {
  TextPool pool;
  std::map<TextPool::Code, std::string> expected = {{0, ""}};
  EXPECT_EQ(pool.intern(""), 0u);
  EXPECT_EQ(pool.append(""), 0u);
  for (unsigned variant = 0; variant < 3; ++variant) {
    for (size_t length = 1; length <= 40; ++length)
      expected[pool.intern(text_of(length, variant))] = text_of(length, variant);
    for (const size_t length : {255u, 4096u, 65'534u, 65'535u}) {
      expected[pool.append(text_of(length, variant))] = text_of(length, variant);
    }
  }
  EXPECT_EQ(pool.size(), expected.size());
  for (const auto& [code, text] : expected) EXPECT_EQ(pool.text(code), text) << code;
}

TEST(TextPool, GrowsOverManyBlocks) {
  TextPool pool;
  uint64_t bytes = 0;
  for (unsigned i = 0; i < 100; ++i) {
    const std::string text = text_of(65'535 - i * 11, i);
    ASSERT_EQ(pool.append(text), i + 1);
    bytes += text.size();
  }
  EXPECT_EQ(pool.text_bytes(), bytes);
  EXPECT_GT(pool.memory_bytes(), bytes);
  for (unsigned i = 0; i < 100; ++i) ASSERT_EQ(pool.text(i + 1), text_of(65'535 - i * 11, i)) << i;
}

// A text may end exactly where its block ends.
TEST(TextPool, FillsABlockToItsLastByte) {
  TextPool pool;
  for (unsigned i = 0; i < 64; ++i) pool.append(text_of(16'384, i));
  const auto next = pool.append("next");
  EXPECT_EQ(pool.text(next), "next");
  for (unsigned i = 0; i < 64; ++i) ASSERT_EQ(pool.text(i + 1), text_of(16'384, i));
}

TEST(TextPool, InternsEachTextOnce) {
  TextPool pool;
  std::map<std::string, TextPool::Code> codes;
  std::mt19937 random(3);
  for (int round = 0; round < 40'000; ++round) {
    const std::string text = "t" + std::to_string(random() % 10'000);
    const auto code = pool.intern(text);
    const auto [entry, is_new] = codes.emplace(text, code);
    ASSERT_EQ(entry->second, code) << text;
    if (is_new) {
      ASSERT_EQ(code, codes.size());
    }
    if (round % 9'000 == 8'999) pool.drop_index();
  }
  for (const auto& [text, code] : codes) ASSERT_EQ(pool.text(code), text);
}

TEST(TextPool, FindsAppendedTextsWhenTheIndexIsBuilt) {
  TextPool pool;
  const auto appended = pool.append("twice");
  const auto again = pool.append("twice");
  EXPECT_NE(appended, again);
  for (int i = 0; i < 500; ++i) pool.append("filler " + std::to_string(i));
  EXPECT_EQ(pool.intern("twice"), appended);
  pool.drop_index();
  EXPECT_EQ(pool.intern("filler 499"), 502u);
  EXPECT_EQ(pool.intern("new"), 503u);
}

}  // namespace
}  // namespace rowvane
