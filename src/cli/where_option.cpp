#include "cli/where_option.h"

#include <CLI/CLI.hpp>

#include "cli/report.h"
#include "cli/session.h"
#include "core/messages.h"

namespace rowvane::cli {
namespace {

// Takes "KIND:TEXT" apart; the text may be left out for records without a value. Nothing when it is no
// criterion.
std::optional<Criterion> read_criterion(std::string_view typed) {
  if (typed == "k") return is_empty_criterion();
  if (typed.size() < 2 || typed[1] != ':') return std::nullopt;
  CriterionEntry entry = check_criterion_entry(typed.substr(2));
  if (entry.warning) warn(texts::kEntryTruncated);
  return parse_criterion(std::string(typed.substr(0, 2)) + entry.text);
}

// The field that TYPED begins with, the one with the longest name where several fit: names may hold colons.
// Nothing when there is none. CRITERION is what follows it.
std::optional<size_t> find_typed_field(const CWorkSheet& table, std::string_view typed,
                                       std::string_view& criterion) {
  for (size_t colon = typed.rfind(':'); colon != std::string_view::npos && colon > 0;
       colon = typed.rfind(':', colon - 1)) {
    criterion = typed.substr(colon + 1);
    const bool has_kind =
        !criterion.empty() && criterion_kind(criterion[0]) && (criterion.size() == 1 || criterion[1] == ':');
    if (!has_kind) continue;
    if (const auto field = table.find_field(typed.substr(0, colon))) return field;
  }
  return std::nullopt;
}

int read_where(const CWorkSheet& table, const std::string& typed, Search& search) {
  std::string_view rest;
  const auto field = find_typed_field(table, typed, rest);
  if (!field) {
    return fail_usage("--where \"" + typed.substr(0, 100) + "\" is no FIELD:KIND:TEXT with a field of " +
                      table.path());
  }
  const auto criterion = read_criterion(rest);
  if (!criterion)
    return fail_usage("--where \"" + typed.substr(0, 100) + "\" has no text that its kind takes");
  search.criteria.push_back({*field, *criterion});
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
}

int WhereArguments::search(Session& session, const CWorkSheet& table, RecordSet& records) const {
  if (empty()) {
    records = all_records(table);
    return kDone;
  }
  Search settings;
  settings.options = session.global().search;
  settings.threads = session.options().used_processor_cores;
  for (const std::string& typed : criteria) {
    if (const int status = read_where(table, typed, settings); status != kDone) return status;
  }
  SearchResult result = rowvane::search(table, settings, FormulaSettings(), session.progress());
  if (!result.failure.empty()) return fail(result.failure);
  if (result.cancelled) return fail(Status::kCancelled);
  for (const std::string& notice : result.notices) warn(notice);
  records = std::move(result.records);
  return kDone;
}

}  // namespace rowvane::cli
