#include "recordset/search/field_filter.h"

#include <memory>

#include "formula/evaluation/formula_evaluator.h"
#include "formula/fields/formula_hooks.h"
#include "recordset/search/criterion_formula.h"
#include "recordset/search/text_query.h"
#include "text/regular_expression.h"

namespace rowvane {
namespace {

size_t default_list_index(const Field& field, const SearchOptions& options) {
  const bool of_numbers = field.type == FieldType::kNumber;
  return criterion_list_index(of_numbers ? CriterionKind::kEqual : options.default_kind).value_or(0);
}

// Takes a criterion of the search expression into FILTER.
void show_expression(const Field& field, const Criterion& criterion, FieldFilter& filter) {
  filter.list_index = *criterion_list_index(criterion.kind);
  if (criterion.kind != CriterionKind::kIsEmpty) filter.text = criterion.text;
  if (criterion.kind != CriterionKind::kRegEx && !criterion.text.empty())
    filter.formula = equivalent_formula(field, criterion);
}

bool is_valid_filter_formula(const std::string& formula, const CWorkSheet& table,
                             const FormulaSettings& formulas) {
  if (!is_valid_formula(formula, &table, formulas)) return false;
  const auto evaluator = std::make_unique<FormulaEvaluator>(formulas);
  evaluator->set_table(&table);
  evaluator->set_record(table.record_count() > 0 ? 0 : FormulaEvaluator::kNoRecord);
  evaluator->evaluate(formula);
  const Scalar result = evaluator->result();
  return !result.is_text() || !result.text.starts_with('@');
}

void accept_expression(const FieldFilter& filter, FieldFilterResult& result) {
  const CriterionKind kind = listed_kind(filter.list_index);
  TextEntry entry = read_criterion_entry(filter.text);
  result.warning = entry.warning;
  if (kind == CriterionKind::kIsEmpty) {
    result.criterion = is_empty_criterion();
    return;
  }
  if (kind == CriterionKind::kRegEx) {
    result.options.empty_matches = filter.allow_empty_matches;
    result.options.caseless = !filter.match_case;
    // Whether a pattern can be read does not depend on letter case.
    const RegularExpression trial(entry.text, expression_options(true));
    if (!trial.error().empty()) {
      result.message = regular_expression_message(trial.error());
      return;
    }
  }
  result.criterion = Criterion{kind, std::move(entry.text)};
}

void accept_formula(const CWorkSheet& table, const FieldFilter& filter, const FormulaSettings& formulas,
                    FieldFilterResult& result) {
  TextEntry entry = read_formula_entry(filter.formula);
  result.warning = entry.warning;
  result.invalid_formula = !is_valid_filter_formula(entry.text, table, formulas);
  if (!result.invalid_formula) result.criterion = Criterion{CriterionKind::kFormula, std::move(entry.text)};
}

}  // namespace

std::string field_filter_title(const Field& field) {
  return "Set Search Filter For '" + field.name + "'";
}

std::string search_editor_title(const Field& field) {
  return (field.type == FieldType::kFiles ? "Search filenames in '" : "Search '") + field.name + "'";
}

FieldFilter open_field_filter(const Field& field, const std::optional<Criterion>& criterion,
                              const SearchOptions& options, int current_flag, size_t flag_count) {
  FieldFilter filter;
  filter.list_index = default_list_index(field, options);
  filter.flag = current_flag;
  filter.allow_empty_matches = options.empty_matches;
  filter.match_case = !options.caseless;
  filter.search_now = options.search_now;
  if (!criterion) return filter;
  switch (criterion->kind) {
    case CriterionKind::kFormula:
      filter.choice = FieldFilter::Choice::kFormula;
      filter.formula = criterion->text;
      break;
    case CriterionKind::kFlag: {
      filter.choice = FieldFilter::Choice::kFlag;
      const int number = flag_number(*criterion);
      if (number >= 1 && static_cast<size_t>(number) <= flag_count) filter.flag = number;
      break;
    }
    default:
      show_expression(field, *criterion, filter);
  }
  return filter;
}

bool has_expression_boxes(const FieldFilter& filter) {
  return filter.choice == FieldFilter::Choice::kExpression &&
         listed_kind(filter.list_index) == CriterionKind::kRegEx;
}

FieldFilterResult accept_field_filter(const CWorkSheet& table, const FieldFilter& filter,
                                      const SearchOptions& options, const FormulaSettings& formulas) {
  FieldFilterResult result;
  result.options = options;
  result.options.search_now = filter.search_now;
  switch (filter.choice) {
    case FieldFilter::Choice::kExpression:
      accept_expression(filter, result);
      break;
    case FieldFilter::Choice::kFormula:
      accept_formula(table, filter, formulas, result);
      break;
    case FieldFilter::Choice::kFlag:
      result.criterion = flag_criterion(filter.flag);
      break;
  }
  return result;
}

}  // namespace rowvane
