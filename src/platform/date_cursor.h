// Steps through the text of a date.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace rowvane::platform {

struct DateNumber {
  int value = 0;
  int digits = 0;
};

class DateCursor {
 public:
  explicit DateCursor(std::string_view text) : text_(text) {}

  size_t position() const { return position_; }
  void go_back(size_t position) { position_ = position; }
  bool at_end() const { return position_ == text_.size(); }
  char peek() const { return at_end() ? '\0' : text_[position_]; }

  // Steps over SIGN when the text goes on with it.
  bool accept(char sign);
  // Steps over one of SIGNS and answers it, or answers 0.
  char accept_any(std::string_view signs);
  // True when there was at least one blank.
  bool skip_blanks();
  // A number of one to MOST_DIGITS digits.
  std::optional<DateNumber> read_number(int most_digits);
  // A run of letters, which may hold points between letters ("a.m"); empty when there is no letter.
  std::string_view read_word();
  // The digits at the cursor as a fraction of one, or nothing when there are none.
  std::optional<double> read_fraction();

 private:
  size_t letter_length(size_t position) const;

  std::string_view text_;
  size_t position_ = 0;
};

}  // namespace rowvane::platform
