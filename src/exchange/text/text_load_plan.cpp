#include "exchange/text/text_load_plan.h"

namespace rowvane {
namespace {

ColumnPlan column_plan(const TextFileSettings& settings, size_t column) {
  ColumnPlan plan;
  switch (settings.type_choice(column)) {
    case TextFileSettings::kText:
      plan.load = ColumnLoad::kText;
      break;
    case TextFileSettings::kLongText:
      plan.load = ColumnLoad::kLongText;
      break;
    case TextFileSettings::kNumber:
      plan.load = settings.analyzes() ? ColumnLoad::kNumberOrText : ColumnLoad::kNumber;
      break;
    default:
      plan.load = settings.analyzes() ? ColumnLoad::kAnalyze : ColumnLoad::kText;
      break;
  }
  plan.dates = settings.parses_dates(column);
  return plan;
}

}  // namespace

TextLoadPlan text_load_plan(const TextFileSettings& settings, const platform::RegionalSettings& region) {
  TextLoadPlan plan;
  plan.rules = text_rules(settings);
  plan.encoding = settings.encoding;
  plan.names_row = settings.has_field_names();
  plan.numbers = {region.decimal_separator, region.group_separator};
  plan.region = region;
  for (size_t i = 0; i < kMaxImportColumns; ++i) plan.columns.push_back(column_plan(settings, i));
  return plan;
}

}  // namespace rowvane
