// Comparison of texts in the order that readers of a language expect.
//
// Symbols come before digits, digits before letters; accents decide where the letters are equal, letter case
// where the accents are too. Digits are compared one by one, not as numbers. Width (fullwidth, halfwidth) and
// kana count like letter case, but always.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace rowvane::platform {

struct CollationOptions {
  // Without it, texts that differ only in letter case are equal.
  bool case_sensitive = false;
  // With it, hyphens and apostrophes count only where texts are equal otherwise, so that "coop" and "co-op"
  // stand side by side. Without it they are the first of the symbols.
  bool ignore_punctuation = false;
};

// The number of bytes of each text that are compared; a character cut at the end is left out whole.
inline constexpr size_t kMostComparedBytes = 8165;

// One order of texts. Any number of threads may use one at the same time.
//
// Windows compares by its own tables, Linux by those of ICU with the symbols put into the order of Windows.
// They agree on words of European languages. They differ in a few equalities ("ae" equals "æ" only on
// Windows), in the order of kana, of Chinese characters and of less usual symbols.
class Collation {
 public:
  // The order of the user's language: on Linux that of LC_ALL, LC_COLLATE or LANG.
  static std::unique_ptr<Collation> open_for_user(CollationOptions options);
  // The order of a named locale ("sv_SE", also "sv-SE"). Names that are not known get the order in which no
  // language has a say.
  static std::unique_ptr<Collation> open(const std::string& locale, CollationOptions options);
  virtual ~Collation() = default;

  // Below 0, 0 or above 0, as the UTF-8 text A comes before B, with it or behind it. Broken sequences count
  // as U+FFFD.
  int compare(std::string_view a, std::string_view b) const;

  // Appends a key of TEXT. Keys of one Collation compare as their texts do when they are taken as strings of
  // unsigned bytes (memcmp; of a key and its beginning the shorter comes first), much faster than the texts.
  // They are of no use to another Collation and not to be stored.
  void append_key(std::string_view text, std::string& key) const;

  // A weight for each ASCII character, or nothing where the order has no such weights. Texts of ASCII alone
  // compare as the strings of their weights do; a character of weight 0 does not count. Worked out on the
  // first call for a language, and kept.
  virtual std::span<const uint8_t> ascii_weights() const { return {}; }

 private:
  virtual int compare_cut(std::string_view a, std::string_view b) const = 0;
  virtual void append_key_of_cut(std::string_view text, std::string& key) const = 0;
};

}  // namespace rowvane::platform
