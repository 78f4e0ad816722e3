#include "text/similar_text.h"

#include <algorithm>
#include <limits>

#include "platform/characters.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

constexpr size_t kPatternCharacters = 64;
constexpr size_t kAsciiCharacters = 128;
constexpr size_t kMostWantedWords = 32;
constexpr double kLeastWordSimilarity = 0.5;
constexpr double kLeftOverShare = 0.05;
constexpr size_t kNoPartner = std::numeric_limits<size_t>::max();

bool is_word_character(char32_t character) {
  if (character < 0x80) return (character >= '0' && character <= '9') || platform::is_letter(character);
  return platform::is_letter(character) || platform::is_mark(character);
}

}  // namespace

// ---- words

void SimilarText::Words::read(std::string_view text) {
  characters.clear();
  list.clear();
  const std::string folded = platform::fold_case(text);
  bool inside = false;
  for (size_t position = 0; position < folded.size();) {
    const char32_t character = next_character(folded, position);
    const bool belongs = is_word_character(character);
    if (belongs && !inside) list.push_back({characters.size(), 0});
    if (belongs) {
      characters.push_back(character);
      ++list.back().size;
    }
    inside = belongs;
  }
}

// ---- pairs of words

SimilarText::Pattern::Pattern(std::u32string_view text) : characters(text) {
  if (text.size() > kPatternCharacters) return;
  ascii.resize(kAsciiCharacters);
  for (size_t i = 0; i < text.size(); ++i) {
    const uint64_t place = uint64_t{1} << i;
    if (text[i] < kAsciiCharacters) {
      ascii[text[i]] |= place;
      continue;
    }
    const auto known = std::ranges::find(others, text[i], &std::pair<char32_t, uint64_t>::first);
    if (known != others.end()) {
      known->second |= place;
    } else {
      others.emplace_back(text[i], place);
    }
  }
}

uint64_t SimilarText::Pattern::places(char32_t character) const {
  if (character < kAsciiCharacters) return ascii[character];
  const auto known = std::ranges::find(others, character, &std::pair<char32_t, uint64_t>::first);
  return known == others.end() ? 0 : known->second;
}

// Optimal string alignment distance. A column of the table of distances is held as its vertical differences;
// each character of TEXT makes the next column.
size_t SimilarText::Pattern::distance(std::u32string_view text) const {
  const uint64_t last = uint64_t{1} << (characters.size() - 1);
  uint64_t vertical_up = ~uint64_t{0};
  uint64_t vertical_down = 0;
  uint64_t diagonal_zero = 0;
  uint64_t former_places = 0;
  size_t result = characters.size();
  for (const char32_t character : text) {
    const uint64_t found = places(character);
    const uint64_t swapped = ((~diagonal_zero & found) << 1) & former_places;
    diagonal_zero = (((found & vertical_up) + vertical_up) ^ vertical_up) | found | vertical_down | swapped;
    uint64_t horizontal_up = vertical_down | ~(diagonal_zero | vertical_up);
    uint64_t horizontal_down = diagonal_zero & vertical_up;
    if ((horizontal_up & last) != 0) ++result;
    if ((horizontal_down & last) != 0) --result;
    horizontal_up = (horizontal_up << 1) | 1;
    horizontal_down <<= 1;
    vertical_up = horizontal_down | ~(diagonal_zero | horizontal_up);
    vertical_down = horizontal_up & diagonal_zero;
    former_places = found;
  }
  return result;
}

// 0 where it is below LEAST.
double SimilarText::Pattern::similarity(std::u32string_view text, double least) const {
  if (text == characters) return 1;
  const size_t longer = std::max(text.size(), characters.size());
  const size_t shorter = std::min(text.size(), characters.size());
  // The distance is at least the difference of the lengths.
  if (ascii.empty() || static_cast<double>(shorter) < least * static_cast<double>(longer)) return 0;
  const double similar = 1 - static_cast<double>(distance(text)) / static_cast<double>(longer);
  return similar < least ? 0 : similar;
}

// ---- texts

SimilarText::SimilarText(std::string_view wanted) : wanted_(platform::fold_case(wanted)) {
  Words words;
  words.read(wanted);
  if (words.list.size() > kMostWantedWords) words.list.resize(kMostWantedWords);
  for (const Word& word : words.list) {
    patterns_.emplace_back(words.word(word));
    wanted_size_ += word.size;
  }
  if (!words.characters.empty() && words.characters.size() <= kPatternCharacters)
    joined_.emplace_back(words.characters);
}

double SimilarText::similarity(std::string_view text, double threshold) {
  if (patterns_.empty()) return platform::fold_case(text) == wanted_ ? 1 : 0;
  text_.read(text);
  if (text_.list.empty()) return 0;
  double similar = can_reach(threshold) ? assigned_similarity() : 0;
  if (similar < 1 && !joined_.empty()) {
    similar = std::max(similar, joined_.front().similarity(text_.characters, std::max(similar, threshold)));
  }
  return similar < threshold ? 0 : similar;
}

// Fills the table of pairs. False when not even the best word of the text for each wanted word makes it.
bool SimilarText::can_reach(double threshold) {
  const size_t columns = text_.list.size();
  pairs_.assign(patterns_.size() * columns, 0);
  double best = 0;
  for (size_t row = 0; row < patterns_.size(); ++row) {
    const auto size = static_cast<double>(patterns_[row].characters.size());
    double best_of_row = 0;
    for (size_t column = 0; column < columns; ++column) {
      double& pair = pairs_[row * columns + column];
      pair = size * patterns_[row].similarity(text_.word(text_.list[column]), kLeastWordSimilarity);
      best_of_row = std::max(best_of_row, pair);
    }
    best += best_of_row;
  }
  return best >= threshold * static_cast<double>(wanted_size_);
}

double SimilarText::assigned_similarity() {
  std::vector<size_t> partners;
  const double sum = best_assignment(partners);
  size_t matched = 0;
  for (const size_t column : partners) {
    if (column != kNoPartner) matched += text_.list[column].size;
  }
  const double share = static_cast<double>(matched) / static_cast<double>(text_.characters.size());
  return sum / static_cast<double>(wanted_size_) * (1 - kLeftOverShare + kLeftOverShare * share);
}

// The sum of the pairs of the best assignment; PARTNERS gets the column of each row. Rows are added one by
// one; each is brought in by a path of changed partners that costs least, found with potentials of the rows
// and columns (all counted from 1; column 0 stands for the new row). As many columns of zeros as there are
// rows stand behind the words, so that every row has a partner.
double SimilarText::best_assignment(std::vector<size_t>& partners) {
  const size_t rows = patterns_.size();
  const size_t words = text_.list.size();
  const size_t columns = words + rows;
  const auto cost = [&](size_t row, size_t column) {
    return column > words ? 0.0 : -pairs_[(row - 1) * words + column - 1];
  };
  std::vector<double> row_potentials(rows + 1);
  std::vector<double> column_potentials(columns + 1);
  std::vector<size_t> row_of(columns + 1);
  for (size_t row = 1; row <= rows; ++row) {
    std::vector<double> slack(columns + 1, std::numeric_limits<double>::infinity());
    std::vector<size_t> former(columns + 1);
    std::vector<bool> reached(columns + 1);
    row_of[0] = row;
    size_t at = 0;
    do {
      reached[at] = true;
      double least = std::numeric_limits<double>::infinity();
      size_t next = 0;
      for (size_t column = 1; column <= columns; ++column) {
        if (reached[column]) continue;
        const double reduced =
            cost(row_of[at], column) - row_potentials[row_of[at]] - column_potentials[column];
        if (reduced < slack[column]) {
          slack[column] = reduced;
          former[column] = at;
        }
        if (slack[column] < least) {
          least = slack[column];
          next = column;
        }
      }
      for (size_t column = 0; column <= columns; ++column) {
        if (reached[column]) {
          row_potentials[row_of[column]] += least;
          column_potentials[column] -= least;
        } else {
          slack[column] -= least;
        }
      }
      at = next;
    } while (row_of[at] != 0);
    for (; at != 0; at = former[at]) row_of[at] = row_of[former[at]];
  }
  double sum = 0;
  partners.assign(rows, kNoPartner);
  for (size_t column = 1; column <= words; ++column) {
    if (row_of[column] == 0) continue;
    const double pair = -cost(row_of[column], column);
    if (pair > 0) partners[row_of[column] - 1] = column - 1;
    sum += pair;
  }
  return sum;
}

}  // namespace rowvane
