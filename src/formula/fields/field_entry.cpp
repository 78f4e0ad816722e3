#include "formula/fields/field_entry.h"

#include <algorithm>

#include "core/database/database.h"
#include "core/database/names.h"
#include "core/messages/messages.h"
#include "formula/fields/formula_hooks.h"
#include "formula/fields/value_input.h"
#include "formula/formats/format_code.h"
#include "formula/passes/recalculation.h"
#include "formula/passes/update_order.h"

namespace rowvane {
namespace {

constexpr std::string_view kOnlyNumbersHaveFormats = "Only Number fields have a display format.";
constexpr std::string_view kCanNotBeCalculated = "Only Text and Number fields can be calculated.";
constexpr std::string_view kNoSuchList = "The database has no drop-down list of this name.";

FieldConversion conversion_of(const FieldEntry& entry) {
  return {*entry.index, entry.field.type, entry.field.link, entry.region};
}

// Checks one entry; the first rule that is broken is the answer.
class EntryCheck {
 public:
  EntryCheck(const CWorkSheet& table, const FieldEntry& entry, const FormulaSettings& formulas)
      : table_(table), entry_(entry), field_(entry.field), formulas_(formulas) {
    look_at_name();
    look_at_encryption();
    look_at_type();
    look_at_format();
    look_at_formulas();
    look_at_default_value();
    look_at_list();
  }

  const Check& check() const { return check_; }
  FieldPart wrong_part() const { return wrong_part_; }

 private:
  const Field* present() const { return entry_.index ? &table_.field(*entry_.index) : nullptr; }

  void refuse(FieldPart part, UserText text) {
    if (!check_.passes() || text.empty()) return;
    wrong_part_ = part;
    check_.refusal = std::move(text);
  }

  void look_at_name() {
    if (!is_valid_field_name(field_.name)) refuse(FieldPart::kName, MessageId::kFieldNameNeedsLetter);
    const auto taken = table_.find_field(field_.name);
    if (taken && taken != entry_.index) refuse(FieldPart::kName, MessageId::kFieldNameExists);
  }

  void look_at_encryption() {
    const Field* before = present();
    if (before == nullptr || !before->encrypted) return;
    const ErrorCode refusal = ErrorCode::kEncryptedField;
    if (field_.type != before->type || field_.link != before->link) refuse(FieldPart::kType, refusal);
    if (field_.formula != before->formula) refuse(FieldPart::kFormula, refusal);
    if (field_.default_value != before->default_value) refuse(FieldPart::kDefaultValue, refusal);
  }

  void look_at_type() {
    if (present() == nullptr || field_.type == present()->type) return;
    const Check conversion = check_conversion(table_, conversion_of(entry_));
    refuse(FieldPart::kType, conversion.refusal);
    check_.question = conversion.question;
  }

  void look_at_format() {
    if (field_.format.empty()) return;
    if (field_.type != FieldType::kNumber) refuse(FieldPart::kFormat, kOnlyNumbersHaveFormats);
    refuse(FieldPart::kFormat, FormatCode(field_.format).problem());
  }

  void look_at_formulas() {
    const auto is_wrong = [this](const std::string& formula) {
      return !formula.empty() &&
             (!read_formula_entry(formula).warning.empty() || !is_valid_formula(formula, &table_, formulas_));
    };
    if (is_wrong(field_.formula)) refuse(FieldPart::kFormula, texts::kInvalidFormula);
    if (!field_.formula.empty() && !can_be_calculated(field_))
      refuse(FieldPart::kFormula, kCanNotBeCalculated);
    if (is_wrong(field_.validation)) refuse(FieldPart::kValidation, texts::kInvalidFormula);
  }

  void look_at_default_value();

  void look_at_list() {
    const std::string& name = field_.drop_down_list;
    if (name.empty() || (present() != nullptr && present()->drop_down_list == name)) return;
    const Database* database = table_.database();
    const bool found = database != nullptr &&
                       std::ranges::any_of(database->settings().drop_down_lists,
                                           [&](const auto& list) { return same_name(list.name, name); });
    if (!found) refuse(FieldPart::kDropDownList, kNoSuchList);
  }

  const CWorkSheet& table_;
  const FieldEntry& entry_;
  const Field& field_;
  const FormulaSettings& formulas_;
  Check check_;
  FieldPart wrong_part_ = FieldPart::kNone;
};

// The default value as it is stored: numbers and dates as plain numbers.
ErrorCode read_default(const FieldEntry& entry, std::string& stored) {
  const ValueReading read = read_field_value(entry.field, entry.field.default_value, entry.region);
  const auto number = read.number();
  stored = number ? number_cell_text(*number) : entry.field.default_value;
  return read.error;
}

void EntryCheck::look_at_default_value() {
  std::string stored;
  refuse(FieldPart::kDefaultValue, read_default(entry_, stored));
}

Outcome convert(CWorkSheet& table, const FieldEntry& entry, Progress& progress) {
  const Field& now = entry.field;
  const Field& before = table.field(*entry.index);
  return now.type == before.type ? Outcome() : convert_field(table, conversion_of(entry), progress);
}

// The name comes last: what was entered names the field as it is called now.
Outcome change(CWorkSheet& table, const FieldEntry& entry, Field definition, Progress& progress) {
  Outcome outcome = convert(table, entry, progress);
  if (!outcome.is_done()) return outcome;
  std::string name = definition.name;
  outcome.failure = table.change_field(*entry.index, std::move(definition));
  if (outcome.is_done() && table.field(*entry.index).name != name)
    outcome.failure = table.rename_field(*entry.index, std::move(name));
  return outcome;
}

UserText find_circle(const CWorkSheet& table, const FormulaSettings& formulas) {
  if (table.database() == nullptr) return {};
  return check_recalculation(*table.database(), Recalculation(), formulas).refusal;
}

Outcome apply(CWorkSheet& table, const FieldEntry& entry, const FormulaSettings& formulas,
              Progress& progress) {
  const bool had_circle = !find_circle(table, formulas).empty();
  Field definition = entry.field;
  const ErrorCode error = read_default(entry, definition.default_value);
  if (error != ErrorCode::kOk) return error;
  definition.encrypted = false;
  definition.encryption.clear();
  Outcome outcome = entry.index ? change(table, entry, std::move(definition), progress)
                                : table.insert_field(entry.before, std::move(definition));
  if (outcome.is_done() && !had_circle) outcome.failure = find_circle(table, formulas);
  return outcome;
}

}  // namespace

Check check_field_entry(const CWorkSheet& table, const FieldEntry& entry, const FormulaSettings& formulas) {
  return EntryCheck(table, entry, formulas).check();
}

FieldPart wrong_field_part(const CWorkSheet& table, const FieldEntry& entry,
                           const FormulaSettings& formulas) {
  return EntryCheck(table, entry, formulas).wrong_part();
}

ConversionLoss find_entry_loss(const CWorkSheet& table, const FieldEntry& entry, Progress& progress) {
  const bool is_converted = entry.index && entry.field.formula.empty();
  return is_converted ? find_conversion_loss(table, conversion_of(entry), progress) : ConversionLoss();
}

Outcome apply_field_entry(CWorkSheet& table, const FieldEntry& entry, const FormulaSettings& formulas,
                          Progress& progress) {
  if (table.database() == nullptr) return apply(table, entry, formulas, progress);
  ChangeGroup step(*table.database(), entry.index ? "Field Properties" : "Insert Field");
  Outcome outcome = apply(table, entry, formulas, progress);
  if (!outcome.is_done()) step.roll_back();
  return outcome;
}

std::string stored_formula(std::string_view formula) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const size_t start = formula.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return {};
  formula = formula.substr(start, formula.find_last_not_of(kBlanks) - start + 1);
  const bool begins = formula.front() == '=' || formula.front() == '+';
  return (begins ? "" : "=") + std::string(formula);
}

}  // namespace rowvane
