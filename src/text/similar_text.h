// How similar two texts are to a reader: misspellings and changed word order count little.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace rowvane {

// Texts that are at least this similar are taken for the same thing, misspelled.
inline constexpr double kSimilarThreshold = 0.7;

// The similarity of texts to one wanted text, from 0 (nothing in common) to 1.
//
// Both texts are cut into words (letters with their accents, and digits), letter case aside. Two words are
// similar by 1 - d / n, where n is the number of characters of the longer one and d the optimal string
// alignment distance: the least number of inserted, deleted and replaced characters and of swapped neighbours
// that makes one out of the other (F. Damerau, "A technique for computer detection and correction of spelling
// errors", Communications of the ACM 7, 1964), by the bit-parallel algorithm of H. Hyyrö ("A bit-vector
// algorithm for computing Levenshtein and Damerau edit distances", Nordic Journal of Computing 10, 2003).
// Words whose similarity is below a half have nothing in common, nor have different words of which one is
// longer than 64 characters. Of the wanted words the first 32 count.
//
// Each wanted word is matched with another word of the text so that the sum s of the similarities, weighted
// by the characters of the wanted words, is greatest (the assignment problem, solved by the method of H. Kuhn
// and J. Munkres). Words of the text that are left over cost up to a twentieth:
//   similarity = s / wanted characters * (0.95 + 0.05 * matched characters / characters of the text)
// The words of both texts run together count as one pair as well, so that "data base" finds "database"; the
// greater similarity holds. Of texts without any word only equal ones are similar.
//
// One thread at a time; copies are independent.
class SimilarText {
 public:
  explicit SimilarText(std::string_view wanted);

  // Exact where it is at least THRESHOLD, 0 otherwise.
  double similarity(std::string_view text, double threshold = kSimilarThreshold);

 private:
  struct Word {
    size_t first = 0;  // of the characters
    size_t size = 0;
  };
  struct Words {
    std::u32string characters;  // of all words
    std::vector<Word> list;

    void read(std::string_view text);
    std::u32string_view word(const Word& word) const {
      return std::u32string_view(characters).substr(word.first, word.size);
    }
  };
  // The places of each character in a pattern of at most 64, as the bits of a word.
  struct Pattern {
    std::u32string characters;
    std::vector<uint64_t> ascii;                        // by character
    std::vector<std::pair<char32_t, uint64_t>> others;  // the characters beyond

    explicit Pattern(std::u32string_view text);
    uint64_t places(char32_t character) const;
    size_t distance(std::u32string_view text) const;
    double similarity(std::u32string_view text, double least) const;
  };

  bool can_reach(double threshold);
  double assigned_similarity();
  double best_assignment(std::vector<size_t>& partners);

  std::string wanted_;  // folded
  size_t wanted_size_ = 0;
  std::vector<Pattern> patterns_;  // one for each wanted word
  std::vector<Pattern> joined_;    // all wanted words run together; none where they are too long
  Words text_;
  std::vector<double> pairs_;  // similarities weighted by size: wanted words by the text's words
};

}  // namespace rowvane
