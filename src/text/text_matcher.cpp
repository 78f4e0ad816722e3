#include "text/text_matcher.h"

#include "platform/utf8.h"
#include "text/caseless_text.h"
#include "text/similar_text.h"

namespace rowvane {
namespace {

uint32_t expression_options(const FindPattern& pattern) {
  return regex::kUtf8 | regex::kMultiline | (pattern.caseless ? regex::kCaseless : 0);
}

class ExactMatcher final : public TextMatcher {
 public:
  explicit ExactMatcher(std::string_view wanted) : wanted_(wanted) {}

  bool matches(std::string_view text) override {
    return !wanted_.empty() && text.find(wanted_) != std::string_view::npos;
  }
  std::optional<TextSpan> find(std::string_view text, size_t from) override {
    const size_t found = wanted_.empty() ? std::string_view::npos : text.find(wanted_, from);
    if (found == std::string_view::npos) return std::nullopt;
    return TextSpan{found, found + wanted_.size()};
  }

 private:
  std::string wanted_;
};

class CaselessMatcher final : public TextMatcher {
 public:
  explicit CaselessMatcher(std::string_view wanted) : wanted_(wanted) {}

  bool matches(std::string_view text) override { return wanted_.is_in(text); }
  std::optional<TextSpan> find(std::string_view text, size_t from) override {
    return wanted_.find(text, from);
  }
  std::vector<TextSpan> find_all(std::string_view text) override { return wanted_.find_all(text); }

 private:
  CaselessText wanted_;
};

class SimilarMatcher final : public TextMatcher {
 public:
  explicit SimilarMatcher(std::string_view wanted) : is_empty_(wanted.empty()), wanted_(wanted) {}

  bool matches(std::string_view text) override {
    return !is_empty_ && !text.empty() && wanted_.similarity(text) >= kSimilarThreshold;
  }
  std::optional<TextSpan> find(std::string_view text, size_t from) override {
    if (from > 0 || !matches(text)) return std::nullopt;
    return TextSpan{0, text.size()};
  }

 private:
  bool is_empty_;
  SimilarText wanted_;
};

class ExpressionMatcher final : public TextMatcher {
 public:
  ExpressionMatcher(const RegularExpression& expression, bool empty_matches, bool groups)
      : matcher_(expression, empty_matches ? 0 : regex::kNotEmpty, groups) {}

  bool matches(std::string_view text) override { return find(text, 0).has_value(); }
  std::optional<TextSpan> find(std::string_view text, size_t from) override {
    const auto found = matcher_.find(text, from);
    if (!found && problem_.empty() && !matcher_.error().empty()) {
      problem_ = regular_expression_message(matcher_.error());
    }
    return found;
  }
  std::optional<TextSpan> group(size_t number) const override { return matcher_.capture(number); }

 private:
  RegexMatcher matcher_;
};

std::unique_ptr<TextMatcher> plain_matcher(const FindPattern& pattern) {
  if (pattern.caseless) return std::make_unique<CaselessMatcher>(pattern.text);
  return std::make_unique<ExactMatcher>(pattern.text);
}

}  // namespace

Check check_pattern(const FindPattern& pattern) {
  if (!pattern.regular_expression) return {};
  if (pattern.similar) return texts::kSimilarNeedsPlainText;
  const RegularExpression expression(pattern.text, expression_options(pattern));
  return expression.error().empty() ? Check() : Check(regular_expression_message(expression.error()));
}

bool is_narrower(const FindPattern& now, const FindPattern& former) {
  const auto is_plain = [](const FindPattern& one) { return !one.regular_expression && !one.similar; };
  return is_plain(now) && is_plain(former) && now.caseless == former.caseless && !former.text.empty() &&
         now.text.find(former.text) != std::string::npos;
}

size_t next_character_start(std::string_view text, size_t position) {
  if (position >= text.size()) return position + 1;
  next_character(text, position);
  return position;
}

std::vector<TextSpan> TextMatcher::find_all(std::string_view text) {
  std::vector<TextSpan> found;
  for (size_t from = 0; from <= text.size();) {
    const auto span = find(text, from);
    if (!span) break;
    found.push_back(*span);
    from = span->size() > 0 ? span->end : next_character_start(text, span->end);
  }
  return found;
}

PreparedPattern::PreparedPattern(FindPattern pattern) : pattern_(std::move(pattern)) {
  if (pattern_.regular_expression) expression_.emplace(pattern_.text, expression_options(pattern_));
}

size_t PreparedPattern::group_count() const {
  return expression_ ? RegexMatcher(*expression_, regex::kNotEmpty, true).capture_count() : 0;
}

std::unique_ptr<TextMatcher> PreparedPattern::matcher(bool groups) const {
  if (expression_) {
    return std::make_unique<ExpressionMatcher>(*expression_, pattern_.empty_matches, groups);
  }
  if (pattern_.similar) return std::make_unique<SimilarMatcher>(pattern_.text);
  return plain_matcher(pattern_);
}

std::unique_ptr<TextMatcher> PreparedPattern::long_text_matcher() const {
  return expression_ ? plain_matcher(pattern_) : matcher();
}

}  // namespace rowvane
