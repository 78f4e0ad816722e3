#include "formula/evaluation/work_area.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "core/values/number_text.h"
#include "platform/ascii.h"

namespace rowvane {
namespace {

constexpr size_t kChunkBytes = 64 * 1024;
constexpr size_t kKeptBytes = size_t{4} << 20;  // stay with the area when it is cleared
constexpr int kSignificantDigits = 15;

// Digits of a number's text from the first that is not zero; zeros at the end of a whole number count.
int significant_digits(std::string_view text) {
  int count = 0;
  for (const char c : text) {
    if (c == 'e') break;
    if (ascii::is_digit(c) && (count > 0 || c != '0')) ++count;
  }
  return count;
}

double round_to_significant(double number) {
  std::array<char, 40> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                 std::chars_format::scientific, kSignificantDigits - 1)
                       .ptr;
  double rounded = number;  // stays so where the digits are beyond the greatest number
  std::from_chars(buffer.data(), end, rounded);
  return rounded;
}

}  // namespace

void WorkArea::clear() {
  while (total_ > kKeptBytes && chunks_.size() > 1) {
    total_ -= chunks_.back().size;
    chunks_.pop_back();
  }
  chunk_ = 0;
  used_ = 0;
}

char* WorkArea::take(size_t bytes, size_t alignment) {
  used_ = (used_ + alignment - 1) / alignment * alignment;
  while (chunk_ < chunks_.size() && used_ + bytes > chunks_[chunk_].size) {
    ++chunk_;
    used_ = 0;
  }
  if (chunk_ == chunks_.size()) {
    const size_t size = std::max(bytes, kChunkBytes);
    if (size > max_bytes_ - std::min(total_, max_bytes_)) return nullptr;
    chunks_.push_back({std::make_unique_for_overwrite<char[]>(size), size});
    total_ += size;
  }
  char* place = chunks_[chunk_].bytes.get() + used_;
  used_ += bytes;
  return place;
}

char* WorkArea::text(size_t bytes) {
  return bytes <= kMaxTextResultBytes ? take(bytes, 1) : nullptr;
}

Scalar WorkArea::keep(std::string_view text) {
  if (text.empty()) return Scalar::of(std::string_view());
  char* place = take(text.size(), 1);
  if (place == nullptr) return Scalar::of(FormulaError::kMemory);
  std::memcpy(place, text.data(), text.size());
  return Scalar::of(std::string_view(place, text.size()));
}

Scalar* WorkArea::cells(size_t count) {
  if (count > max_bytes_ / sizeof(Scalar)) return nullptr;
  char* place = take(count * sizeof(Scalar), alignof(Scalar));
  if (place == nullptr) return nullptr;
  auto* first = reinterpret_cast<Scalar*>(place);
  std::uninitialized_value_construct_n(first, count);
  return first;
}

Scalar WorkArea::join(std::string_view left, std::string_view right) {
  if (left.size() + right.size() > kMaxTextResultBytes) return Scalar::of(FormulaError::kMemory);
  if (right.empty()) return Scalar::of(left);
  if (left.empty()) return Scalar::of(right);
  if (chunk_ < chunks_.size()) {
    Chunk& chunk = chunks_[chunk_];
    char* top = chunk.bytes.get() + used_;
    if (left.size() <= used_ && left.data() + left.size() == top && right.size() <= chunk.size - used_) {
      std::memcpy(top, right.data(), right.size());
      used_ += right.size();
      return Scalar::of(std::string_view(left.data(), left.size() + right.size()));
    }
  }
  char* place = text(left.size() + right.size());
  if (place == nullptr) return Scalar::of(FormulaError::kMemory);
  std::memcpy(place, left.data(), left.size());
  std::memcpy(place + left.size(), right.data(), right.size());
  return Scalar::of(std::string_view(place, left.size() + right.size()));
}

std::string_view WorkArea::number_text(double number, std::string_view decimal_separator) {
  if (number == 0) return "0";
  digits_.clear();
  append_number(number, decimal_separator, digits_);
  if (significant_digits(digits_) > kSignificantDigits) {
    digits_.clear();
    append_number(round_to_significant(number), decimal_separator, digits_);
  }
  const Scalar kept = keep(digits_);
  return kept.is_text() ? kept.text : std::string_view();
}

}  // namespace rowvane
