// Reads any bytes as a formula, over a small table and without one. The evaluator, the steps it takes and the
// pass over columns must agree.
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "core/table/work_sheet.h"
#include "formula/passes/block_evaluator.h"

namespace {

using namespace rowvane;

constexpr uint32_t kRecords = 3;

FormulaSettings make_settings() {
  platform::RegionalSettings region = platform::RegionalSettings::generic();
  region.decimal_separator = ",";
  region.list_separator = ";";
  return formula_settings_of(region);
}

std::unique_ptr<CWorkSheet> make_table() {
  TableData data;
  data.record_count = kRecords;
  for (const char* name : {"a", "b", "a b", "t", "ä-1"}) {
    Field field;
    field.name = name;
    field.type = field.name.front() == 't' ? FieldType::kText : FieldType::kNumber;
    data.columns.push_back(make_column(field.type));
    resize_column(data.columns.back(), kRecords);
    data.fields.push_back(std::move(field));
  }
  const double cells[] = {1.5, error_number(FormulaError::kRef), -3};
  for (uint32_t i = 0; i < kRecords; ++i) {
    for (const size_t field : {0u, 2u, 4u}) store_value(data.columns[field], i, cells[i]);
    store_value(data.columns[3], i, std::string(i, 'x'));
  }
  return std::make_unique<CWorkSheet>("table", std::move(data));
}

void check_same(const Scalar& a, const Scalar& b) {
  const bool same_number = std::bit_cast<uint64_t>(a.number) == std::bit_cast<uint64_t>(b.number);
  if (a.kind != b.kind || a.error != b.error || a.text != b.text || (a.is_number() && !same_number))
    std::abort();
}

void check_formula(std::string_view formula, const CWorkSheet& table, const FormulaSettings& settings,
                   SeparatorSet set) {
  static FormulaEvaluator plain(settings);
  plain.evaluate(formula);
  const auto evaluator = std::make_unique<FormulaEvaluator>(settings, set);
  const auto stepping = std::make_unique<FormulaEvaluator>(settings, set);
  evaluator->set_table(&table);
  stepping->set_table(&table);
  const FormulaProgram program(formula, &table, settings, set);
  BlockEvaluator blocks(program);
  const BlockVector& results = blocks.run(0, kRecords);
  for (uint32_t record = 0; record < kRecords; ++record) {
    evaluator->set_record(record);
    stepping->set_record(record);
    if (evaluator->evaluate(formula) != program.run(*stepping)) std::abort();
    check_same(evaluator->result(), stepping->result());
    check_same(evaluator->result(), results.at(record));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FormulaSettings settings = make_settings();
  static const std::unique_ptr<CWorkSheet> table = make_table();
  const std::string_view formula(reinterpret_cast<const char*>(data), size);
  check_formula(formula, *table, settings, SeparatorSet::kGeneric);
  check_formula(formula, *table, settings, SeparatorSet::kRegional);
  return 0;
}
