#include "formula/passes/recalculation.h"

#include <algorithm>

#include "core/database/database.h"
#include "core/log.h"
#include "core/messages/messages.h"
#include "core/parallel_blocks.h"
#include "formula/passes/field_pass.h"
#include "formula/passes/field_results.h"

namespace rowvane {
namespace {

constexpr std::string_view kCaption = "Update All Calculated Fields";

bool is_wanted(const CalculatedField& field, const Recalculation& settings) {
  if (settings.table != nullptr && field.table != settings.table) return false;
  return !settings.field || field.field == *settings.field;
}

// Which records of a field are to be worked out again.
struct DirtyRecords {
  bool all = false;
  std::vector<uint32_t> positions;
};

ErrorCode store_column(const CalculatedField& field, Column column) {
  if (same_values(column, field.table->column(field.field))) return ErrorCode::kOk;
  return field.table->store_results(field.field, std::move(column));
}

// Works fields out one after the other.
class Recalculator {
 public:
  Recalculator(const FormulaSettings& formulas, int threads, Progress& progress)
      : formulas_(formulas), threads_(thread_count(threads)), progress_(progress) {}

  ErrorCode run_all_records(const CalculatedField& field) {
    LogScope log(LogCategory::kPasses, field.table->field(field.field).name);
    log.note(field.table->record_count(), "records");
    Column column = calculate_column(pass_of(field));
    return progress_.cancelled() ? ErrorCode::kOk : store_column(field, std::move(column));
  }

  ErrorCode run_records(const CalculatedField& field, const std::vector<uint32_t>& positions) {
    LogScope log(LogCategory::kPasses, field.table->field(field.field).name);
    log.note(positions.size(), "records");
    Column cells = calculate_cells(pass_of(field), positions);
    const Column stored = select_cells(field.table->column(field.field), positions);
    if (same_values(cells, stored)) return ErrorCode::kOk;
    return field.table->store_results(field.field, positions, std::move(cells));
  }

  // Tables whose results hold errors, or had outcomes before, get the new ones.
  void store_outcomes() {
    for (const auto& [table, outcomes] : outcomes_) {
      const bool failed = std::ranges::any_of(outcomes, [](RecordFlags outcome) { return outcome != 0; });
      if (failed || !table->data().flags.empty()) table->store_outcomes(outcomes);
    }
  }
  void want_outcomes_of(CWorkSheet& table) {
    const auto same = [&table](const auto& each) { return each.first == &table; };
    if (std::ranges::any_of(outcomes_, same)) return;
    outcomes_.emplace_back(&table, UninitializedVector<RecordFlags>());
    outcomes_.back().second.resize(table.record_count(), RecordFlags{0});
  }

 private:
  FieldPass pass_of(const CalculatedField& field) {
    const auto found = std::ranges::find(outcomes_, field.table, [](const auto& each) { return each.first; });
    return {*field.table, field.field, formulas_,
            threads_,     progress_,   found != outcomes_.end() ? &found->second : nullptr};
  }

  const FormulaSettings& formulas_;
  int threads_;
  Progress& progress_;
  std::vector<std::pair<CWorkSheet*, UninitializedVector<RecordFlags>>> outcomes_;
};

// What a change makes dirty, field by field in the order of updates.
class DirtyPropagation {
 public:
  explicit DirtyPropagation(const ValuesChange& change) : change_(change) {}

  // Adds what FIELD has to work out again because of the change and of fields that were worked out before it.
  DirtyRecords add(const CalculatedField& field) {
    DirtyRecords dirty;
    for (const FieldUse& use : field.uses.fields) {
      if (reads_change(use)) join(dirty, use, change_.positions.empty(), change_.positions);
      for (const auto& [earlier, its_own] : done_) {
        if (earlier->table != use.table || earlier->field != use.field) continue;
        join(dirty, use, its_own.all, its_own.positions);
      }
    }
    return dirty;
  }
  void done(const CalculatedField& field, DirtyRecords dirty) {
    done_.emplace_back(&field, std::move(dirty));
  }

 private:
  bool reads_change(const FieldUse& use) const {
    if (use.table != change_.table) return false;
    // Where records were deleted, only what reads all of them changes.
    if (change_.positions.empty() && !change_.whole_field) return use.all_records;
    return !change_.field || *change_.field == use.field;
  }

  static void join(DirtyRecords& dirty, const FieldUse& use, bool all, std::span<const uint32_t> positions) {
    dirty.all = dirty.all || all || use.all_records;
    if (dirty.all) return;
    std::vector<uint32_t> both;
    std::ranges::set_union(dirty.positions, positions, std::back_inserter(both));
    dirty.positions = std::move(both);
  }

  const ValuesChange& change_;
  std::vector<std::pair<const CalculatedField*, DirtyRecords>> done_;
};

ErrorCode run_dirty(Recalculator& recalculator, const CalculatedField& field, const DirtyRecords& dirty) {
  if (dirty.all) return recalculator.run_all_records(field);
  return dirty.positions.empty() ? ErrorCode::kOk : recalculator.run_records(field, dirty.positions);
}

}  // namespace

std::string update_mode_question(UpdateMode mode) {
  return std::string(mode == UpdateMode::kAutomatic ? texts::kAutomaticUpdateMode : texts::kManualUpdateMode);
}

Check check_recalculation(const Database& database, const Recalculation& settings,
                          const FormulaSettings& formulas) {
  if (settings.field) {
    const CWorkSheet* table = settings.table;
    if (table == nullptr || *settings.field >= table->field_count()) return ErrorCode::kInvalidCacheIndex;
    if (table->field(*settings.field).encrypted) return ErrorCode::kEncryptedField;
  }
  const UpdateOrder order = find_update_order(database, formulas);
  if (!order.circle.empty()) return "The formulas of these fields need each other's results: " + order.circle;
  return settings.displayed ? Check::asking(texts::kDisplayedUpdateSlow) : Check();
}

RecalculationResult recalculate(Database& database, const Recalculation& settings,
                                const FormulaSettings& formulas, Progress& progress) {
  RecalculationResult result;
  const UpdateOrder order = find_update_order(database, formulas);
  ChangeGroup group(database, std::string(kCaption));
  Recalculator recalculator(formulas, settings.threads, progress);
  progress.begin(kCaption);
  for (const CalculatedField& field : order.fields) {
    if (!is_wanted(field, settings)) continue;
    if (settings.displayed) {
      result.failure = recalculator.run_records(field, *settings.displayed);
    } else {
      recalculator.want_outcomes_of(*field.table);
      result.failure = recalculator.run_all_records(field);
    }
    result.cancelled = progress.cancelled();
    if (!result.is_done()) {
      group.roll_back();
      return result;
    }
    ++result.fields;
  }
  recalculator.store_outcomes();
  return result;
}

namespace {

// Works out what CHANGE makes dirty; WIDEN(field, dirty) adds what its uses don't tell.
template <typename Widen>
ErrorCode run_propagation(const Database& database, const ValuesChange& change,
                          const FormulaSettings& formulas, int threads, const Widen& widen) {
  const UpdateOrder order = find_update_order(database, formulas);
  Recalculator recalculator(formulas, threads, Progress::none());
  DirtyPropagation propagation(change);
  for (const CalculatedField& field : order.fields) {
    DirtyRecords dirty = propagation.add(field);
    if (!dirty.all) widen(field, dirty);
    if (!dirty.all && dirty.positions.empty()) continue;
    if (const auto error = run_dirty(recalculator, field, dirty); error != ErrorCode::kOk) return error;
    propagation.done(field, std::move(dirty));
  }
  return ErrorCode::kOk;
}

}  // namespace

ErrorCode recalculate_dependents(Database& database, const ValuesChange& change,
                                 const FormulaSettings& formulas, int threads) {
  return run_propagation(database, change, formulas, threads,
                         [&](const CalculatedField& field, DirtyRecords& dirty) {
                           // New records have no results yet, whatever the formula reads.
                           const bool whole_records = field.table == change.table && !change.field;
                           if (whole_records)
                             dirty.positions.assign(change.positions.begin(), change.positions.end());
                         });
}

ErrorCode recalculate_from(Database& database, CWorkSheet& table, size_t field,
                           const FormulaSettings& formulas, int threads) {
  const ValuesChange change{&table, field, {}, true};
  return run_propagation(database, change, formulas, threads,
                         [&](const CalculatedField& each, DirtyRecords& dirty) {
                           dirty.all = each.table == &table && each.field == field;
                         });
}

ErrorCode recalculate_unknown_names(Database& database, const FormulaSettings& formulas, int threads) {
  return run_propagation(
      database, {}, formulas, threads,
      [](const CalculatedField& field, DirtyRecords& dirty) { dirty.all = field.uses.unknown_names; });
}

}  // namespace rowvane
