#include "core/messages/messages.h"
#include "core/table/work_sheet.h"
#include "formula/passes/formula_program.h"
#include "recordset/search/criterion_formula.h"
#include "recordset/search/search.h"
#include "recordset/search/text_query.h"

namespace rowvane {
namespace {

bool is_readable(std::string_view formula, const CWorkSheet& table, const FormulaSettings& formulas) {
  return FormulaProgram(formula, &table, formulas).error() == FormulaError::kNone;
}

// The number of words that KIND needs at least.
size_t needed_words(CriterionKind kind) {
  switch (kind) {
    case CriterionKind::kBetween:
      return 2;
    case CriterionKind::kAnd:
    case CriterionKind::kOr:
    case CriterionKind::kSimilar:
      return 1;
    default:
      return 0;
  }
}

// Whether the values of a criterion on a field of numbers make an expression.
bool has_number_values(CriterionKind kind) {
  return kind >= CriterionKind::kEqual && kind <= CriterionKind::kOr;
}

Check check_formula(std::string_view formula, const CWorkSheet& table, const FormulaSettings& formulas) {
  if (is_readable(formula, table, formulas)) return {};
  const std::string_view text = texts::kInvalidFormula;
  const size_t first = text.find_first_not_of(' ');
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

Check check_expression(const Field& field, const Criterion& criterion, const SearchOptions& options) {
  if (field.type == FieldType::kLongText) return {};
  const TextQuery query(criterion, options, TextQuery::Patterns::kExpressions);
  return query.error().empty() ? Check() : Check(regular_expression_message(query.error()));
}

Check check_criterion(const CWorkSheet& table, const FieldCriterion& wanted, const SearchOptions& options,
                      const FormulaSettings& formulas) {
  if (wanted.field >= table.field_count()) return ErrorCode::kInvalidCacheIndex;
  const Field& field = table.field(wanted.field);
  const Criterion& criterion = wanted.criterion;
  if (criterion.kind == CriterionKind::kFlag) return {};
  if (criterion.kind == CriterionKind::kFormula) return check_formula(criterion.text, table, formulas);
  if (field.encrypted) return ErrorCode::kEncryptedField;
  if (criterion.kind == CriterionKind::kRegEx) return check_expression(field, criterion, options);
  if (criterion_words(criterion.text).size() < needed_words(criterion.kind)) {
    return "The filter of the field \"" + field.name + "\" lacks a value: " + criterion_text(criterion, {});
  }
  const bool of_numbers = field.type == FieldType::kNumber && has_number_values(criterion.kind);
  if (of_numbers && !is_readable(equivalent_formula(field, criterion), table, formulas)) {
    return "The filter of the field \"" + field.name + "\" needs a number: " + criterion_text(criterion, {});
  }
  return {};
}

}  // namespace

Check check_search(const CWorkSheet& table, const Search& settings, const FormulaSettings& formulas) {
  for (const FieldCriterion& wanted : settings.criteria) {
    Check check = check_criterion(table, wanted, settings.options, formulas);
    if (!check.passes()) return check;
  }
  for (const uint32_t position : settings.within.value_or(RecordSet())) {
    if (position >= table.record_count()) return ErrorCode::kInvalidCacheIndex;
  }
  return {};
}

}  // namespace rowvane
