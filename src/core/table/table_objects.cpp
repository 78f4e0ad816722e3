#include "core/table/table_objects.h"

#include <algorithm>
#include <utility>

namespace rowvane {

void TableObjects::insert_field(size_t index) {
  insert_field_into(search_keys, index);
}

void TableObjects::erase_field(size_t index) {
  erase_field_from(search_keys, index);
}

void TableObjects::move_field(size_t from, size_t to) {
  move_field_within(search_keys, from, to);
}

void LaterTableObjects::set_fields(const std::vector<Field>& fields, std::vector<FieldId> ids) {
  types_.clear();
  for (const Field& field : fields) types_.push_back(field.type);
  ids_ = std::move(ids);
}

bool LaterTableObjects::are_valid(const std::vector<Field>& fields, const std::vector<FieldId>& ids) const {
  return ids == ids_ && std::ranges::equal(fields, types_, {}, &Field::type);
}

}  // namespace rowvane
