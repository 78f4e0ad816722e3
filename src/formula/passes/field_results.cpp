#include "formula/passes/field_results.h"

#include <algorithm>
#include <cstring>

#include "core/limits.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

using Form = BlockVector::Form;

// How many texts show whether they repeat, and the share of different ones above which they don't.
constexpr size_t kWatchedTexts = 16'384;
constexpr double kDifferentShare = 0.7;

double clean_cell(double cell) {
  if (cell == cell || is_empty_number(cell)) return cell;
  return error_number(error_of_number(cell));
}

}  // namespace

double number_cell_of(const Scalar& result, const ScalarContext& context) {
  switch (result.kind) {
    case Scalar::Kind::kNumber:
      return result.number;
    case Scalar::Kind::kError:
      return error_number(result.error);
    case Scalar::Kind::kEmpty:
      return kEmptyNumber;
    case Scalar::Kind::kText:
      break;
  }
  if (result.text.empty()) return kEmptyNumber;
  const Scalar number = to_number(result, context);
  return number.is_number() ? number.number : error_number(FormulaError::kValue);
}

std::string_view text_cell_of(const Scalar& result, const ScalarContext& context) {
  if (result.is_error()) return formula_error_text(result.error);
  const std::string_view text = to_text(result, context).text;
  return text.size() <= kMaxTextCharacters ? text : truncate_characters(text, kMaxTextCharacters);
}

void write_number_cells(const BlockVector& results, size_t count, const ScalarContext& context,
                        double* cells) {
  if (results.form == Form::kNumbers) {
    for (size_t i = 0; i < count; ++i) cells[i] = clean_cell(results.numbers[i]);
  } else if (results.form == Form::kConstant) {
    std::fill_n(cells, count, number_cell_of(results.constant, context));
  } else {
    for (size_t i = 0; i < count; ++i) cells[i] = number_cell_of(results.at(i), context);
  }
}

TextPool::Code TextResults::code_for(std::string_view text) {
  if (interning_ && ++looked_up_ == kWatchedTexts) watch_repetition();
  return interning_ ? pool_->intern(text) : pool_->append(text);
}

void TextResults::watch_repetition() {
  interning_ = static_cast<double>(pool_->size()) < kDifferentShare * kWatchedTexts;
  if (!interning_) pool_->drop_index();
}

void TextResults::write(const BlockVector& results, size_t count, const ScalarContext& context,
                        TextPool::Code* codes) {
  if (results.form == Form::kConstant) {
    if (known_.empty()) known_.push_back(pool_->intern(text_cell_of(results.constant, context)) + 1);
    std::fill_n(codes, count, known_[0] - 1);
    return;
  }
  if (results.form != Form::kCodes) {
    for (size_t i = 0; i < count; ++i) codes[i] = code_for(text_cell_of(results.at(i), context));
    return;
  }
  if (known_.empty()) known_.resize(results.dictionary->bound, 0);
  for (size_t i = 0; i < count; ++i) {
    TextPool::Code& known = known_[results.codes[i]];
    if (known == 0) known = pool_->intern(text_cell_of(results.at(i), context)) + 1;
    codes[i] = known - 1;
  }
}

TextColumn join_text_results(std::vector<TextResults>& threads, std::span<const ThreadBlock> blocks,
                             TextColumn::Cells cells) {
  TextColumn column;
  column.cells = std::move(cells);
  if (threads.empty()) return column;
  column.pool = threads[0].pool_;
  for (const TextResults& thread : threads) column.interning = column.interning && thread.interning_;
  std::vector<TextPool::Code> moved;
  for (size_t t = 1; t < blocks.size(); ++t) {
    const TextPool& own = *threads[t].pool_;
    moved.resize(own.size());
    moved[0] = 0;
    for (TextPool::Code code = 1; code < own.size(); ++code) moved[code] = column.code_for(own.text(code));
    for (uint64_t i = blocks[t].first; i < blocks[t].end; ++i) column.cells[i] = moved[column.cells[i]];
  }
  return column;
}

namespace {

bool same_numbers(const NumberColumn& a, const NumberColumn& b) {
  return a.cells.empty() || std::memcmp(a.cells.data(), b.cells.data(), a.cells.size() * sizeof(double)) == 0;
}

// Compares each pair of codes once.
bool same_texts(const TextColumn& a, const TextColumn& b) {
  std::vector<TextPool::Code> partner(a.pool->size(), 0);
  for (size_t i = 0; i < a.cells.size(); ++i) {
    const TextPool::Code mine = a.cells[i];
    if (partner[mine] == b.cells[i] + 1) continue;
    if (a.text(i) != b.text(i)) return false;
    partner[mine] = b.cells[i] + 1;
  }
  return true;
}

}  // namespace

bool same_values(const Column& a, const Column& b) {
  if (a.index() != b.index() || column_size(a) != column_size(b)) return false;
  if (const auto* numbers = std::get_if<NumberColumn>(&a))
    return same_numbers(*numbers, std::get<NumberColumn>(b));
  const auto* texts = std::get_if<TextColumn>(&a);
  return texts != nullptr && same_texts(*texts, std::get<TextColumn>(b));
}

}  // namespace rowvane
