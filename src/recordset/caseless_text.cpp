#include "recordset/caseless_text.h"

#include "core/utf8.h"
#include "platform/characters.h"

namespace rowvane {
namespace {

constexpr std::array<char, 256> kLower = [] {
  std::array<char, 256> lower{};
  for (size_t i = 0; i < lower.size(); ++i) lower[i] = static_cast<char>(i >= 'A' && i <= 'Z' ? i + 32 : i);
  return lower;
}();

char lower(char c) {
  return kLower[static_cast<unsigned char>(c)];
}

std::u32string folded_characters(char32_t character) {
  std::string text;
  append_character(character, text);
  text = platform::fold_case(text);
  std::u32string characters;
  for (size_t i = 0; i < text.size();) characters += next_character(text, i);
  return characters;
}

}  // namespace

CaselessText::CaselessText(std::string_view wanted) {
  fold(wanted, 0);
  wanted_ = folded_;
  for (const char32_t character : wanted_) {
    if (character >= 0x80) {
      wanted_ascii_.clear();
      break;
    }
    wanted_ascii_ += static_cast<char>(character);
  }
}

size_t CaselessText::find_ascii(std::string_view text, size_t from) const {
  const std::string_view wanted = wanted_ascii_;
  if (text.size() < wanted.size()) return std::string_view::npos;
  const size_t last = text.size() - wanted.size();
  for (size_t i = from; i <= last; ++i) {
    if (lower(text[i]) != wanted[0]) continue;
    size_t k = 1;
    while (k < wanted.size() && lower(text[i + k]) == wanted[k]) ++k;
    if (k == wanted.size()) return i;
  }
  return std::string_view::npos;
}

bool CaselessText::is_in(std::string_view text) {
  if (wanted_.empty()) return false;
  if (!wanted_ascii_.empty() && find_ascii(text, 0) != std::string_view::npos) return true;
  if (is_ascii(text)) return false;
  fold(text, 0);
  return folded_.find(wanted_) != std::u32string::npos;
}

std::optional<TextSpan> CaselessText::find(std::string_view text, size_t from) {
  if (wanted_.empty() || from > text.size()) return std::nullopt;
  if (is_ascii(text.substr(from))) {
    const size_t found = wanted_ascii_.empty() ? std::string_view::npos : find_ascii(text, from);
    if (found == std::string_view::npos) return std::nullopt;
    return TextSpan{found, found + wanted_ascii_.size()};
  }
  fold(text, from);
  const size_t found = folded_.find(wanted_);
  if (found == std::u32string::npos) return std::nullopt;
  return span_at(found, text.size());
}

TextSpan CaselessText::span_at(size_t found, size_t text_end) const {
  // Where the match ends within the folded form of one character, the whole character belongs to it.
  size_t behind = found + wanted_.size();
  while (behind < starts_.size() && starts_[behind] == starts_[behind - 1]) ++behind;
  return {starts_[found], behind < starts_.size() ? starts_[behind] : text_end};
}

std::vector<TextSpan> CaselessText::find_all(std::string_view text) {
  std::vector<TextSpan> all;
  if (is_ascii(text)) {
    for (auto span = find(text); span; span = find(text, span->end)) all.push_back(*span);
    return all;
  }
  fold(text, 0);
  size_t from = wanted_.empty() ? std::u32string::npos : folded_.find(wanted_);
  while (from != std::u32string::npos) {
    all.push_back(span_at(from, text.size()));
    from += wanted_.size();
    while (from < starts_.size() && starts_[from] < all.back().end) ++from;
    from = folded_.find(wanted_, from);
  }
  return all;
}

void CaselessText::fold(std::string_view text, size_t from) {
  folded_.clear();
  starts_.clear();
  for (size_t i = from; i < text.size();) {
    const auto start = static_cast<uint32_t>(i);
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80) {
      folded_ += static_cast<char32_t>(static_cast<unsigned char>(lower(text[i])));
      starts_.push_back(start);
      ++i;
      continue;
    }
    const char32_t character = next_character(text, i);
    const bool is_broken = i == start + 1;
    fold_character(is_broken ? kBrokenByte + byte : character, start);
  }
}

void CaselessText::fold_character(char32_t character, uint32_t start) {
  const char32_t alone = folded_alone(character);
  if (alone != kManyCharacters) {
    folded_ += alone;
    starts_.push_back(start);
    return;
  }
  for (const char32_t one : folded_characters(character)) {
    folded_ += one;
    starts_.push_back(start);
  }
}

char32_t CaselessText::folded_alone(char32_t character) {
  if (character >= kBrokenByte) return character;
  if (character >= 0x1'0000) return kManyCharacters;
  std::unique_ptr<Page>& page = pages_[character >> 8];
  if (page == nullptr) {
    page = std::make_unique<Page>();
    for (char32_t i = 0; i < page->size(); ++i) {
      const std::u32string characters = folded_characters((character & 0xFF00) + i);
      (*page)[i] = characters.size() == 1 ? characters[0] : kManyCharacters;
    }
  }
  return (*page)[character & 0xFF];
}

}  // namespace rowvane
