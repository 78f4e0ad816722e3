#include "cli/sort_options.h"

#include <CLI/CLI.hpp>

#include "cli/report.h"
#include "cli/session.h"

namespace rowvane::cli {

void CollationOptions::add_to(CLI::App& command) {
  command
      .add_option("--collation", collation,
                  "language (of the user) or neutral (byte by byte); the default is what the profile says, "
                  "or language")
      ->check(CLI::IsMember({"language", "neutral"}))
      ->group("Sorting");
  command.add_flag("--case-sensitive", case_sensitive, "Letter case counts")->group("Sorting");
  command
      .add_flag("--ignore-punctuation", ignore_punctuation,
                "Hyphens and apostrophes count only where texts are equal otherwise")
      ->group("Sorting");
}

int CollationOptions::apply(const Session& session, SortOptions& options) const {
  if (case_sensitive && ignore_punctuation) {
    return fail_usage("--case-sensitive and --ignore-punctuation exclude each other");
  }
  options = session.global().sort;
  if (collation == "neutral") choose_collation(options, SortCollation::kNeutral);
  if (collation == "language") choose_collation(options, SortCollation::kLanguage);
  if (case_sensitive) set_case_sensitive(options, true);
  if (ignore_punctuation) set_ignore_punctuation(options, true);
  if (!ignore_punctuation || options.ignore_punctuation) return kDone;
  return fail_usage("--ignore-punctuation needs the collation of a language");
}

void SortArguments::add_to(CLI::App& command) {
  command.add_option("--sort", keys, "Fields to sort by, first the one that decides; -FIELD: descending")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->group("Sorting");
  texts.add_to(command);
}

int SortArguments::sort(Session& session, const CWorkSheet& table, RecordSet& records) const {
  SortOptions options;
  if (const int status = texts.apply(session, options); status != kDone || keys.empty()) return status;
  std::vector<std::string> names;
  for (const std::string& key : keys) names.push_back(key.starts_with('-') ? key.substr(1) : key);
  std::vector<size_t> fields;
  if (const int status = session.find_fields(table, names, fields); status != kDone) return status;
  SortKeys sort_keys;
  for (size_t i = 0; i < keys.size(); ++i) sort_keys.push_back({fields[i], keys[i].starts_with('-')});
  RecordSetResult result =
      sort_records(table, records, sort_keys, options, session.options(), session.progress());
  records = std::move(result.records);
  return report(result);
}

}  // namespace rowvane::cli
