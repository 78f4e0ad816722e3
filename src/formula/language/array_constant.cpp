#include "formula/language/array_constant.h"

#include <algorithm>

#include "formula/language/formula_lexer.h"
#include "platform/ascii.h"
#include "platform/utf8.h"
#include "text/folded_text.h"

namespace rowvane {
namespace {

constexpr std::string_view kWordEnds = ".,;()+-*:/!&=$#%{}";

}  // namespace

bool ArrayConstantReader::read(size_t& cursor) {
  cursor_ = cursor + 1;
  room_ = count_elements();
  cells_ = area_.cells(room_);
  if (cells_ == nullptr || !read_rows()) return false;
  cursor = cursor_;
  array_.cells = cells_;
  return true;
}

// At most: separators within texts count as well. Arrays end at "}" even if it stands in a text.
size_t ArrayConstantReader::count_elements() const {
  size_t count = 1;
  char quote = '\0';
  for (const char c : rest()) {
    if (quote == '\0' && c == '}') break;
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == active_.list.front() || c == active_.row.front()) {
      ++count;
    }
  }
  return count;
}

bool ArrayConstantReader::add(const Scalar& element) {
  if (count_ == room_) return false;
  cells_[count_++] = element;
  return true;
}

bool ArrayConstantReader::read_rows() {
  skip_blanks();
  if (take("}")) return true;
  size_t in_row = 0;
  while (true) {
    Scalar element;
    skip_blanks();
    if (!read_element(element) || !add(element)) return false;
    ++in_row;
    skip_blanks();
    if (take(active_.list)) continue;
    const bool row_ends = take(active_.row);
    if (!row_ends && !take("}")) return false;
    if (array_.rows == 0) array_.columns = in_row;
    if (in_row != array_.columns) return false;
    ++array_.rows;
    in_row = 0;
    if (!row_ends) return true;
  }
}

void ArrayConstantReader::skip_blanks() {
  while (cursor_ < text_.size() &&
         (text_[cursor_] == ' ' || text_[cursor_] == '\r' || text_[cursor_] == '\n'))
    ++cursor_;
}

bool ArrayConstantReader::take(std::string_view what) {
  if (!rest().starts_with(what)) return false;
  cursor_ += what.size();
  return true;
}

bool ArrayConstantReader::read_element(Scalar& element) {
  if (cursor_ >= text_.size() || text_[cursor_] == '\0') return false;
  const char first = text_[cursor_];
  if (ascii::is_digit(first) || first == '-' || rest().starts_with(active_.numbers.decimal))
    return read_number(element);
  if (first == '#') {
    size_t bytes = 0;
    element = Scalar::of(leading_error(rest(), bytes));
    cursor_ += bytes;
    return bytes > 0;
  }
  return first == '"' || first == '\'' ? read_text(element) : read_word(element);
}

bool ArrayConstantReader::read_number(Scalar& element) {
  const bool negative = take("-");
  double number = 0;
  FormulaError error = FormulaError::kNone;
  const size_t bytes = read_leading_number(rest(), active_.numbers.decimal, number, error);
  if (bytes == 0) return false;
  cursor_ += bytes;
  element = error == FormulaError::kNone ? Scalar::of(negative ? -number : number) : Scalar::of(error);
  return true;
}

bool ArrayConstantReader::read_text(Scalar& element) {
  const char quote = text_[cursor_++];
  const std::string_view content = rest().substr(0, rest().find(quote));
  cursor_ += content.size();
  if (cursor_ >= text_.size() || !is_valid_utf8(content) || content.find('\0') != std::string_view::npos) {
    return false;
  }
  ++cursor_;
  element = area_.keep(content);
  return true;
}

bool ArrayConstantReader::read_word(Scalar& element) {
  std::string_view word = rest();
  word = word.substr(0, word.find_first_of(kWordEnds));
  word = word.substr(0, std::min(word.find(active_.list), word.find(active_.row)));
  word = word.substr(0, word.find('\0'));
  cursor_ += word.size();
  while (!word.empty() && (word.back() == ' ' || word.back() == '\r' || word.back() == '\n'))
    word.remove_suffix(1);
  if (word.empty() || !is_valid_utf8(word)) return false;
  if (compare_folded(word, "true") == 0) {
    element = Scalar::of(true);
  } else if (compare_folded(word, "false") == 0) {
    element = Scalar::of(false);
  } else {
    element = area_.keep(word);
  }
  return true;
}

}  // namespace rowvane
