#include "cli/where_option.h"

#include <CLI/CLI.hpp>

#include "cli/report.h"
#include "cli/session.h"
#include "cli/typed_criterion.h"
#include "recordset/search/search_keys.h"

namespace rowvane::cli {
namespace {

int read_key(const CWorkSheet& table, const std::string& name, Search& search) {
  const auto place = CurrentSearchKey{name}.find(table);
  if (const Check check = check_search_key(table, place); !check.passes()) return fail(check.refusal);
  for (const SearchExpression& expression : table.search_keys()[*place].expressions) {
    const auto criterion = parse_criterion(expression.criterion);
    if (!criterion) return fail(texts::kIncorrectSearchKey);
    search.criteria.push_back({expression.field, *criterion});
  }
  return kDone;
}

}  // namespace

void WhereArguments::add_to(CLI::App& command) {
  command
      .add_option(
          "--where", criteria,
          "Only records that satisfy FIELD:KIND:TEXT; all of them where the option is repeated. KIND: "
          "a formula, b regular expression, c starts with, d equal, e not equal, f greater than, g "
          "less than, h between (two values), i all of these words, j one of these words, k is empty, "
          "l similar, m record flag (its number)")
      ->allow_extra_args(false)
      ->group("Searching");
  command.add_option("--key", key, "Only records that this search key of the table finds")
      ->group("Searching");
}

int WhereArguments::search(Session& session, const CWorkSheet& table, RecordSet& records) const {
  if (empty()) {
    records = all_records(table);
    return kDone;
  }
  Search settings;
  settings.options = session.global().search;
  settings.threads = session.options().used_processor_cores;
  if (!key.empty()) {
    if (const int status = read_key(table, key, settings); status != kDone) return status;
  }
  for (const std::string& typed : criteria) {
    FieldCriterion& criterion = settings.criteria.emplace_back();
    if (const int status = read_field_criterion(table, typed, criterion); status != kDone) return status;
  }
  SearchResult result = rowvane::search(table, settings, FormulaSettings(), session.progress());
  if (const int status = report(result); status != kDone) return status;
  records = std::move(result.records);
  return kDone;
}

}  // namespace rowvane::cli
