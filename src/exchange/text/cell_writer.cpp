#include "exchange/text/cell_writer.h"

#include <algorithm>

#include "platform/utf8.h"

namespace rowvane {

CellRules::CellRules(const TextFileSettings& settings, bool native, size_t field_count)
    : quoting_((settings.flags & TextFileSettings::kQuoting) != 0),
      quoting_symbol_(static_cast<char>(settings.quoting_symbol)),
      fixed_widths_(settings.has_fixed_widths()),
      quotes_leading_blanks_(native),
      // An empty cell alone would leave an empty line, which may be taken for none.
      quotes_empty_(native && field_count == 1),
      code_page_on_(settings.uses_code_page()),
      code_page_(code_page_of(settings.encoding)) {
  needs_quotes_[settings.quoting_symbol] = true;
  needs_quotes_['\r'] = true;
  needs_quotes_['\n'] = true;
  if (settings.is_separated()) needs_quotes_[settings.separator] = true;
}

bool CellRules::must_quote(std::string_view cell) const {
  if (!quoting_) return false;
  if (cell.empty()) return quotes_empty_;
  if (quotes_leading_blanks_ && (cell.front() == ' ' || cell.front() == '\t')) return true;
  return std::ranges::any_of(cell, [this](char c) { return needs_quotes_[static_cast<unsigned char>(c)]; });
}

bool CellRules::leaves_plain(std::string_view characters) const {
  if (fixed_widths_ || quotes_empty_ || (code_page_on_ && !is_ascii(characters))) return false;
  return !must_quote(characters);
}

CellWriter::CellWriter(const CellRules& rules, TextOutput& output) : rules_(rules), output_(output) {
  if (rules.uses_code_page()) page_ = platform::CodePage::open(rules.code_page());
}

void CellWriter::write_text(std::string_view text, uint32_t width, size_t max_bytes) {
  if (!rules_.has_fixed_widths()) return write_delimited(encode(text, max_bytes));
  const std::string_view line = without_line_breaks(text);
  const std::string_view shown = width == 0 ? line : truncate_characters(line, width);
  cut_ |= shown.size() < line.size();
  output_.append(encode(shown, max_bytes));
  const size_t characters = width == 0 ? 0 : count_characters(shown);
  if (characters < width) output_.append(width - characters, ' ');
}

void CellWriter::write_number(std::string_view digits, uint32_t width) {
  if (!rules_.has_fixed_widths()) return write_delimited(encode(digits, kNoCellLimit));
  const size_t characters = count_characters(digits);
  if (width > 0 && characters > width) {
    cut_ = true;
    return output_.append(width, '#');
  }
  if (characters < width) output_.append(width - characters, ' ');
  output_.append(encode(digits, kNoCellLimit));
}

void CellWriter::write_delimited(std::string_view cell) {
  if (!rules_.must_quote(cell)) return output_.append(cell);
  const char symbol = rules_.quoting_symbol();
  char* to = output_.reserve(2 * cell.size() + 2);
  *to++ = symbol;
  for (const char c : cell) {
    if (c == symbol) *to++ = symbol;
    *to++ = c;
  }
  *to++ = symbol;
  output_.advance(to);
}

std::string_view CellWriter::encode(std::string_view text, size_t max_bytes) {
  if (page_ == nullptr) return text;
  encoded_.clear();
  replaced_ |= !page_->from_utf8(text, encoded_);
  if (encoded_.size() <= max_bytes) return encoded_;
  cut_ = true;
  return std::string_view(encoded_).substr(0, cut_length(max_bytes));
}

// The largest number of bytes of `encoded_` up to MAX_BYTES that ends no character in its middle.
size_t CellWriter::cut_length(size_t max_bytes) const {
  if (page_->max_character_bytes() == 1) return max_bytes;
  size_t length = 0;
  while (true) {
    const size_t bytes = page_->is_lead_byte(static_cast<unsigned char>(encoded_[length])) ? 2 : 1;
    if (length + bytes > max_bytes) return length;
    length += bytes;
  }
}

std::string_view CellWriter::without_line_breaks(std::string_view text) {
  if (text.find_first_of("\r\n") == std::string_view::npos) return text;
  line_.clear();
  for (size_t i = 0; i < text.size(); ++i) {
    const bool first_of_two = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (first_of_two) continue;
    line_ += text[i] == '\r' || text[i] == '\n' ? ' ' : text[i];
  }
  return line_;
}

}  // namespace rowvane
