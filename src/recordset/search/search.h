// Finding records by the criteria of fields.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/progress.h"
#include "formula/language/formula_settings.h"
#include "recordset/record_set.h"
#include "recordset/search/criterion.h"
#include "recordset/search/search_options.h"

namespace rowvane {

struct FieldCriterion {
  size_t field = 0;
  Criterion criterion;
};

// A record is found when it satisfies all criteria:
// - kFormula: the formula's value is a number other than 0 or a text that reads as one.
// - kRegEx: the pattern occurs anywhere in the text of the cell; of images and files, in one of the names.
//   Long Text fields are searched for the pattern as a plain text.
// - kStartsWith to kIsEmpty: the equivalent formula (criterion_formula.h) is true. So letter case does not
//   matter, an empty number counts as 0, what numbers are compared with may be any expression, and a cell
//   with a formula error is not found.
// - kSimilar: the similarity (similar_text.h) reaches the threshold; the most similar records come first.
// - kFlag: the record carries the flag.
struct Search {
  std::vector<FieldCriterion> criteria;
  SearchOptions options;
  std::optional<RecordSet> within;  // the records to narrow, in display order; nothing: all of the table
  int threads = 0;                  // as thread_count takes it
};

// What is wrong with SETTINGS: a field or record that is not there, an
// encrypted field, a formula or a regular expression that can't be read, a kind that lacks its values.
Check check_search(const CWorkSheet& table, const Search& settings, const FormulaSettings& formulas);

// Fails with what check_search says, and where a regular expression gives up. Notices: how Long Text fields
// are searched; values that can't be read.
struct SearchResult : Outcome {
  RecordSet records;  // in display order, or the most similar first; empty when the search was not completed
};

SearchResult search(const CWorkSheet& table, const Search& settings, const FormulaSettings& formulas,
                    Progress& progress = Progress::none());

}  // namespace rowvane
