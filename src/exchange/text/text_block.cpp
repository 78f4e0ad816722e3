#include "exchange/text/text_block.h"

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace rowvane {
namespace {

constexpr size_t kKeptBytes = size_t{32} << 20;  // the room of a cleared block, at most

// Finds the next byte that is a separator or below 0x20, 64 bytes at a time. Positions only grow.
class SpecialScanner {
 public:
  SpecialScanner(const char* text, const char* end, const TextRules& rules)
      : base_(text), end_(end), separator_(rules.separated ? rules.separator : '\n') {
    mask_ = scan(base_);
  }

  // The first special byte at or behind POSITION, or the end.
  const char* next(const char* position) {
    if (position - base_ >= 64) {
      base_ = position;
      mask_ = scan(base_);
    } else {
      mask_ &= ~uint64_t{0} << (position - base_);
    }
    while (mask_ == 0) {
      base_ += 64;
      if (base_ >= end_) return end_;
      mask_ = scan(base_);
    }
    return std::min(base_ + std::countr_zero(mask_), end_);
  }

 private:
#if defined(__SSE2__)
  uint64_t scan(const char* bytes) const {
    const __m128i separator = _mm_set1_epi8(separator_);
    const __m128i last_control = _mm_set1_epi8(0x1F);
    uint64_t mask = 0;
    for (int i = 0; i < 4; ++i) {
      const __m128i part = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 16 * i));
      const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(part, last_control), part);
      const __m128i special = _mm_or_si128(control, _mm_cmpeq_epi8(part, separator));
      mask |= static_cast<uint64_t>(static_cast<uint16_t>(_mm_movemask_epi8(special))) << (16 * i);
    }
    return mask;
  }
#else
  uint64_t scan(const char* bytes) const {
    uint64_t mask = 0;
    for (int i = 0; i < 64; ++i) {
      const bool special = is_control(bytes[i]) || bytes[i] == separator_;
      mask |= static_cast<uint64_t>(special) << i;
    }
    return mask;
  }
#endif

  const char* base_;
  const char* end_;
  char separator_;
  uint64_t mask_;
};

const char* skip_line_end(const char* position, const char* end) {
  const bool two = *position == '\r' && position + 1 < end && position[1] == '\n';
  return position + (two ? 2 : 1);
}

}  // namespace

// Cuts one block. Each step takes the position of a field's start and answers that of its end: a separator, a
// line end or the end of the text.
class BlockTokenizer {
 public:
  BlockTokenizer(TextBlock& block, const TextRules& rules)
      : block_(block),
        rules_(rules),
        text_(block.text_.data()),
        end_(text_ + block.size_),
        scanner_(text_, end_, rules) {}

  void run() {
    char* position = text_;
    while (position < end_) {
      if (rules_.fixed()) {
        position = fixed_record(position);
      } else {
        position = separated_record(position);
      }
      block_.end_record();
    }
  }

 private:
  char* separated_record(char* position) {
    for (;;) {
      char* field_end = field(position);
      if (field_end == end_) return end_;
      if (is_line_end(*field_end)) return const_cast<char*>(skip_line_end(field_end, end_));
      position = field_end + 1;
    }
  }

  char* field(char* position) {
    if (rules_.skips_leading_spaces()) {
      while (position < end_ && *position == ' ') ++position;
    }
    if (rules_.quoting && position < end_ && *position == rules_.quote) return quoted_field(position);
    char* field_end = unquoted_end(position);
    add_cell(position, field_end);
    return field_end;
  }

  // The end of the unquoted text at POSITION; control characters on the way become spaces.
  char* unquoted_end(char* position) {
    for (;;) {
      char* found = const_cast<char*>(scanner_.next(position));
      if (found == end_ || rules_.is_separator(*found) || is_line_end(*found)) return found;
      if (!rules_.keep_controls) *found = ' ';
      position = found + 1;
    }
  }

  char* quoted_field(char* position) {
    char* const start = position;
    char* read = position + 1;
    char* write = position;
    bool closed = false;
    while (read < end_) {
      if (*read == rules_.quote) {
        if (read + 1 == end_ || read[1] != rules_.quote) {
          closed = true;
          ++read;
          break;
        }
        ++read;
      }
      const char c = *read++;
      *write++ = is_control(c) && !is_line_end(c) && !rules_.keep_controls ? ' ' : c;
    }
    if (!closed) {
      add_cell(start, write);
      return end_;
    }
    while (read < end_ && rules_.is_blank_after_quote(*read)) ++read;
    if (read == end_ || rules_.is_separator(*read) || is_line_end(*read)) {
      add_cell(start, write);
      return read;
    }
    return reopened_field(start, write, read);
  }

  // The quoting symbol did not close the field: [START, WRITE) is its text so far, READ where it goes on. The
  // source held both quoting symbols, so there is room for them.
  char* reopened_field(char* start, char* write, char* read) {
    std::memmove(start + 1, start, static_cast<size_t>(write - start));
    *start = rules_.quote;
    ++write;
    *write++ = rules_.quote;
    char* field_end = unquoted_end(read);
    std::memmove(write, read, static_cast<size_t>(field_end - read));
    add_cell(start, write + (field_end - read));
    return field_end;
  }

  char* fixed_record(char* position) {
    for (const uint16_t width : rules_.widths) {
      char* cell_end = skip_characters(position, width);
      add_padded_cell(position, cell_end);
      position = cell_end;
      if (position == end_ || is_line_end(*position)) break;
    }
    if (position < end_ && !is_line_end(*position)) {
      char* line_end = skip_characters(position, ~size_t{0});
      add_padded_cell(position, line_end);
      position = line_end;
    }
    return position == end_ ? end_ : const_cast<char*>(skip_line_end(position, end_));
  }

  // The position COUNT characters behind POSITION, or that of the line end before.
  char* skip_characters(char* position, size_t count) {
    size_t taken = 0;
    while (position < end_ && !is_line_end(*position)) {
      const auto byte = static_cast<unsigned char>(*position);
      const bool continues = rules_.utf8 && (byte & 0xC0) == 0x80 && taken > 0;
      if (!continues && taken++ == count) break;
      take_character_byte(position);
      const bool leads = rules_.lead_bytes && (*rules_.lead_bytes)[byte];
      if (leads && position < end_ && !is_line_end(*position)) take_character_byte(position);
    }
    return position;
  }

  void take_character_byte(char*& position) {
    if (is_control(*position) && !rules_.keep_controls) *position = ' ';
    ++position;
  }

  void add_padded_cell(const char* start, const char* cell_end) {
    while (cell_end > start && cell_end[-1] == ' ') --cell_end;
    add_cell(start, cell_end);
  }

  void add_cell(const char* start, const char* cell_end) {
    block_.cells_.push_back({static_cast<uint32_t>(start - text_), static_cast<uint32_t>(cell_end - start)});
  }

  TextBlock& block_;
  const TextRules& rules_;
  char* text_;
  char* end_;
  SpecialScanner scanner_;
};

char* TextBlock::reserve(size_t size) {
  if (text_.size() < size + kPadding) text_.resize(size + kPadding);
  return text_.data();
}

void TextBlock::clear() {
  if (text_.size() > kKeptBytes) UninitializedVector<char>().swap(text_);
  size_ = 0;
  cells_.clear();
  record_starts_.clear();
  open_record_ = 0;
  column_count_ = 0;
  has_cut_cells = false;
}

void TextBlock::tokenize(const TextRules& rules) {
  std::memset(reserve(size_) + size_, 0, kPadding);
  BlockTokenizer(*this, rules).run();
}

void TextBlock::add_cell(std::string_view cell) {
  if (capacity() < size_ + cell.size()) reserve(std::max(size_ * 2, size_ + cell.size()));
  std::copy(cell.begin(), cell.end(), text_.data() + size_);
  cells_.push_back({static_cast<uint32_t>(size_), static_cast<uint32_t>(cell.size())});
  size_ += cell.size();
}

void TextBlock::keep_records(size_t count) {
  if (count >= record_starts_.size()) return;
  cells_.resize(record_starts_[count]);
  record_starts_.resize(count);
  open_record_ = cells_.size();
  column_count_ = 0;
  for (size_t i = 0; i < count; ++i) {
    const size_t end = i + 1 < count ? record_starts_[i + 1] : cells_.size();
    column_count_ = std::max(column_count_, end - record_starts_[i]);
  }
}

void TextBlock::end_record() {
  record_starts_.push_back(static_cast<uint32_t>(open_record_));
  column_count_ = std::max(column_count_, cells_.size() - open_record_);
  open_record_ = cells_.size();
}

namespace {

size_t last_line_end(std::string_view text) {
  const std::string_view sure = !text.empty() && text.back() == '\r' ? text.substr(0, text.size() - 1) : text;
  size_t found = sure.rfind('\n');
  if (found == std::string_view::npos) found = sure.rfind('\r');
  return found == std::string_view::npos ? 0 : found + 1;
}

size_t find_char(std::string_view text, char c, size_t from) {
  if (from >= text.size()) return std::string_view::npos;
  const void* found = std::memchr(text.data() + from, c, text.size() - from);
  return found == nullptr ? std::string_view::npos
                          : static_cast<size_t>(static_cast<const char*>(found) - text.data());
}

// True when the quoting symbol at POSITION begins a field. UNQUOTED is where the unquoted text before it
// begins.
bool begins_field(std::string_view text, const TextRules& rules, size_t unquoted, size_t position) {
  while (rules.skips_leading_spaces() && position > unquoted && text[position - 1] == ' ') --position;
  return position == 0 || rules.is_separator(text[position - 1]) || is_line_end(text[position - 1]);
}

// Where the quoted field that begins at POSITION ends, its blanks and, when it was reopened, its unquoted
// rest included; npos when that lies behind the text or can't be told yet.
size_t quoted_field_end(std::string_view text, const TextRules& rules, size_t position) {
  size_t close = find_char(text, rules.quote, position + 1);
  while (close != std::string_view::npos && close + 1 < text.size() && text[close + 1] == rules.quote) {
    close = find_char(text, rules.quote, close + 2);
  }
  if (close == std::string_view::npos) return close;
  size_t rest = close + 1;
  while (rest < text.size() && rules.is_blank_after_quote(text[rest])) ++rest;
  while (rest < text.size() && !rules.is_separator(text[rest]) && !is_line_end(text[rest])) ++rest;
  return rest < text.size() ? rest : std::string_view::npos;
}

}  // namespace

size_t last_record_end(std::string_view text, const TextRules& rules) {
  if (!rules.quoting) return last_line_end(text);
  // The text from `unquoted` on holds no quoted field before `quote`.
  size_t unquoted = 0;
  size_t safe = 0;
  for (size_t quote = find_char(text, rules.quote, 0);; quote = find_char(text, rules.quote, quote)) {
    if (quote == std::string_view::npos) {
      const size_t found = last_line_end(text.substr(unquoted));
      return found == 0 ? safe : unquoted + found;
    }
    if (!begins_field(text, rules, unquoted, quote)) {
      ++quote;
      continue;
    }
    const std::string_view before = text.substr(unquoted, quote - unquoted);
    if (const size_t found = before.find_last_of("\r\n"); found != std::string_view::npos)
      safe = unquoted + found + 1;
    const size_t field_end = quoted_field_end(text, rules, quote);
    if (field_end == std::string_view::npos) return safe;
    unquoted = quote = field_end;
  }
}

}  // namespace rowvane
