// Finds a text in other texts whatever their letter case.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/regular_expression.h"

namespace rowvane {

// False only for texts whose characters beyond ASCII all fold to characters beyond ASCII.
bool may_fold_to_ascii(std::string_view text);

// A text is found where its folded characters (platform::fold_case) stand in the folded text, so that
// "STRASSE" is found in "Straße" and so is "STRAS". Bytes that are no UTF-8 equal only themselves. One thread
// at a time.
class CaselessText {
 public:
  explicit CaselessText(std::string_view wanted);

  // False for an empty wanted text.
  bool is_in(std::string_view text);
  // The first match that begins at byte FROM, where a character begins, or behind it; rounded out to whole
  // characters of TEXT.
  std::optional<TextSpan> find(std::string_view text, size_t from = 0);
  // All matches, none overlapping another.
  std::vector<TextSpan> find_all(std::string_view text);

 private:
  static constexpr char32_t kManyCharacters = 0xFFFF'FFFF;  // of one that folds to several or to none
  static constexpr char32_t kBrokenByte = 0x11'0000;        // and the byte added
  using Page = std::array<char32_t, 256>;

  // The match at FOUND of the folded characters.
  TextSpan span_at(size_t found, size_t text_end) const;
  // Puts the folded characters of TEXT from FROM on into `folded_` and, WITH_STARTS, the byte at which the
  // character that each comes from begins into `starts_`.
  std::u32string_view fold(std::string_view text, size_t from, bool with_starts);
  char32_t folded_alone(char32_t character);

  std::u32string wanted_;
  std::string ascii_;          // the longest run of ASCII in the folded wanted text
  bool is_all_ascii_ = false;  // it is the whole of it
  std::vector<char32_t> folded_;
  std::vector<uint32_t> starts_;
  size_t folded_count_ = 0;
  std::array<std::unique_ptr<Page>, 256> pages_;  // folded characters of the basic plane, as they are needed
};

}  // namespace rowvane
