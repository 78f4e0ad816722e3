#include "formula/language/formula_lexer.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

#include "core/table/work_sheet.h"
#include "formula/functions/function_registry.h"
#include "formula/language/array_constant.h"
#include "platform/ascii.h"
#include "platform/characters.h"
#include "platform/utf8.h"
#include "text/folded_text.h"

namespace rowvane {
namespace {

constexpr std::array kErrorConstants = {FormulaError::kValue, FormulaError::kName,   FormulaError::kRef,
                                        FormulaError::kNull,  FormulaError::kMemory, FormulaError::kData,
                                        FormulaError::kSyntax};

bool is_blank(char c) {
  return c == ' ' || c == '\r' || c == '\n';
}

size_t count_digits(std::string_view text, size_t from) {
  size_t count = 0;
  while (from + count < text.size() && ascii::is_digit(text[from + count])) ++count;
  return count;
}

bool begins_with_word(std::string_view text, std::string_view capitals) {
  if (text.size() < capitals.size()) return false;
  for (size_t i = 0; i < capitals.size(); ++i) {
    if (ascii::to_upper(text[i]) != capitals[i]) return false;
  }
  return true;
}

bool word_ends_at(std::string_view text, size_t position) {
  return position >= text.size() || !is_name_character(next_character(text, position));
}

struct OperatorText {
  std::string_view text;
  Kind kind;
};
// Longer ones before those they begin with.
constexpr std::array kOperators = {
    OperatorText{"<=", Kind::kLessOrEqual},
    OperatorText{"<>", Kind::kNotEqual},
    OperatorText{">=", Kind::kGreaterOrEqual},
    OperatorText{"=", Kind::kEqual},
    OperatorText{"<", Kind::kLess},
    OperatorText{">", Kind::kGreater},
    OperatorText{"+", Kind::kAdd},
    OperatorText{"-", Kind::kSubtract},
    OperatorText{"&", Kind::kConcatenate},
    OperatorText{"*", Kind::kMultiply},
    OperatorText{"/", Kind::kDivide},
    OperatorText{"^", Kind::kPower},
    OperatorText{"%", Kind::kPercent},
    OperatorText{"_", Kind::kIntersection},
    OperatorText{"!", Kind::kQualifier},
    OperatorText{":", Kind::kRange},
    OperatorText{"(", Kind::kOpen},
    OperatorText{")", Kind::kClose},
};

}  // namespace

Value value_of(const Token& token) {
  if (token.kind == Kind::kArray) return Value(Kind::kArray, token.array);
  if (token.kind == Kind::kText && token.error != FormulaError::kNone) {
    Value name(Scalar{Scalar::Kind::kError, token.error, 0, token.text});
    name.kind = Kind::kText;
    name.literal = token.literal;
    return name;
  }
  if (token.error != FormulaError::kNone) {
    Value value(Scalar::of(token.error));
    value.reference = token.reference;
    return value;
  }
  if (token.kind == Kind::kReference) return Value(token.reference);
  Value value(token.kind == Kind::kText ? Scalar::of(token.text) : Scalar::of(token.number));
  value.literal = token.literal;
  return value;
}

FormulaError leading_error(std::string_view text, size_t& bytes) {
  for (const FormulaError error : kErrorConstants) {
    const std::string_view name = formula_error_text(error);
    if (!begins_with_word(text, name)) continue;
    bytes = name.size();
    return error;
  }
  return FormulaError::kNone;
}

size_t read_leading_number(std::string_view text, std::string_view decimal_separator, double& number,
                           FormulaError& error) {
  constexpr size_t kMaxDigits = 400;
  size_t end = count_digits(text, 0);
  const size_t whole = end;
  size_t fraction = 0;
  if (text.substr(end).starts_with(decimal_separator)) {
    fraction = count_digits(text, end + decimal_separator.size());
    if (whole + fraction > 0) end += decimal_separator.size() + fraction;
  }
  if (whole + fraction == 0) return 0;
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    const size_t sign = end + 1 < text.size() && (text[end + 1] == '+' || text[end + 1] == '-') ? 1 : 0;
    const size_t digits = count_digits(text, end + 1 + sign);
    if (digits > 0) end += 1 + sign + digits;
  }
  if (end > kMaxDigits) return 0;
  std::array<char, kMaxDigits> generic;
  std::string_view digits = text.substr(0, end);
  if (decimal_separator != "." && end > whole) {
    char* out = std::copy_n(text.data(), whole, generic.data());
    size_t from = whole;
    if (text.substr(whole).starts_with(decimal_separator)) {
      *out++ = '.';
      from += decimal_separator.size();
    }
    out = std::copy(text.data() + from, text.data() + end, out);
    digits = {generic.data(), static_cast<size_t>(out - generic.data())};
  }
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool tiny = number != 0 && std::abs(number) < std::numeric_limits<double>::min();
  if (result.ec == std::errc::result_out_of_range || tiny) error = FormulaError::kValue;
  return end;
}

void FormulaLexer::set_table(const CWorkSheet* table) {
  table_ = table;
  names_ = table != nullptr ? FieldNames(*table) : FieldNames();
}

void FormulaLexer::start() {
  error_ = FormulaError::kNone;
  string_count_ = 0;
  string_bytes_ = 0;
  array_count_ = 0;
  array_cells_.clear();
}

Kind FormulaLexer::fail() {
  error_ = FormulaError::kSyntax;
  return Kind::kError;
}

bool FormulaLexer::take(std::string_view what) {
  if (!rest().starts_with(what)) return false;
  cursor_ += what.size();
  return true;
}

Kind FormulaLexer::next_token(std::string_view text, size_t& cursor, Token& token, SeparatorSet set) {
  text_ = text;
  cursor_ = cursor;
  active_ = &settings_.of(set);
  token = Token();
  while (cursor_ < text_.size() && is_blank(text_[cursor_])) ++cursor_;
  if (cursor_ >= text_.size() || text_[cursor_] == '\0') {
    token.kind = Kind::kEnd;
  } else if (ascii::is_digit(text_[cursor_]) || rest().starts_with(active_->numbers.decimal)) {
    token.kind = read_number(token);
  } else {
    size_t after = cursor_;
    const char32_t first = next_character(text_, after);
    const bool name = first == U'#' || first == U'$' || first == U'\\' || platform::is_letter(first);
    token.kind = name ? read_name(token) : read_operator(token);
  }
  cursor = cursor_;
  return token.kind;
}

Kind FormulaLexer::read_number(Token& token) {
  const size_t bytes = read_leading_number(rest(), active_->numbers.decimal, token.number, token.error);
  if (bytes == 0) return fail();
  cursor_ += bytes;
  return Kind::kNumber;
}

Kind FormulaLexer::read_operator(Token& token) {
  const char first = text_[cursor_];
  if (first == '"' || first == '\'') return read_literal(token);
  if (first == '{') return read_array(token);
  if (take(active_->list)) return Kind::kSeparator;
  for (const OperatorText& each : kOperators) {
    if (take(each.text)) return each.kind;
  }
  return fail();
}

// Up to the next quote of the same kind, or to the end of the formula.
Kind FormulaLexer::read_literal(Token& token) {
  const char quote = text_[cursor_++];
  std::string_view content = rest();
  content = content.substr(0, content.find('\0'));
  const size_t closing = content.find(quote);
  content = content.substr(0, closing);
  cursor_ += content.size() + (closing != std::string_view::npos ? 1 : 0);
  if (!is_valid_utf8(content)) return fail();
  token.literal = true;
  if (!keep_string(content, token.text)) token.error = FormulaError::kName;
  return Kind::kText;
}

bool FormulaLexer::keep_string(std::string_view text, std::string_view& kept) {
  if (string_count_ == kMaxFormulaStrings || text.size() > kMaxFormulaStringBytes - string_bytes_)
    return false;
  char* place = strings_.data() + string_bytes_ + string_count_;
  if (!text.empty()) std::memcpy(place, text.data(), text.size());
  place[text.size()] = '\0';
  kept = {place, text.size()};
  ++string_count_;
  string_bytes_ += text.size();
  return true;
}

Kind FormulaLexer::read_name(Token& token) {
  if (read_reference(token)) return Kind::kReference;
  if (const auto function = find_function(rest())) {
    token.function = *function;
    cursor_ += function_name(*function).size();
    return Kind::kFunction;
  }
  if (read_constant(token)) return Kind::kNumber;
  return read_bare_name(token);
}

bool FormulaLexer::read_reference(Token& token) {
  if (table_ == nullptr) return false;
  if (text_[cursor_] == '$') return read_quoted_reference(token);
  const auto match = names_.match(rest());
  if (!match) return false;
  cursor_ += match->bytes;
  token.reference = Reference::field_of_record(*table_, match->field);
  if (table_->field(match->field).encrypted) token.error = FormulaError::kRef;
  return true;
}

// $"name" and $'name': for names that read as something else otherwise.
bool FormulaLexer::read_quoted_reference(Token& token) {
  const std::string_view after = rest().substr(1);
  if (after.empty() || (after.front() != '"' && after.front() != '\'')) return false;
  const size_t closing = after.find(after.front(), 1);
  if (closing == std::string_view::npos) return false;
  const auto field = names_.find(after.substr(1, closing - 1));
  cursor_ += closing + 2;
  if (field) token.reference = Reference::field_of_record(*table_, *field);
  if (!field || table_->field(*field).encrypted) token.error = FormulaError::kRef;
  return true;
}

bool FormulaLexer::read_constant(Token& token) {
  const std::string_view text = rest();
  for (const auto& [word, number] : {std::pair<std::string_view, double>("FALSE", 0), {"TRUE", 1}}) {
    if (!begins_with_word(text, word) || !word_ends_at(text, word.size())) continue;
    cursor_ += word.size();
    token.number = number;
    return true;
  }
  size_t bytes = 0;
  token.error = leading_error(text, bytes);
  cursor_ += bytes;
  return token.error != FormulaError::kNone;
}

Kind FormulaLexer::read_bare_name(Token& token) {
  size_t end = cursor_;
  for (size_t next = end; next < text_.size(); end = next) {
    if (!is_name_character(next_character(text_, next))) break;
  }
  if (end == cursor_) return fail();
  const bool kept = keep_string(text_.substr(cursor_, end - cursor_), token.text);
  token.error = kept ? FormulaError::kName : FormulaError::kValue;
  cursor_ = end;
  return Kind::kText;
}

Kind FormulaLexer::read_array(Token& token) {
  ArrayConstantReader reader(text_, *active_, array_cells_);
  if (!reader.read(cursor_)) return fail();
  if (array_count_ < kMaxFormulaArrays) {
    ++array_count_;
    token.array = reader.array();
  }
  return Kind::kArray;
}

}  // namespace rowvane
