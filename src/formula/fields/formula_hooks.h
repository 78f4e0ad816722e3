// What formulas do for the data model: validation, and the automatic update of calculated fields.
#pragma once

#include "core/options.h"
#include "core/table/field_hooks.h"
#include "formula/formats/number_format.h"
#include "formula/passes/recalculation.h"

namespace rowvane {

// Serves one database.
class FormulaHooks final : public FieldHooks {
 public:
  // REGION says how numbers with a display format look.
  FormulaHooks(Database& database, FormulaSettings settings, const Options& options,
               DisplayRegion region = DisplayRegion())
      : database_(database), settings_(std::move(settings)), region_(std::move(region)) {
    set_options(options);
  }

  UpdateMode update_mode() const { return update_mode_; }
  // Takes the update mode and the number of threads, as set_update_mode.
  void set_options(const Options& options) {
    threads_ = options.used_processor_cores;
    update_mode_ = options.auto_update ? UpdateMode::kAutomatic : UpdateMode::kManual;
  }
  // Asks nothing and calculates nothing: see update_mode_question and recalculate.
  void set_update_mode(UpdateMode mode) { update_mode_ = mode; }
  const FormulaSettings& settings() const { return settings_; }

  // The formula sees VALUE in the field; it is satisfied by a number other than 0.
  bool accepts(const CWorkSheet& table, RecordNumber record, size_t field,
               const CellValue& value) const override;
  void values_changed(CWorkSheet& table, std::optional<size_t> field,
                      std::span<const uint32_t> positions) const override;
  void field_changed(CWorkSheet& table, size_t field) const override;
  void names_deleted() const override;
  std::function<void()> before_renaming() const override;
  // Reads FORMAT each time; what shows many values prepares a NumberFormat.
  std::string format_number(const std::string& format, double number) const override;

 private:
  Database& database_;
  FormulaSettings settings_;
  DisplayRegion region_;
  int threads_ = 0;
  UpdateMode update_mode_ = UpdateMode::kAutomatic;
};

// FORMULA as it was typed, cut to what a formula may hold.
TextEntry read_formula_entry(std::string_view formula);

// True when FORMULA can be read. TABLE's fields are its names; null for none. Unknown names and errors among
// the values make no formula invalid.
bool is_valid_formula(std::string_view formula, const CWorkSheet* table, const FormulaSettings& settings,
                      SeparatorSet set = SeparatorSet::kGeneric);

}  // namespace rowvane
