#include "recordset/search/text_query.h"

#include <algorithm>

#include "formula/evaluation/scalar_operations.h"
#include "text/folded_text.h"
#include "text/similar_text.h"

namespace rowvane {
namespace {

template <typename Matches>
class PlainTest final : public TextTest {
 public:
  explicit PlainTest(Matches matches) : matches_(std::move(matches)) {}
  bool matches(std::string_view text) override { return matches_(text); }

 private:
  Matches matches_;
};

template <typename Matches>
std::unique_ptr<TextTest> make_plain_test(Matches matches) {
  return std::make_unique<PlainTest<Matches>>(std::move(matches));
}

class ExpressionTest final : public TextTest {
 public:
  ExpressionTest(const RegularExpression& expression, bool empty_matches)
      : matcher_(expression, empty_matches ? 0 : regex::kNotEmpty) {}
  bool matches(std::string_view text) override { return matcher_.matches(text); }
  std::string_view error() const override { return matcher_.error(); }

 private:
  RegexMatcher matcher_;
};

class SimilarTest final : public TextTest {
 public:
  explicit SimilarTest(std::string_view wanted) : similar_(wanted) {}
  bool matches(std::string_view text) override { return similar_.similarity(text) > 0; }

 private:
  SimilarText similar_;
};

std::unique_ptr<TextTest> make_comparison(Kind comparison, std::string_view value) {
  return make_plain_test(
      [=](std::string_view text) { return holds(comparison, compare_folded(text, value)); });
}

std::unique_ptr<TextTest> make_occurrence(std::string_view wanted, bool caseless) {
  return make_plain_test([=](std::string_view text) {
    return caseless ? find_folded(text, wanted).has_value() : text.find(wanted) != std::string_view::npos;
  });
}

std::unique_ptr<TextTest> make_between(const std::vector<std::string_view>& bounds) {
  return make_plain_test([low = bounds[0], high = bounds[1]](std::string_view text) {
    return compare_folded(text, low) >= 0 && compare_folded(text, high) <= 0;
  });
}

std::unique_ptr<TextTest> make_none() {
  return make_plain_test([](std::string_view) { return false; });
}

}  // namespace

uint32_t expression_options(bool caseless) {
  return regex::kUtf8 | regex::kMultiline | (caseless ? regex::kCaseless : 0);
}

TextQuery::TextQuery(const Criterion& criterion, const SearchOptions& options, Patterns patterns)
    : criterion_(criterion), words_(criterion_words(criterion_.text)), options_(options) {
  if (criterion.kind == CriterionKind::kRegEx && patterns == Patterns::kExpressions)
    expression_.emplace(criterion.text, expression_options(options.caseless));
}

const std::string& TextQuery::error() const {
  return expression_ ? expression_->error() : error_;
}

std::unique_ptr<TextTest> TextQuery::make_test() const {
  const std::string_view text = criterion_.text;
  switch (criterion_.kind) {
    case CriterionKind::kRegEx:
      if (expression_) return std::make_unique<ExpressionTest>(*expression_, options_.empty_matches);
      return make_occurrence(text, options_.caseless);
    case CriterionKind::kStartsWith:
      return make_plain_test([text](std::string_view each) { return begins_folded(each, text); });
    case CriterionKind::kEqual:
      return make_comparison(Kind::kEqual, text);
    case CriterionKind::kNotEqual:
      return make_comparison(Kind::kNotEqual, text);
    case CriterionKind::kGreaterThan:
      return make_comparison(Kind::kGreater, text);
    case CriterionKind::kLessThan:
      return make_comparison(Kind::kLess, text);
    case CriterionKind::kBetween:
      return words_.size() < 2 ? make_none() : make_between(words_);
    case CriterionKind::kAnd:
      return make_plain_test([words = words_](std::string_view each) {
        return std::ranges::all_of(words, [each](auto word) { return find_folded(each, word).has_value(); });
      });
    case CriterionKind::kOr:
      return make_plain_test([words = words_](std::string_view each) {
        return std::ranges::any_of(words, [each](auto word) { return begins_folded(each, word); });
      });
    case CriterionKind::kIsEmpty:
      return make_plain_test(
          [](std::string_view each) { return each.find_first_not_of(' ') == std::string_view::npos; });
    case CriterionKind::kSimilar:
      return std::make_unique<SimilarTest>(text);
    case CriterionKind::kFormula:
    case CriterionKind::kFlag:
      break;
  }
  return make_none();
}

int TextQuery::cost() const {
  switch (criterion_.kind) {
    case CriterionKind::kRegEx:
    case CriterionKind::kAnd:
      return 40;
    case CriterionKind::kSimilar:
      return 300;
    default:
      return 15;
  }
}

}  // namespace rowvane
