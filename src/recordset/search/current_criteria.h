// The criteria that the tables of an open database are filtered by.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "core/database/database.h"
#include "recordset/search/search.h"

namespace rowvane {

// At most one criterion for each field. A criterion stays with its field when that is renamed or moved, and
// goes when it is deleted, even if the deletion is undone. Setting criteria is no change of the database. On
// the thread that changes the database.
class CurrentCriteria final : private DatabaseObserver {
 public:
  // DATABASE is borrowed.
  explicit CurrentCriteria(Database& database) : database_(database) { database_.add_observer(this); }
  ~CurrentCriteria() override { database_.remove_observer(this); }
  CurrentCriteria(const CurrentCriteria&) = delete;
  CurrentCriteria& operator=(const CurrentCriteria&) = delete;

  // TABLE belongs to the database and has the field.
  void set(const CWorkSheet& table, size_t field, Criterion criterion);
  // Takes the criterion of a field away.
  void clear(const CWorkSheet& table, size_t field);
  // "Show All Records": takes all criteria of TABLE away.
  void clear(const CWorkSheet& table) { tables_.erase(&table); }

  std::optional<Criterion> criterion(const CWorkSheet& table, size_t field) const;
  // All criteria of TABLE in the order of its fields.
  std::vector<FieldCriterion> criteria(const CWorkSheet& table) const;

 private:
  void database_changed(const CWorkSheet* table) override;

  using ByField = std::map<FieldId, Criterion>;

  Database& database_;
  std::map<const CWorkSheet*, ByField> tables_;
};

}  // namespace rowvane
