// What a criterion asks of a text.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "recordset/search/criterion.h"
#include "recordset/search/search_options.h"
#include "text/regular_expression.h"

namespace rowvane {

// Puts a query to texts. One thread at a time.
class TextTest {
 public:
  virtual ~TextTest() = default;
  virtual bool matches(std::string_view text) = 0;
  // Why the last text could not be decided; empty when it could.
  virtual std::string_view error() const { return {}; }
};

// The kinds kRegEx to kSimilar of criteria, made ready for texts; any number of threads may make tests of it.
// kStartsWith to kIsEmpty are true for the texts for which the equivalent formula is.
class TextQuery {
 public:
  enum class Patterns {
    kExpressions,  // the text of kRegEx is a regular expression
    kPlain,        // it is a text that must occur
  };

  TextQuery(const Criterion& criterion, const SearchOptions& options, Patterns patterns);

  // What is wrong with the regular expression; empty when nothing is.
  const std::string& error() const;
  std::unique_ptr<TextTest> make_test() const;
  // About how many nanoseconds a short text takes.
  int cost() const;

 private:
  Criterion criterion_;
  std::vector<std::string_view> words_;  // of criterion_
  SearchOptions options_;
  std::optional<RegularExpression> expression_;  // of kRegEx with expressions
  std::string error_;
};

// The options of the compilation of a regular expression.
uint32_t expression_options(bool caseless);

}  // namespace rowvane
