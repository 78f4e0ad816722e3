#include "text/sort_options.h"

namespace rowvane {

bool is_ignore_punctuation_enabled(const SortOptions& options) {
  return options.collation == SortCollation::kLanguage;
}

void choose_collation(SortOptions& options, SortCollation collation) {
  options.collation = collation;
  if (!is_ignore_punctuation_enabled(options)) options.ignore_punctuation = false;
}

void set_ignore_punctuation(SortOptions& options, bool checked) {
  if (!is_ignore_punctuation_enabled(options)) return;
  options.ignore_punctuation = checked;
  if (checked) options.case_sensitive = false;
}

void set_case_sensitive(SortOptions& options, bool checked) {
  options.case_sensitive = checked;
  if (checked) options.ignore_punctuation = false;
}

SortOptions valid_sort_options(SortOptions options) {
  choose_collation(options, options.collation);
  set_ignore_punctuation(options, options.ignore_punctuation);
  return options;
}

}  // namespace rowvane
