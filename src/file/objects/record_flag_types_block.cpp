#include "file/objects/record_flag_types_block.h"

#include "file/config_items.h"

namespace rowvane {

void write_record_flag_types(const DatabaseSettings& settings, ItemWriter& out) {
  if (settings.record_flag_types.empty()) return;
  out.put_u32(static_cast<uint32_t>(settings.record_flag_types.size()));
  for (const RecordFlagType& type : settings.record_flag_types) {
    out.put_text(type.name);
    out.put_u32(type.color);
  }
}

bool read_record_flag_types(ItemReader& in, DatabaseSettings& settings) {
  constexpr size_t kColorBytes = 4;
  const uint32_t types = in.get_count(kLeastTextBytes + kColorBytes);
  for (uint32_t i = 0; i < types && !in.failed(); ++i) {
    std::string name = get_utf8(in);
    settings.record_flag_types.push_back({std::move(name), in.get_u32()});
  }
  return true;
}

}  // namespace rowvane
