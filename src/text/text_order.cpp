#include "text/text_order.h"

#include "platform/utf8.h"

namespace rowvane {

TextOrder::TextOrder(const SortOptions& options) {
  if (options.collation == SortCollation::kNeutral) return;
  collation_ = platform::Collation::open_for_user(
      {.case_sensitive = options.case_sensitive, .ignore_punctuation = options.ignore_punctuation});
}

int TextOrder::compare(std::string_view a, std::string_view b) const {
  return is_neutral() ? a.compare(b) : collation_->compare(a, b);
}

void TextOrder::append_key(std::string_view text, std::string& key) const {
  if (is_neutral()) {
    key += text;
  } else {
    collation_->append_key(text, key);
  }
}

std::span<const uint8_t> TextOrder::ascii_weights() const {
  return is_neutral() ? std::span<const uint8_t>() : collation_->ascii_weights();
}

std::string_view TextOrder::ignored_part(std::string_view text) const {
  if (is_neutral() || text.size() <= platform::kMostComparedBytes) return {};
  return text.substr(truncate_bytes(text, platform::kMostComparedBytes).size());
}

}  // namespace rowvane
