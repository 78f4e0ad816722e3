#include "core/table/text_arena.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace rowvane {

void TextArena::grow_first_block(size_t bytes) {
  const size_t wanted = std::min<size_t>(std::bit_ceil(std::max(bytes, first_block_bytes_ * 4)), kBlockBytes);
  auto grown = std::make_unique_for_overwrite<char[]>(wanted);
  if (next_offset_ > 0) std::memcpy(grown.get(), blocks_[0].get(), next_offset_);
  blocks_[0] = std::move(grown);
  first_block_bytes_ = wanted;
}

// A place for BYTES at next_offset_; a text never crosses from one block into the next.
char* TextArena::reserve(size_t bytes) {
  uint64_t in_block = next_offset_ & (kBlockBytes - 1);
  const bool last_block_full = next_offset_ >> kBlockBits == blocks_.size();
  if (last_block_full || in_block + bytes > kBlockBytes) {
    next_offset_ = static_cast<uint64_t>(blocks_.size()) << kBlockBits;
    in_block = 0;
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(kBlockBytes));
  } else if (blocks_.size() == 1 && in_block + bytes > first_block_bytes_) {
    grow_first_block(static_cast<size_t>(in_block) + bytes);
  }
  return blocks_.back().get() + in_block;
}

uint64_t TextArena::append(std::string_view text) {
  std::memcpy(reserve(text.size()), text.data(), text.size());
  const uint64_t offset = next_offset_;
  next_offset_ += text.size();
  text_bytes_ += text.size();
  return offset;
}

void TextArena::clear() {
  blocks_.resize(1);
  next_offset_ = 0;
  text_bytes_ = 0;
}

}  // namespace rowvane
