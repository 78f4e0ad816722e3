// How a value becomes a cell of a text file: encoding, quoting, cutting and padding.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "exchange/text/text_file_settings.h"
#include "exchange/text/text_output.h"
#include "platform/code_pages.h"

namespace rowvane {

// Largest number of bytes of a Text cell in a code page.
inline constexpr size_t kMaxCodePageCell = 8166;
inline constexpr size_t kNoCellLimit = std::numeric_limits<size_t>::max();

// What is the same for all cells of a file.
class CellRules {
 public:
  CellRules(const TextFileSettings& settings, bool native, size_t field_count);

  bool has_fixed_widths() const { return fixed_widths_; }
  bool uses_code_page() const { return code_page_on_; }
  unsigned code_page() const { return code_page_; }
  char quoting_symbol() const { return quoting_symbol_; }
  bool must_quote(std::string_view cell) const;
  // True when cells that consist of CHARACTERS only are written as they are.
  bool leaves_plain(std::string_view characters) const;

 private:
  bool quoting_;
  char quoting_symbol_;
  bool fixed_widths_;
  bool quotes_leading_blanks_;
  bool quotes_empty_;
  bool code_page_on_;
  unsigned code_page_;
  std::array<bool, 256> needs_quotes_{};
};

// Writes cells, without what stands between them. Belongs to one thread.
//
// With fixed widths texts are padded with blanks on the right and cut to the width in characters; numbers are
// padded on the left and, where they don't fit, filled with "#", because a cut number is another number. A
// line break inside becomes a blank. A width of 0 means that the cell is neither padded nor cut.
class CellWriter {
 public:
  CellWriter(const CellRules& rules, TextOutput& output);

  // False when the system doesn't know the code page; nothing can be written then.
  bool is_usable() const { return !rules_.uses_code_page() || page_ != nullptr; }

  // MAX_BYTES counts in a code page only.
  void write_text(std::string_view text, uint32_t width, size_t max_bytes = kMaxCodePageCell);
  void write_number(std::string_view digits, uint32_t width);

  // What was lost so far: ends of cells; characters that the code page lacks.
  bool has_cut() const { return cut_; }
  bool has_replaced() const { return replaced_; }

 private:
  void write_delimited(std::string_view cell);
  // TEXT in the file's encoding, in `encoded_` where that isn't UTF-8.
  std::string_view encode(std::string_view text, size_t max_bytes);
  size_t cut_length(size_t max_bytes) const;
  std::string_view without_line_breaks(std::string_view text);

  const CellRules& rules_;
  TextOutput& output_;
  std::unique_ptr<platform::CodePage> page_;
  std::string encoded_;
  std::string line_;
  bool cut_ = false;
  bool replaced_ = false;
};

}  // namespace rowvane
