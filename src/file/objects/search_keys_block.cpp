#include "file/objects/search_keys_block.h"

#include "file/config_items.h"

namespace rowvane {
namespace {

constexpr size_t kLeastSearchKeyBytes = 8;
constexpr size_t kLeastSearchExpressionBytes = 6;

}  // namespace

void write_search_keys(const TableObjects& objects, ItemWriter& out) {
  if (objects.search_keys.empty()) return;
  out.put_u32(static_cast<uint32_t>(objects.search_keys.size()));
  for (const SearchKey& key : objects.search_keys) {
    out.put_text(key.name);
    out.put_u32(static_cast<uint32_t>(key.expressions.size()));
    for (const SearchExpression& expression : key.expressions) {
      out.put_u16(expression.field);
      out.put_text(expression.criterion);
    }
  }
}

bool read_search_keys(ItemReader& in, size_t field_count, TableObjects& objects) {
  const uint32_t count = in.get_count(kLeastSearchKeyBytes);
  for (uint32_t i = 0; i < count && !in.failed(); ++i) {
    SearchKey& key = objects.search_keys.emplace_back(SearchKey{in.get_text(), {}});
    const uint32_t expressions = in.get_count(kLeastSearchExpressionBytes);
    for (uint32_t k = 0; k < expressions && !in.failed(); ++k) {
      const uint16_t field = in.get_u16();
      key.expressions.push_back({field, in.get_text()});
    }
    if (!is_valid_search_key_name(key.name) || !are_valid_expressions(key.expressions, field_count))
      return false;
  }
  return has_unique_names(objects.search_keys);
}

}  // namespace rowvane
