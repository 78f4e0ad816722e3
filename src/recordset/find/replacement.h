// What matches are replaced with.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/text_matcher.h"

namespace rowvane {

// The replacement of a plain or similar match is the text as it stands. That of a regular expression may name
// what its groups matched: "$1" to "$99", "\1" to "\99" or "${1}"; "$0" and "\0" are the whole match. Of two
// digits both belong to the number where the expression has so many groups. A group that took no part is
// empty. "\n", "\r" and "\t" are the control characters, "$$" and "\\" the signs themselves. All other
// characters stand for themselves.
class Replacement {
 public:
  // TEXT for matches of PATTERN, which must have passed check_pattern.
  Replacement(std::string_view text, const PreparedPattern& pattern);

  // What is wrong with the text, to be shown: it names a group that the expression does not have. Empty when
  // nothing is.
  const std::string& problem() const { return problem_; }

  // Appends the replacement of the match in TEXT that MATCHER has found last.
  void append(std::string_view text, const TextMatcher& matcher, std::string& out) const;

 private:
  static constexpr int kLiteral = -1;
  struct Piece {
    std::string text;      // of kLiteral
    int group = kLiteral;  // otherwise its number
  };

  void read(std::string_view text, size_t groups);
  bool read_group(std::string_view text, size_t& position, size_t groups);
  void add_literal(char c);

  std::vector<Piece> pieces_;
  std::string problem_;
};

}  // namespace rowvane
