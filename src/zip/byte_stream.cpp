#include "zip/byte_stream.h"

namespace rowvane {

void ItemWriter::put(uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) bytes_ += static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
}

void ItemWriter::put_text(std::string_view text) {
  put_u32(static_cast<uint32_t>(text.size()));
  bytes_ += text;
}

void ItemReader::fail() {
  failed_ = true;
  rest_ = {};
}

uint32_t ItemReader::get(size_t bytes) {
  if (rest_.size() < bytes) {
    fail();
    return 0;
  }
  uint32_t value = 0;
  for (size_t i = 0; i < bytes; ++i)
    value |= static_cast<uint32_t>(static_cast<unsigned char>(rest_[i])) << (8 * i);
  rest_.remove_prefix(bytes);
  return value;
}

std::string ItemReader::get_text() {
  const uint32_t length = get_u32();
  if (rest_.size() < length) {
    fail();
    return {};
  }
  std::string text(rest_.substr(0, length));
  rest_.remove_prefix(length);
  return text;
}

uint32_t ItemReader::get_count(size_t item_bytes) {
  const uint32_t count = get_u32();
  if (count > rest_.size() / item_bytes) {
    fail();
    return 0;
  }
  return count;
}

}  // namespace rowvane
