// Cuts a format code into sections and these into parts.
#pragma once

#include <string>
#include <string_view>

#include "formula/formats/format_code.h"

namespace rowvane {

class FormatLexer {
 public:
  FormatLexer(std::string_view code, const FormatSeparators& separators)
      : code_(code), separators_(separators) {}

  bool at_end() const { return position_ >= code_.size(); }
  // Reads up to the next ";", which is stepped over. False: see problem.
  bool read_section(FormatSection& section);
  // True when the section read last ended with ";".
  bool has_more() const { return has_more_; }
  const std::string& problem() const { return problem_; }

 private:
  bool read_part();
  bool read_quoted();
  bool read_escaped();
  bool read_brackets();
  bool read_condition(std::string_view inside);
  bool read_color(std::string_view inside);
  bool read_elapsed(std::string_view inside);
  bool read_word();
  bool read_sign_behind(FormatPartKind kind);
  void read_date_letters();
  void read_digits();

  bool accept(std::string_view what);
  bool accept_word(std::string_view lower_case);
  void add(FormatPartKind kind, size_t start, size_t length, char sign = 0, size_t width = 1);
  size_t character_length(size_t position) const;
  bool fail(std::string_view what, size_t position);

  std::string_view code_;
  const FormatSeparators& separators_;
  size_t position_ = 0;
  bool has_more_ = false;
  FormatSection* section_ = nullptr;
  std::string problem_;
};

}  // namespace rowvane
