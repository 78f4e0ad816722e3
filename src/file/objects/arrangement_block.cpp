#include "file/objects/arrangement_block.h"

#include "core/limits.h"

namespace rowvane {

void write_arrangement(const TableObjects& objects, ItemWriter& out) {
  const GridArrangement& arrangement = objects.arrangement;
  if (arrangement == GridArrangement()) return;
  out.put_u16(static_cast<uint16_t>(arrangement.lines));
  out.put_u16(arrangement.frozen_fields);
  out.put_u32(arrangement.frozen_records);
}

bool read_arrangement(ItemReader& in, size_t, TableObjects& objects) {
  GridArrangement& arrangement = objects.arrangement;
  arrangement.lines = in.get_u16();
  arrangement.frozen_fields = in.get_u16();
  arrangement.frozen_records = in.get_u32();
  return arrangement.lines >= 1 && arrangement.lines <= kMaxRecordLines;
}

}  // namespace rowvane
