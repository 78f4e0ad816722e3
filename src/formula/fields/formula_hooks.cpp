#include "formula/fields/formula_hooks.h"

#include "core/database/database.h"
#include "formula/fields/name_keeper.h"
#include "formula/passes/formula_program.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

// The value of the entry as a formula reads it; TEXT holds what it points to.
Scalar scalar_of(const CellValue& value, std::string& text) {
  if (is_empty(value)) return Scalar();
  if (const auto* number = std::get_if<double>(&value)) return Scalar::of_cell(*number);
  if (const auto* entered = std::get_if<std::string>(&value)) {
    text = *entered;
  } else if (const auto* content = std::get_if<Content>(&value)) {
    if (content->read(text) != ErrorCode::kOk) return Scalar::of(FormulaError::kRef);
  } else {
    append_file_names(std::get<FileList>(value), text);
  }
  return text.empty() ? Scalar() : Scalar::of(std::string_view(text));
}

}  // namespace

bool FormulaHooks::accepts(const CWorkSheet& table, RecordNumber record, size_t field,
                           const CellValue& value) const {
  const auto evaluator = std::make_unique<FormulaEvaluator>(settings_);
  std::string text;
  const Scalar entered = scalar_of(value, text);
  evaluator->set_table(&table);
  evaluator->set_record(record.position());
  evaluator->set_entry(static_cast<uint16_t>(field), &entered);
  if (evaluator->evaluate(table.field(field).validation) == Kind::kError) return false;
  return to_truth(evaluator->result(), evaluator->context()).value_or(false);
}

// A failure leaves results that are out of date, which a recalculation mends; the change itself stands.
void FormulaHooks::values_changed(CWorkSheet& table, std::optional<size_t> field,
                                  std::span<const uint32_t> positions) const {
  if (update_mode_ == UpdateMode::kManual) return;
  static_cast<void>(recalculate_dependents(database_, {&table, field, positions}, settings_, threads_));
}

void FormulaHooks::field_changed(CWorkSheet& table, size_t field) const {
  if (update_mode_ == UpdateMode::kManual) return;
  static_cast<void>(recalculate_from(database_, table, field, settings_, threads_));
}

void FormulaHooks::names_deleted() const {
  if (update_mode_ == UpdateMode::kManual) return;
  static_cast<void>(recalculate_unknown_names(database_, settings_, threads_));
}

std::function<void()> FormulaHooks::before_renaming() const {
  return [keeper = std::make_shared<NameKeeper>(database_, settings_)] { keeper->update_formulas(); };
}

std::string FormulaHooks::format_number(const std::string& format, double number) const {
  std::string text;
  NumberFormat(format, region_).append(number, text);
  return text;
}

TextEntry read_formula_entry(std::string_view formula) {
  TextEntry entry;
  if (formula.size() > kMaxBufferBytes) entry.warning = texts::kEntryTruncated;
  entry.text = truncate_bytes(formula, kMaxBufferBytes);
  return entry;
}

bool is_valid_formula(std::string_view formula, const CWorkSheet* table, const FormulaSettings& settings,
                      SeparatorSet set) {
  return FormulaProgram(formula, table, settings, set).error() == FormulaError::kNone;
}

}  // namespace rowvane
