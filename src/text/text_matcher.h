// What the Find toolbar looks for, prepared to be looked for in many texts.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/check.h"
#include "text/regular_expression.h"

namespace rowvane {

namespace texts {
inline constexpr std::string_view kSimilarNeedsPlainText =
    "The 'Find Similar' method requires selecting\nthe 'Options > Plain Text Matching' option on the Find "
    "toolbar.";
}  // namespace texts

struct FindPattern {
  std::string text;                 // UTF-8; empty: nothing is found by plain text matching
  bool regular_expression = false;  // otherwise plain text matching
  bool similar = false;             // `FindSimilar`: texts similar to `text` as a whole (similar_text.h)
  bool caseless = true;             // `Caseless`; similar texts are always looked for so
  bool empty_matches = false;       // `EmptyMatches`: a regular expression may match an empty text

  bool operator==(const FindPattern&) const = default;
};

// texts::kSimilarNeedsPlainText, or what is wrong with the regular expression.
Check check_pattern(const FindPattern& pattern);

// True when every text in which NOW is found is one in which FORMER was: NOW was made by typing on.
bool is_narrower(const FindPattern& now, const FindPattern& former);

// Finds a pattern in texts. One thread at a time.
class TextMatcher {
 public:
  virtual ~TextMatcher() = default;

  virtual bool matches(std::string_view text) = 0;
  // The first match that begins at byte FROM, where a character begins, or behind it. Of a similar text all
  // of it matches.
  virtual std::optional<TextSpan> find(std::string_view text, size_t from) = 0;
  // What group NUMBER of a regular expression matched in the last `find`; 0: the match itself.
  virtual std::optional<TextSpan> group(size_t number) const {
    (void)number;
    return std::nullopt;
  }
  // Why a match was given up since the matcher was made, as it is shown; empty when none was. Such a text
  // counts as one without a match.
  const std::string& problem() const { return problem_; }

  // All matches, none overlapping another.
  virtual std::vector<TextSpan> find_all(std::string_view text);

 protected:
  std::string problem_;
};

// Makes matchers for a pattern that check_pattern passed. Safe for any number of threads.
class PreparedPattern {
 public:
  explicit PreparedPattern(FindPattern pattern);

  const FindPattern& pattern() const { return pattern_; }
  // Of a regular expression; 0 for others.
  size_t group_count() const;
  // The matcher borrows from this object. With GROUPS it keeps what groups matched.
  std::unique_ptr<TextMatcher> matcher(bool groups = false) const;
  // For long texts, where a regular expression is looked for as plain text.
  std::unique_ptr<TextMatcher> long_text_matcher() const;

 private:
  FindPattern pattern_;
  std::optional<RegularExpression> expression_;
};

// The byte behind the character at POSITION of TEXT; behind the end it is POSITION + 1.
size_t next_character_start(std::string_view text, size_t position);

}  // namespace rowvane
