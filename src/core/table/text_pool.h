// The texts of a text column, each held once.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/table/text_arena.h"
#include "core/uninitialized_vector.h"

namespace rowvane {

// Texts by 32-bit code. Code 0 is the empty text. Codes are given in the order of first appearance and stay
// valid for the pool's life. A text is at most kMaxTextBytes long.
//
// `intern` finds a text that is there already; `append` gives each text an entry of its own and needs no hash
// table, for columns whose texts do not repeat. Both may be mixed: two codes may stand for equal texts.
//
// Reading from several threads is safe while nobody adds; adding ends the life of the views that `text` gave.
class TextPool {
 public:
  using Code = uint32_t;
  static constexpr size_t kMaxTextBytes = 65'535;

  TextPool();

  Code intern(std::string_view text);
  Code append(std::string_view text);

  std::string_view text(Code code) const {
    const uint64_t entry = entries_[code];
    return {arena_.at(entry >> kLengthBits), entry & kMaxTextBytes};
  }

  // Number of codes, the empty text included.
  size_t size() const { return entries_.size(); }
  // Bytes of text held.
  uint64_t text_bytes() const { return arena_.text_bytes(); }
  // Bytes of memory in use.
  uint64_t memory_bytes() const;

  // Forgets all texts and keeps the memory for the next ones.
  void clear();
  // Gives the hash table back; the next `intern` builds it anew.
  void drop_index();

 private:
  static constexpr int kLengthBits = 16;

  struct Slot {
    uint32_t hash;
    Code code;  // 0 in a free slot: the empty text is never looked up
  };

  void rebuild_index(size_t slots);

  TextArena arena_;
  UninitializedVector<uint64_t> entries_;  // offset << kLengthBits | length
  std::vector<Slot> slots_;                // power of two, or empty
  size_t used_slots_ = 0;
};

}  // namespace rowvane
