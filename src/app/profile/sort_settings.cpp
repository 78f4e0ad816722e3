#include "app/profile/sort_settings.h"

namespace rowvane {

SortOptions sort_options(const profile::Settings& settings) {
  const profile::SortOptions& stored = settings.sort_options;
  const bool is_neutral = stored.collation == profile::SortCollation::kNeutral;
  return valid_sort_options({.collation = is_neutral ? SortCollation::kNeutral : SortCollation::kLanguage,
                             .ignore_punctuation = stored.ignore_punctuation,
                             .case_sensitive = stored.case_sensitive});
}

void store_sort_options(const SortOptions& options, profile::Settings& settings) {
  const bool is_neutral = options.collation == SortCollation::kNeutral;
  settings.sort_options = {
      .collation = is_neutral ? profile::SortCollation::kNeutral : profile::SortCollation::kLanguage,
      .ignore_punctuation = options.ignore_punctuation,
      .case_sensitive = options.case_sensitive};
}

}  // namespace rowvane
