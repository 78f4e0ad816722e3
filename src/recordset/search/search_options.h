// What the user has chosen for searching.
#pragma once

#include "recordset/search/criterion.h"

namespace rowvane {

struct SearchOptions {
  bool empty_matches = false;  // `EmptyMatches`: a regular expression may match an empty text
  bool caseless = true;        // `Caseless`: regular expressions take no notice of letter case
  bool search_now = true;      // `SearchNow`: a filter that was set searches at once
  CriterionKind default_kind = CriterionKind::kRegEx;  // `MatchMode`: of new filters for fields of text

  bool operator==(const SearchOptions&) const = default;
};

}  // namespace rowvane
