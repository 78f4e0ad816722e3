#include "formula/language/table_names.h"

#include "core/database/database.h"
#include "core/database/names.h"

namespace rowvane {

const CWorkSheet* find_named_table(const CWorkSheet* own, std::string_view path) {
  if (own == nullptr) return nullptr;
  if (own->database() != nullptr) return own->database()->find_table(path);
  return same_name(own->name(), path) ? own : nullptr;
}

}  // namespace rowvane
