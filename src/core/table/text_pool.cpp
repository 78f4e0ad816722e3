#include "core/table/text_pool.h"

#include <algorithm>
#include <cstring>

namespace rowvane {
namespace {

constexpr size_t kFirstSlots = 64;

uint64_t load(const char* bytes, size_t count) {
  uint64_t word = 0;
  std::memcpy(&word, bytes, count);
  return word;
}

uint64_t mix(uint64_t a, uint64_t b) {
  const auto product =
      static_cast<unsigned __int128>(a ^ 0x9E3779B97F4A7C15ull) * (b ^ 0xD6E8FEB86659FD93ull);
  return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
}

// Multiplies overlapping words together; short texts take one multiplication.
uint32_t hash_of(std::string_view text) {
  const char* bytes = text.data();
  const size_t size = text.size();
  uint64_t hash;
  if (size < 8) {
    const uint64_t word =
        size >= 4 ? load(bytes, 4) | load(bytes + size - 4, 4) << 32
                  : load(bytes, 1) | load(bytes + size / 2, 1) << 8 | load(bytes + size - 1, 1) << 16;
    hash = mix(word, size);
  } else {
    hash = size;
    for (size_t i = 0; i + 16 <= size; i += 16) hash = mix(load(bytes + i, 8) ^ hash, load(bytes + i + 8, 8));
    const size_t rest = size < 16 ? 0 : size - 16;
    hash = mix(load(bytes + rest, 8) ^ hash, load(bytes + size - 8, 8));
  }
  return static_cast<uint32_t>(hash ^ (hash >> 32));
}

}  // namespace

TextPool::TextPool() {
  entries_.push_back(0);
}

TextPool::Code TextPool::append(std::string_view text) {
  if (text.empty()) return 0;
  const Code code = static_cast<Code>(entries_.size());
  entries_.push_back(arena_.append(text) << kLengthBits | text.size());
  return code;
}

TextPool::Code TextPool::intern(std::string_view new_text) {
  if (new_text.empty()) return 0;
  if ((used_slots_ + 1) * 4 > slots_.size() * 3)
    rebuild_index(slots_.empty() ? kFirstSlots : slots_.size() * 2);
  const uint32_t hash = hash_of(new_text);
  const size_t mask = slots_.size() - 1;
  for (size_t i = hash & mask;; i = (i + 1) & mask) {
    Slot& slot = slots_[i];
    if (slot.code == 0) {
      slot = {hash, append(new_text)};
      ++used_slots_;
      return slot.code;
    }
    if (slot.hash == hash && text(slot.code) == new_text) return slot.code;
  }
}

void TextPool::rebuild_index(size_t slots) {
  while (entries_.size() * 4 > slots * 3) slots *= 2;
  slots_.assign(slots, Slot{0, 0});
  used_slots_ = 0;
  const size_t mask = slots - 1;
  for (Code code = 1; code < entries_.size(); ++code) {
    const uint32_t hash = hash_of(text(code));
    size_t i = hash & mask;
    while (slots_[i].code != 0 && (slots_[i].hash != hash || text(slots_[i].code) != text(code)))
      i = (i + 1) & mask;
    if (slots_[i].code != 0) continue;
    slots_[i] = {hash, code};
    ++used_slots_;
  }
}

void TextPool::clear() {
  arena_.clear();
  entries_.resize(1);
  if (used_slots_ > 0) std::fill(slots_.begin(), slots_.end(), Slot{0, 0});
  used_slots_ = 0;
}

void TextPool::drop_index() {
  slots_ = {};
  used_slots_ = 0;
}

uint64_t TextPool::memory_bytes() const {
  return arena_.memory_bytes() + entries_.capacity() * sizeof(uint64_t) + slots_.capacity() * sizeof(Slot);
}

}  // namespace rowvane
