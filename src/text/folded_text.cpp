#include "text/folded_text.h"

#include "platform/characters.h"
#include "platform/utf8.h"

namespace rowvane {

uint8_t FoldedBytes::fold_character() {
  const size_t start = position_;
  next_character(text_, position_);
  folded_ = platform::fold_case(text_.substr(start, position_ - start));
  // A character that folds to nothing stands for itself, so that each step gives a byte.
  if (folded_.empty()) folded_ = text_.substr(start, position_ - start);
  next_in_folded_ = 1;
  return static_cast<uint8_t>(folded_[0]);
}

std::strong_ordering compare_folded(std::string_view a, std::string_view b) {
  FoldedBytes left(a);
  FoldedBytes right(b);
  while (!left.at_end() && !right.at_end()) {
    const auto order = left.next() <=> right.next();
    if (order != 0) return order;
  }
  return right.at_end() <=> left.at_end();
}

bool begins_folded(std::string_view text, std::string_view front) {
  FoldedBytes bytes(text);
  FoldedBytes wanted(front);
  while (!wanted.at_end()) {
    if (bytes.at_end() || bytes.next() != wanted.next()) return false;
  }
  return true;
}

std::optional<size_t> find_folded(std::string_view text, std::string_view wanted, size_t from) {
  if (wanted.empty()) return from;
  const uint8_t first = FoldedBytes(wanted).next();
  for (size_t position = from; position < text.size();) {
    const auto byte = static_cast<uint8_t>(text[position]);
    const bool is_ascii = byte < 0x80;
    const uint8_t lower = byte >= 'A' && byte <= 'Z' ? static_cast<uint8_t>(byte + 32) : byte;
    if ((!is_ascii || lower == first) && begins_folded(text.substr(position), wanted)) return position;
    if (is_ascii) {
      ++position;
    } else {
      next_character(text, position);
    }
  }
  return std::nullopt;
}

}  // namespace rowvane
