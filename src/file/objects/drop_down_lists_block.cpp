#include "file/objects/drop_down_lists_block.h"

#include "file/config_items.h"

namespace rowvane {

void write_drop_down_lists(const DatabaseSettings& settings, ItemWriter& out) {
  if (settings.drop_down_lists.empty()) return;
  out.put_u32(static_cast<uint32_t>(settings.drop_down_lists.size()));
  for (const DropDownList& list : settings.drop_down_lists) {
    out.put_text(list.name);
    out.put_u32(static_cast<uint32_t>(list.items.size()));
    for (const std::string& item : list.items) out.put_text(item);
  }
}

bool read_drop_down_lists(ItemReader& in, DatabaseSettings& settings) {
  constexpr size_t kCountBytes = 4;
  const uint32_t lists = in.get_count(kLeastTextBytes + kCountBytes);
  for (uint32_t i = 0; i < lists && !in.failed(); ++i) {
    DropDownList& list = settings.drop_down_lists.emplace_back(DropDownList{get_utf8(in), {}});
    const uint32_t items = in.get_count(kLeastTextBytes);
    for (uint32_t k = 0; k < items && !in.failed(); ++k) list.items.push_back(get_utf8(in));
  }
  return true;
}

}  // namespace rowvane
