// The filter of one field as its dialog shows it and takes it: CFieldFilterDlg, CFieldPreFilterDlg and, for
// fields of images and files, CBinFieldFilterDlg.
#pragma once

#include <optional>
#include <string>

#include "core/messages/user_text.h"
#include "core/table/work_sheet.h"
#include "formula/language/formula_settings.h"
#include "recordset/search/criterion.h"
#include "recordset/search/search_options.h"

namespace rowvane {

// "Set Search Filter For 'NAME'"
std::string field_filter_title(const Field& field);
// "Search 'NAME'", or "Search filenames in 'NAME'" for images and files.
std::string search_editor_title(const Field& field);

// What the dialog holds.
struct FieldFilter {
  enum class Choice { kExpression, kFormula, kFlag };  // the radio buttons

  Choice choice = Choice::kExpression;
  size_t list_index = 0;             // of the kinds, as in criterion_list
  std::string text;                  // of the search editor
  std::string formula;               // of the formula editor
  int flag = 0;                      // 1-based number of the record flag type; 0 when the database has none
  bool allow_empty_matches = false;  // "&Allow empty matches"
  bool match_case = false;           // "&Match case"
  bool search_now = true;            // "&Search now"
};

// What the dialog shows when it opens for FIELD with the criterion that it has. CURRENT_FLAG is the record
// flag type that is in use, of FLAG_COUNT.
FieldFilter open_field_filter(const Field& field, const std::optional<Criterion>& criterion,
                              const SearchOptions& options, int current_flag, size_t flag_count);

// Whether "&Allow empty matches" and "&Match case" are enabled.
bool has_expression_boxes(const FieldFilter& filter);

struct FieldFilterResult {
  // What the criterion becomes; nothing: the dialog stays open.
  std::optional<Criterion> criterion;
  UserText warning;              // not empty: texts::kEntryTruncated, to be shown first
  bool invalid_formula = false;  // texts::kInvalidFormula is to be flashed in the formula editor, with a beep
  std::string message;           // not empty: to be shown; the focus goes to the search editor
  SearchOptions options;         // to be stored, also where the dialog stays open
};

// How long texts::kInvalidFormula is shown in the place of the formula.
inline constexpr int kInvalidFormulaMilliseconds = 500;

// What OK does. A formula is tried on the first record of TABLE; a result that begins with "@" is refused.
FieldFilterResult accept_field_filter(const CWorkSheet& table, const FieldFilter& filter,
                                      const SearchOptions& options, const FormulaSettings& formulas);

}  // namespace rowvane
