#include "text/caseless_text.h"

#include "platform/characters.h"
#include "platform/utf8.h"

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

// No character folds to more characters a byte: one of two bytes to three characters.
constexpr size_t kMostFolded = 2;

size_t find_ascii(std::string_view text, size_t from, std::string_view wanted) {
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

}  // namespace

bool may_fold_to_ascii(std::string_view text) {
  for (size_t i = 0; i + 1 < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0xC3) continue;
    switch (byte << 8 | static_cast<unsigned char>(text[i + 1])) {
      case 0xC39F:  // sharp s
      case 0xC4B0:  // I with a dot
      case 0xC589:  // n behind an apostrophe
      case 0xC5BF:  // long s
      case 0xC7B0:  // j with a caron
      case 0xE1BA:  // U+1E96 to U+1E9A, and the capital sharp s
      case 0xE284:  // the Kelvin sign
      case 0xEFAC:  // ligatures such as ff and st
        return true;
      default:
        break;
    }
  }
  return false;
}

CaselessText::CaselessText(std::string_view wanted) {
  wanted_ = fold(wanted, 0, false);
  std::string run;
  for (const char32_t character : wanted_) {
    if (character < 0x80) {
      run += static_cast<char>(character);
    } else {
      run.clear();
    }
    if (run.size() > ascii_.size()) ascii_ = run;
  }
  is_all_ascii_ = ascii_.size() == wanted_.size();
}

bool CaselessText::is_in(std::string_view text) {
  if (wanted_.empty()) return false;
  if (!ascii_.empty()) {
    // Most texts are settled here: what is all ASCII in the folded text stands so in the text.
    const bool has_ascii = find_ascii(text, 0, ascii_) != std::string_view::npos;
    if (has_ascii && is_all_ascii_) return true;
    if (!has_ascii && !may_fold_to_ascii(text)) return false;
  }
  if (is_ascii(text)) return false;
  return fold(text, 0, false).find(wanted_) != std::u32string::npos;
}

std::optional<TextSpan> CaselessText::find(std::string_view text, size_t from) {
  if (wanted_.empty() || from > text.size()) return std::nullopt;
  if (is_ascii(text.substr(from))) {
    const size_t found = is_all_ascii_ ? find_ascii(text, from, ascii_) : std::string_view::npos;
    if (found == std::string_view::npos) return std::nullopt;
    return TextSpan{found, found + ascii_.size()};
  }
  const size_t found = fold(text, from, true).find(wanted_);
  if (found == std::u32string::npos) return std::nullopt;
  return span_at(found, text.size());
}

TextSpan CaselessText::span_at(size_t found, size_t text_end) const {
  // Where the match ends within the folded form of one character, the whole character belongs to it.
  size_t behind = found + wanted_.size();
  while (behind < folded_count_ && starts_[behind] == starts_[behind - 1]) ++behind;
  return {starts_[found], behind < folded_count_ ? starts_[behind] : text_end};
}

std::vector<TextSpan> CaselessText::find_all(std::string_view text) {
  std::vector<TextSpan> all;
  if (wanted_.empty()) return all;
  if (is_ascii(text)) {
    for (auto span = find(text); span; span = find(text, span->end)) all.push_back(*span);
    return all;
  }
  const std::u32string_view folded = fold(text, 0, true);
  for (size_t found = folded.find(wanted_); found != std::u32string::npos;) {
    all.push_back(span_at(found, text.size()));
    found += wanted_.size();
    while (found < folded.size() && starts_[found] < all.back().end) ++found;
    found = folded.find(wanted_, found);
  }
  return all;
}

std::u32string_view CaselessText::fold(std::string_view text, size_t from, bool with_starts) {
  const size_t most = kMostFolded * (text.size() - from);
  if (folded_.size() < most) folded_.resize(most);
  if (with_starts && starts_.size() < most) starts_.resize(most);
  folded_count_ = 0;
  for (size_t i = from; i < text.size();) {
    const size_t start = i;
    const auto byte = static_cast<unsigned char>(text[i]);
    const size_t first = folded_count_;
    if (byte < 0x80) {
      folded_[folded_count_++] = static_cast<char32_t>(lower(text[i++]));
    } else {
      const char32_t character = next_character(text, i);
      const bool broken = character == kReplacementCharacter && character_length(text, start) == 0;
      if (broken) i = start + 1;  // broken bytes are equal to themselves, each by itself
      const char32_t alone = folded_alone(broken ? kBrokenByte + byte : character);
      if (alone != kManyCharacters) {
        folded_[folded_count_++] = alone;
      } else {
        for (const char32_t one : folded_characters(character)) folded_[folded_count_++] = one;
      }
    }
    for (size_t k = first; with_starts && k < folded_count_; ++k) starts_[k] = static_cast<uint32_t>(start);
  }
  return {folded_.data(), folded_count_};
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
