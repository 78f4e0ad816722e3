#include "exchange/text/text_block_columns.h"

#include <algorithm>

#include "core/values/number_cell.h"
#include "exchange/text/standard_dates.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

// Calls `use(record, cell)` for the cells of COLUMN from record FIRST on; records without such a cell give an
// empty one. Stops when `use` answers false.
template <typename Use>
bool for_each_cell(const TextBlock& block, size_t first, size_t column, Use&& use) {
  const size_t count = block.record_count();
  if (block.is_regular()) {
    const size_t step = block.column_count();
    const TextBlock::Cell* cell = block.cells() + first * step + column;
    for (size_t record = first; record < count; ++record, cell += step) {
      if (!use(record - first, block.view(*cell))) return false;
    }
    return true;
  }
  for (size_t record = first; record < count; ++record) {
    const TextBlock::Cell* cell = block.cell(record, column);
    if (!use(record - first, cell != nullptr ? block.view(*cell) : std::string_view())) return false;
  }
  return true;
}

std::string_view trim_spaces(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  return text;
}

// Whole numbers of up to nine digits, which most numbers are.
bool parse_small_integer(std::string_view text, double& number) {
  const bool negative = text.front() == '-';
  const size_t start = negative ? 1 : 0;
  const size_t digits = text.size() - start;
  if (digits == 0 || digits > 9 || (text[start] == '0' && text.size() > 1)) return false;
  uint32_t value = 0;
  for (size_t i = start; i < text.size(); ++i) {
    const auto digit = static_cast<unsigned>(text[i] - '0');
    if (digit > 9) return false;
    value = value * 10 + digit;
  }
  number = negative ? -static_cast<double>(value) : static_cast<double>(value);
  return true;
}

// Bytes that may hold the longest Text value before the encoding is known to be shorter.
std::string_view cut_raw(std::string_view cell, bool utf8) {
  if (cell.size() <= kMaxTextCharacters) return cell;
  return utf8 ? truncate_characters(cell, kMaxTextCharacters) : cell.substr(0, 2 * kMaxTextCharacters);
}

}  // namespace

void BlockColumn::clear() {
  kind = Kind::kEmpty;
  numbers.clear();
  codes.clear();
  pool.clear();
  finished.clear();
  contents.clear();
}

BlockReader::BlockReader(const TextLoadPlan& plan, ColumnHints& hints)
    : plan_(plan), hints_(hints), generic_numbers_(plan.numbers.is_generic()) {
  if (plan.encoding >= TextFileSettings::kFirstCodePage) {
    code_page_ = platform::CodePage::open(code_page_of(plan.encoding));
  }
}

void BlockReader::read(const TextBlock& block, size_t first, size_t column, BlockColumn& out) {
  const ColumnLoad load = plan_.column(column).load;
  switch (load) {
    case ColumnLoad::kSkip:
      return;
    case ColumnLoad::kLongText:
      return read_contents(block, first, column, out);
    case ColumnLoad::kText:
    case ColumnLoad::kEncryptedText:
      return read_texts(block, first, column, out);
    default:
      break;
  }
  const bool known_text = is_analysed(load) && hints_.text[column].load(std::memory_order_relaxed);
  if (!known_text && read_numbers(block, first, column, out)) return;
  read_texts(block, first, column, out);
}

bool BlockReader::parse(std::string_view cell, ColumnLoad load, double& number) const {
  if (load == ColumnLoad::kAnalyze) {
    if (generic_numbers_) return parse_plain_number_exactly(cell.data(), cell.data() + cell.size(), number);
    const auto exact = parse_number_exactly(cell, plan_.numbers);
    if (exact) number = *exact;
    return exact.has_value();
  }
  if (load == ColumnLoad::kStoredNumber) {
    const FormulaError error = formula_error_named(cell);
    if (error != FormulaError::kNone) {
      number = error_number(error);
      return true;
    }
  }
  const auto any = parse_number(cell, plan_.numbers);
  if (any) number = *any;
  return any.has_value();
}

// False when a cell of an analysed column is no number.
bool BlockReader::read_numbers(const TextBlock& block, size_t first, size_t column, BlockColumn& out) {
  const ColumnLoad load = plan_.column(column).load;
  out.numbers.resize(block.record_count() - first);
  bool any = false;
  const bool all_numbers = for_each_cell(block, first, column, [&](size_t record, std::string_view cell) {
    double& number = out.numbers[record];
    number = kEmptyNumber;
    if (cell.empty()) return true;
    if (parse_small_integer(cell, number)) {
      any = true;
      return true;
    }
    cell = trim_spaces(cell);
    if (cell.empty()) return load == ColumnLoad::kStoredNumber || !is_analysed(load);
    if (parse(cell, load, number)) {
      any = true;
      return true;
    }
    number = kEmptyNumber;
    if (is_analysed(load)) return false;
    findings.not_numeric = true;
    return true;
  });
  if (all_numbers) out.kind = any ? BlockColumn::Kind::kNumbers : BlockColumn::Kind::kEmpty;
  return all_numbers;
}

void BlockReader::read_texts(const TextBlock& block, size_t first, size_t column, BlockColumn& out) {
  out.codes.resize(block.record_count() - first);
  const bool utf8 = code_page_ == nullptr;
  const bool encrypted = plan_.column(column).load == ColumnLoad::kEncryptedText;
  const bool interning = !hints_.distinct[column].load(std::memory_order_relaxed);
  out.interned = interning;
  std::string_view last;
  TextPool::Code last_code = 0;
  for_each_cell(block, first, column, [&](size_t record, std::string_view cell) {
    const std::string_view kept = encrypted ? cell.substr(0, TextPool::kMaxTextBytes) : cut_raw(cell, utf8);
    findings.cut_cells = findings.cut_cells || kept.size() < cell.size();
    if (kept != last) {
      last = kept;
      last_code = interning ? out.pool.intern(kept) : out.pool.append(kept);
    }
    out.codes[record] = last_code;
    return true;
  });
  out.kind = out.pool.size() > 1 ? BlockColumn::Kind::kTexts : BlockColumn::Kind::kEmpty;
  finish_texts(column, out);
}

std::string BlockReader::decode(std::string_view cell) {
  std::string text;
  if (code_page_ != nullptr) {
    code_page_->to_utf8(cell, text);
  } else if (is_valid_utf8(cell)) {
    text = cell;
  } else {
    findings.invalid_utf8 = true;
    text = repair_utf8(cell);
  }
  return text;
}

// Decodes, cuts and reads dates, once for each distinct text of the block.
void BlockReader::finish_texts(size_t column, BlockColumn& out) {
  const bool dates = plan_.column(column).dates;
  const auto is_plain = [this](std::string_view text) {
    return code_page_ != nullptr ? text.size() <= kMaxTextCharacters && is_ascii(text) : is_valid_utf8(text);
  };
  bool all_plain = !dates;
  for (TextPool::Code code = 1; all_plain && code < out.pool.size(); ++code)
    all_plain = is_plain(out.pool.text(code));
  if (all_plain) return;
  out.finished.resize(out.pool.size());
  for (TextPool::Code code = 1; code < out.pool.size(); ++code) {
    std::string text = decode(out.pool.text(code));
    if (const auto cut = truncate_characters(text, kMaxTextCharacters); cut.size() < text.size()) {
      findings.cut_cells = true;
      text.resize(cut.size());
    }
    if (dates) {
      if (auto date = standard_date_of(text, plan_.region)) text = *std::move(date);
    }
    out.finished[code] = std::move(text);
  }
}

void BlockReader::read_contents(const TextBlock& block, size_t first, size_t column, BlockColumn& out) {
  out.contents.resize(block.record_count() - first);
  bool any = false;
  for_each_cell(block, first, column, [&](size_t record, std::string_view cell) {
    if (cell.empty()) return true;
    any = true;
    out.contents[record] = Content::of(decode(cell));
    return true;
  });
  out.kind = any ? BlockColumn::Kind::kContents : BlockColumn::Kind::kEmpty;
}

}  // namespace rowvane
