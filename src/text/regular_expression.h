// Regular expressions in the syntax of Perl, over UTF-8 text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace rowvane {

// The option words of expressions and of matching. The values are fixed, whatever the library calls them.
namespace regex {

// Of an expression.
inline constexpr uint32_t kCaseless = 0x1;
inline constexpr uint32_t kMultiline = 0x2;  // "^" and "$" also stand at the begin and the end of each line
inline constexpr uint32_t kUtf8 = 0x800;
// Of matching.
inline constexpr uint32_t kNotEmpty = 0x400;  // an empty text is no match

}  // namespace regex

// Steps and memory that one match may take; beyond them it fails instead of going on for hours.
inline constexpr uint32_t kMaxMatchSteps = 10'000'000;
inline constexpr uint32_t kMaxMatchKilobytes = 64 * 1024;

namespace texts {
inline constexpr std::string_view kNoRegexInLongTexts =
    "Regular expressions are not supported for memo fields. Plain text searching will be used instead.";
}  // namespace texts

// What went wrong with an expression, as it is shown: ERROR is the text that the library has for it.
std::string regular_expression_message(std::string_view error);

// Bytes of a text, END behind the last.
struct TextSpan {
  size_t begin = 0;
  size_t end = 0;

  size_t size() const { return end - begin; }
  bool operator==(const TextSpan&) const = default;
};

// A compiled expression. Any number of threads may match with it at the same time, each with its
// RegexMatcher.
//
// Lines end with CR, LF or CR LF. An expression can't turn UTF-8 off, nor take single bytes of a character.
class RegularExpression {
 public:
  // OPTIONS are those of expressions.
  RegularExpression(std::string_view pattern, uint32_t options);
  ~RegularExpression();
  RegularExpression(RegularExpression&&) noexcept;
  RegularExpression& operator=(RegularExpression&&) noexcept;

  // The library's text for what is wrong with the pattern, which matches nothing then; empty when nothing is.
  const std::string& error() const { return error_; }
  // The byte of the pattern at which that was noticed.
  size_t error_offset() const { return error_offset_; }

 private:
  friend class RegexMatcher;
  struct Code;

  std::unique_ptr<const Code> code_;  // null when there is an error
  std::string error_;
  size_t error_offset_ = 0;
};

// Finds an expression in texts. One thread at a time.
//
// Bytes that are no UTF-8 match nothing, nor does anything match across them.
class RegexMatcher {
 public:
  // OPTIONS are those of matching. With CAPTURES the parts that the expression's groups matched are kept,
  // which takes longer. EXPRESSION is borrowed.
  explicit RegexMatcher(const RegularExpression& expression, uint32_t options = regex::kNotEmpty,
                        bool captures = false);
  ~RegexMatcher();
  RegexMatcher(RegexMatcher&&) noexcept;
  RegexMatcher& operator=(RegexMatcher&&) noexcept;

  // The first match in TEXT that begins at byte FROM, where a character must begin, or behind it. What stands
  // before FROM counts as context: "^" and look-behinds see it. Nothing also when the match failed, which
  // `error` tells.
  std::optional<TextSpan> find(std::string_view text, size_t from = 0);
  bool matches(std::string_view text) { return find(text).has_value(); }

  // Number of the expression's groups; 0 without captures.
  size_t capture_count() const;
  // What group NUMBER, from 1, matched in the last match; 0 is the match itself. Nothing for a group that
  // took no part.
  std::optional<TextSpan> capture(size_t number) const;
  // The number of the group with this name ("(?<name>...)"); nothing when there is none.
  std::optional<size_t> capture_named(const std::string& name) const;

  // Why the last search gave up, such as "match limit exceeded"; empty when it did not.
  const std::string& error() const { return error_; }

 private:
  struct State;

  std::unique_ptr<State> state_;  // null for an expression with an error
  std::string error_;
};

}  // namespace rowvane
