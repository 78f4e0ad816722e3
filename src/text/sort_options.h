// How texts are compared when records are sorted: the options of the Sort dialog.
#pragma once

#include <array>
#include <string_view>

namespace rowvane {

enum class SortCollation { kLanguage, kNeutral };

// The names of the collations in their list, in the order of the enumeration.
inline constexpr std::array<std::string_view, 2> kSortCollationTexts = {"Current language specific sorting",
                                                                        "Neutral character/byte sorting"};

// At most one of the two boxes is checked, and with the neutral collation "Ignore punctuation" is not: the
// functions below keep it so.
struct SortOptions {
  SortCollation collation = SortCollation::kLanguage;
  bool ignore_punctuation = false;
  bool case_sensitive = false;  // no matter with the neutral collation, in which each byte counts

  bool operator==(const SortOptions&) const = default;
};

bool is_ignore_punctuation_enabled(const SortOptions& options);

// What the options are after a choice in the dialog.
void choose_collation(SortOptions& options, SortCollation collation);
void set_ignore_punctuation(SortOptions& options, bool checked);
void set_case_sensitive(SortOptions& options, bool checked);

// OPTIONS from elsewhere, such as a profile, made to keep the rules.
SortOptions valid_sort_options(SortOptions options);

}  // namespace rowvane
