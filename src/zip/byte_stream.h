// Binary items one after another: little-endian integers, and texts with their length before them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace rowvane {

class ItemWriter {
 public:
  void put_u8(uint8_t value) { bytes_ += static_cast<char>(value); }
  void put_u16(uint16_t value) { put(value, 2); }
  void put_u32(uint32_t value) { put(value, 4); }
  // A 32-bit length in bytes, then the bytes.
  void put_text(std::string_view text);

  const std::string& bytes() const { return bytes_; }

 private:
  void put(uint32_t value, int bytes);

  std::string bytes_;
};

// Reads what ItemWriter wrote. After the first item that the bytes do not hold whole, `failed` is true and
// all items read as 0 and empty.
class ItemReader {
 public:
  explicit ItemReader(std::string_view bytes) : rest_(bytes) {}

  uint8_t get_u8() { return static_cast<uint8_t>(get(1)); }
  uint16_t get_u16() { return static_cast<uint16_t>(get(2)); }
  uint32_t get_u32() { return get(4); }
  std::string get_text();
  // The number of items that follow, each of at least ITEM_BYTES: a number that the rest can't hold fails.
  uint32_t get_count(size_t item_bytes);

  bool failed() const { return failed_; }
  bool at_end() const { return rest_.empty(); }

 private:
  uint32_t get(size_t bytes);
  void fail();

  std::string_view rest_;
  bool failed_ = false;
};

}  // namespace rowvane
