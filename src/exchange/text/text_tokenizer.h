// The tokenizer for text that arrives piece by piece: one character after the other, by the rules of
// text_rules.h.
//
// It needs no more memory than the cell limit, whatever the text holds, and is the reference that the block
// tokenizer (text_block.h) is tested against.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "exchange/text/text_rules.h"

namespace rowvane {

class TextTokenizer {
 public:
  // The cells of the record being read. `limit(column)` is the number of bytes kept of a cell; longer ones
  // are cut and counted.
  struct Handler {
    std::function<size_t(size_t column)> limit;
    std::function<void(size_t column, std::string_view cell, bool cut)> cell;
    // After the last cell of a record. False stops: `feed` returns behind the record.
    std::function<bool()> record_end;
  };

  TextTokenizer(const TextRules& rules, Handler handler);

  // Reads PIECE; answers the number of bytes taken, fewer than given only when `record_end` answered false.
  size_t feed(std::string_view piece);
  // True when the text taken so far ends with a CR, whose LF may come next.
  bool line_feed_may_follow() const { return state_ == State::kAfterCarriageReturn; }
  // The data has ended: completes the record that is open.
  void finish();

 private:
  enum class State {
    kRecordStart,
    kFieldStart,
    kText,
    kQuoted,
    kQuoteSeen,
    kBlanksAfterQuote,
    kAfterCarriageReturn
  };

  bool take(char c);
  bool take_separated(char c);
  bool take_text(char c);
  bool take_line(char c);
  void take_fixed(char c);
  void add(char c);
  void reopen_quoted();
  void end_cell();
  bool end_record(char c);

  TextRules rules_;
  Handler handler_;
  State state_ = State::kRecordStart;
  bool stop_ = false;
  size_t column_ = 0;
  size_t limit_ = 0;
  std::string cell_;
  bool cut_ = false;
  size_t characters_ = 0;    // taken of a fixed-width cell
  bool trail_byte_ = false;  // the next byte belongs to a double-byte character
};

}  // namespace rowvane
