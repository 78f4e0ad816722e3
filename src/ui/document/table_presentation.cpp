#include "ui/document/table_presentation.h"

#include "recordset/search/search.h"
#include "recordset/sort/sort.h"

namespace rowvane {

SortCodes& TablePresentation::sort_codes() {
  sort_codes_.resize(table_.field_count());
  return sort_codes_;
}

std::string TablePresentation::sort_text() const {
  std::string text;
  for (const SortKey& key : keys_of_sort_codes(sort_codes_)) {
    if (key.field >= table_.field_count()) continue;
    if (!text.empty()) text += ", ";
    text += table_.field(key.field).name;
    if (key.descending) text += " (descending)";
  }
  return text;
}

ShownRecords TablePresentation::work_out(Progress& progress) const {
  ShownRecords shown;
  const std::vector<FieldCriterion> criteria = document_.criteria().criteria(table_);
  if (!criteria.empty()) {
    Search settings;
    settings.criteria = criteria;
    settings.options = document_.search_options();
    settings.threads = document_.options().used_processor_cores;
    SearchResult found = search(table_, settings, document_.formula_settings(), progress);
    shown.outcome() = found.outcome();
    shown.records = std::move(found.records);
  }
  const SortKeys keys = keys_of_sort_codes(sort_codes_);
  if (keys.empty() || !shown.is_done()) return shown;
  if (!shown.records) shown.records = all_records(table_);
  RecordSetResult sorted =
      sort_records(table_, *shown.records, keys, sort_options_, document_.options(), progress);
  shown.cancelled = sorted.cancelled;
  shown.failure = sorted.failure;
  shown.records = std::move(sorted.records);
  return shown;
}

}  // namespace rowvane
