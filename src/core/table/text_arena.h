// The bytes of the texts in a pool.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace rowvane {

// An arena: texts are added one behind the other and stay where they are until all go at once. A text is at
// most kBlockBytes long. Adding ends the life of pointers that `at` gave while the first block is small.
class TextArena {
 public:
  static constexpr int kBlockBits = 20;
  static constexpr uint64_t kBlockBytes = uint64_t{1} << kBlockBits;

  // Copies TEXT, which is not empty; answers its offset.
  uint64_t append(std::string_view text);
  const char* at(uint64_t offset) const {
    return blocks_[offset >> kBlockBits].get() + (offset & (kBlockBytes - 1));
  }

  // Forgets all texts and keeps the first block for the next ones.
  void clear();
  // Bytes of text held.
  uint64_t text_bytes() const { return text_bytes_; }
  // Bytes of memory in use.
  uint64_t memory_bytes() const { return (blocks_.size() - 1) * kBlockBytes + first_block_bytes_; }

 private:
  char* reserve(size_t bytes);
  void grow_first_block(size_t bytes);

  // All blocks but the first have kBlockBytes; the first one grows to that, so that small columns stay small.
  std::vector<std::unique_ptr<char[]>> blocks_ = std::vector<std::unique_ptr<char[]>>(1);
  size_t first_block_bytes_ = 0;
  uint64_t next_offset_ = 0;
  uint64_t text_bytes_ = 0;
};

}  // namespace rowvane
