// Working out one calculated field.
#pragma once

#include <atomic>
#include <span>

#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "formula/language/formula_settings.h"

namespace rowvane {

struct FieldPass {
  CWorkSheet& table;
  size_t field;
  const FormulaSettings& formulas;
  int threads;
  Progress& progress;
  UninitializedVector<RecordFlags>* outcomes = nullptr;  // a word for each record; null: not wanted
};

// The column of results for all records, kept in PASS.table's order; records with kSkippedFlag keep their
// values. Incomplete when the progress says to stop.
Column calculate_column(const FieldPass& pass);
// The results for the records at POSITIONS, in that order, as a column of so many cells.
Column calculate_cells(const FieldPass& pass, std::span<const uint32_t> positions);

}  // namespace rowvane
