#include "formula/folded_text.h"

#include "core/utf8.h"
#include "platform/characters.h"

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

}  // namespace rowvane
