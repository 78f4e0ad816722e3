// Groups of records that are equal in some fields.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "core/uninitialized_vector.h"
#include "recordset/sort/sort.h"

namespace rowvane {

// The records of a scope, sorted by the compared fields and cut into runs of equal ones. Within a group they
// stand in the order of the scope.
class RecordGroups {
 public:
  // Cuts SCOPE by the order of RecordOrder over FIELDS, ascending. SCOPE must stay. The fields have passed
  // check_compared_fields.
  RecordGroups(const CWorkSheet& table, std::span<const uint32_t> scope, std::span<const size_t> fields,
               const SortOptions& sort_options, const Options& options, Progress& progress);

  // Nothing is grouped unless it was done.
  const Outcome& outcome() const { return outcome_; }

  size_t size() const { return starts_.empty() ? 0 : starts_.size() - 1; }
  // The members of a group, as indices of the scope, ascending.
  std::span<const uint32_t> group(size_t number) const {
    return std::span(order_).subspan(starts_[number], starts_[number + 1] - starts_[number]);
  }
  std::span<const uint32_t> scope() const { return scope_; }

 private:
  std::span<const uint32_t> scope_;
  std::vector<uint32_t> order_;
  std::vector<uint32_t> starts_;  // of the groups in `order_`, and its end
  Outcome outcome_;
};

// Members of a group that stand side by side in it: from the `first` up to the one before `end`.
struct GroupPart {
  size_t first = 0;
  size_t end = 0;
};

struct ChosenRecords {
  RecordSet records;
  std::vector<uint32_t> group_sizes;  // of each record's group
};

// The records that CHOOSE takes of each group, given its size: in the order of the groups where SORTED,
// otherwise in that of the scope.
ChosenRecords choose_records(const RecordGroups& groups, const std::function<GroupPart(size_t)>& choose,
                             bool sorted);

}  // namespace rowvane
