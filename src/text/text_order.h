// The order of texts that the sort options choose.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/collation.h"
#include "text/sort_options.h"

namespace rowvane {

// Any number of threads may use one at the same time.
//
// By language: texts compare as platform/collation.h says, by their first 8165 bytes. Neutral: all bytes
// compare as unsigned numbers.
class TextOrder {
 public:
  explicit TextOrder(const SortOptions& options);

  // Below 0, 0 or above 0, as A comes before B, with it or behind it.
  int compare(std::string_view a, std::string_view b) const;

  // True when texts are their own keys.
  bool is_neutral() const { return collation_ == nullptr; }
  // Appends a key of TEXT: keys compare as their texts do when they are taken as strings of bytes.
  void append_key(std::string_view text, std::string& key) const;

  // As those of platform::Collation; nothing in neutral order.
  std::span<const uint8_t> ascii_weights() const;

  // The part of TEXT that `compare` does not look at; empty but for long texts.
  std::string_view ignored_part(std::string_view text) const;

 private:
  std::unique_ptr<platform::Collation> collation_;  // null: neutral
};

}  // namespace rowvane
