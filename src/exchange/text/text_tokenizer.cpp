#include "exchange/text/text_tokenizer.h"

#include <utility>

namespace rowvane {
namespace {

constexpr size_t kKeptCapacity = size_t{1} << 20;  // one long text must not hold its memory for good

}  // namespace

TextTokenizer::TextTokenizer(const TextRules& rules, Handler handler)
    : rules_(rules), handler_(std::move(handler)), limit_(handler_.limit(0)) {}

size_t TextTokenizer::feed(std::string_view piece) {
  size_t taken = 0;
  stop_ = false;
  while (taken < piece.size() && !stop_) {
    if (take(piece[taken])) ++taken;
  }
  // A line feed that completes the line end belongs to the record.
  if (stop_ && state_ == State::kAfterCarriageReturn && taken < piece.size()) {
    if (piece[taken] == '\n') ++taken;
    state_ = State::kRecordStart;
  }
  return taken;
}

// False when C is to be taken once more, in the state that it led to.
bool TextTokenizer::take(char c) {
  if (state_ == State::kAfterCarriageReturn) {
    state_ = State::kRecordStart;
    if (c == '\n') return true;
  }
  if (rules_.separated) return take_separated(c);
  return take_line(c);
}

bool TextTokenizer::take_separated(char c) {
  switch (state_) {
    case State::kRecordStart:
    case State::kFieldStart:
      if (c == ' ' && rules_.skips_leading_spaces()) {
        state_ = State::kFieldStart;
        return true;
      }
      if (rules_.quoting && c == rules_.quote) {
        state_ = State::kQuoted;
        return true;
      }
      state_ = State::kText;
      return false;
    case State::kText:
      return take_text(c);
    case State::kQuoted:
      if (c == rules_.quote) {
        state_ = State::kQuoteSeen;
      } else {
        add(c);
      }
      return true;
    case State::kQuoteSeen:
      if (c == rules_.quote) {
        add(c);
        state_ = State::kQuoted;
        return true;
      }
      state_ = State::kBlanksAfterQuote;
      return false;
    case State::kBlanksAfterQuote:
      if (rules_.is_blank_after_quote(c)) return true;
      if (!rules_.is_separator(c) && !is_line_end(c)) reopen_quoted();
      state_ = State::kText;
      return false;
    case State::kAfterCarriageReturn:
      break;
  }
  return true;
}

bool TextTokenizer::take_text(char c) {
  if (rules_.is_separator(c)) {
    end_cell();
    state_ = State::kFieldStart;
    return true;
  }
  if (is_line_end(c)) return end_record(c);
  add(c);
  return true;
}

// Text without separators: fixed widths, or a line a field.
bool TextTokenizer::take_line(char c) {
  if (is_line_end(c)) return end_record(c);
  state_ = State::kText;
  if (rules_.fixed()) {
    take_fixed(c);
  } else {
    add(c);
  }
  return true;
}

void TextTokenizer::take_fixed(char c) {
  const auto byte = static_cast<unsigned char>(c);
  const bool starts_character = rules_.utf8 ? (byte & 0xC0) != 0x80 || characters_ == 0 : !trail_byte_;
  const size_t width = column_ < rules_.widths.size() ? rules_.widths[column_] : 0;
  if (starts_character && width > 0 && characters_ == width) end_cell();
  if (starts_character) ++characters_;
  trail_byte_ = !trail_byte_ && rules_.lead_bytes && (*rules_.lead_bytes)[byte];
  add(c);
}

void TextTokenizer::add(char c) {
  if (cell_.size() >= limit_) {
    cut_ = true;
    return;
  }
  cell_ += is_control(c) && !is_line_end(c) && !rules_.keep_controls ? ' ' : c;
}

void TextTokenizer::reopen_quoted() {
  cell_.insert(cell_.begin(), rules_.quote);
  add(rules_.quote);
}

void TextTokenizer::end_cell() {
  if (rules_.fixed()) cell_.erase(cell_.find_last_not_of(' ') + 1);
  handler_.cell(column_, cell_, cut_);
  cell_.clear();
  if (cell_.capacity() > kKeptCapacity) cell_.shrink_to_fit();
  cut_ = false;
  characters_ = 0;
  trail_byte_ = false;
  limit_ = handler_.limit(++column_);
}

bool TextTokenizer::end_record(char c) {
  end_cell();
  column_ = 0;
  limit_ = handler_.limit(0);
  state_ = c == '\r' ? State::kAfterCarriageReturn : State::kRecordStart;
  stop_ = !handler_.record_end();
  return true;
}

void TextTokenizer::finish() {
  if (state_ == State::kRecordStart || state_ == State::kAfterCarriageReturn) return;
  end_record('\n');
}

}  // namespace rowvane
