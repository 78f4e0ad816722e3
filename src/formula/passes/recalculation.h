// Bringing calculated fields up to date.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/progress.h"
#include "formula/passes/update_order.h"

namespace rowvane {

class Database;

// In the automatic mode calculated fields follow every change by themselves; in the manual mode they wait for
// a recalculation.
enum class UpdateMode { kAutomatic, kManual };

// What is asked before switching to MODE.
std::string update_mode_question(UpdateMode mode);

struct Recalculation {
  CWorkSheet* table = nullptr;  // null: all tables
  std::optional<size_t> field;  // of `table`; nothing: all calculated fields
  // 0-based positions of displayed records of `table`; nothing: all records.
  std::optional<std::vector<uint32_t>> displayed;
  int threads = 0;  // 1 to 16; 0: as many as the machine has
};

Check check_recalculation(const Database& database, const Recalculation& settings,
                          const FormulaSettings& formulas);

// A cancelled recalculation changes nothing.
struct RecalculationResult : Outcome {
  size_t fields = 0;  // that were calculated
};

// Works out the fields for which check_recalculation has no refusal, each behind those it reads, as one undo
// step. Records whose flag word has kSkippedFlag keep their values. The outcome bits of the others become the
// code of the first error among their results, shifted to bit 1; 0 when there is none.
RecalculationResult recalculate(Database& database, const Recalculation& settings,
                                const FormulaSettings& formulas, Progress& progress = Progress::none());

// Changed values: of `field` (nothing: of all fields) at `positions`; without positions records were deleted.
struct ValuesChange {
  CWorkSheet* table = nullptr;
  std::optional<size_t> field;
  std::span<const uint32_t> positions;
  bool whole_field = false;  // all values of `field`; there are no positions then
};

// Works out only what depends on CHANGE. Formulas that read each other are left alone.
ErrorCode recalculate_dependents(Database& database, const ValuesChange& change,
                                 const FormulaSettings& formulas, int threads);
// Works out FIELD of TABLE, whose formula or whose values are all new, as far as it is calculated, and what
// depends on it.
ErrorCode recalculate_from(Database& database, CWorkSheet& table, size_t field,
                           const FormulaSettings& formulas, int threads);
// Works out the fields whose formulas name what is not there, and what depends on them.
ErrorCode recalculate_unknown_names(Database& database, const FormulaSettings& formulas, int threads);

}  // namespace rowvane
