#include "recordset/search/current_criteria.h"

#include <algorithm>

namespace rowvane {

void CurrentCriteria::set(const CWorkSheet& table, size_t field, Criterion criterion) {
  tables_[&table].insert_or_assign(table.field_id(field), std::move(criterion));
}

void CurrentCriteria::clear(const CWorkSheet& table, size_t field) {
  const auto of_table = tables_.find(&table);
  if (of_table != tables_.end()) of_table->second.erase(table.field_id(field));
}

std::optional<Criterion> CurrentCriteria::criterion(const CWorkSheet& table, size_t field) const {
  const auto of_table = tables_.find(&table);
  if (of_table == tables_.end()) return std::nullopt;
  const auto found = of_table->second.find(table.field_id(field));
  if (found == of_table->second.end()) return std::nullopt;
  return found->second;
}

std::vector<FieldCriterion> CurrentCriteria::criteria(const CWorkSheet& table) const {
  std::vector<FieldCriterion> all;
  for (size_t field = 0; field < table.field_count(); ++field) {
    if (auto found = criterion(table, field)) all.push_back({field, std::move(*found)});
  }
  return all;
}

// Forgets what belonged to tables and fields that are gone.
void CurrentCriteria::database_changed(const CWorkSheet*) {
  if (tables_.empty()) return;
  const std::vector<CWorkSheet*> present = database_.tables();
  std::erase_if(tables_, [&](const auto& entry) {
    return std::find(present.begin(), present.end(), entry.first) == present.end();
  });
  for (auto& [table, by_field] : tables_) {
    std::erase_if(by_field,
                  [owner = table](const auto& entry) { return !owner->find_field_with_id(entry.first); });
  }
}

}  // namespace rowvane
