#include "file/objects/kept_objects.h"

#include <algorithm>
#include <map>
#include <span>

#include "file/objects/arrangement_block.h"
#include "file/objects/drop_down_lists_block.h"
#include "file/objects/record_flag_types_block.h"
#include "file/objects/search_keys_block.h"

namespace rowvane {
namespace {

constexpr size_t kLeastBlockBytes = 8;

// Readers know the block by its number for ever: numbers are never used again. A kind is rewritten with the
// next version when older programs must not read it.
template <typename Objects, typename... Context>
struct ObjectKind {
  uint16_t number;
  uint16_t version;
  // Writes nothing when there is nothing to keep.
  void (*write)(const Objects& objects, ItemWriter& out);
  // Takes what was written from IN, which may fail or hold more. False when it breaks the kind's rules.
  bool (*read)(ItemReader& in, Context... context, Objects& objects);
};

constexpr ObjectKind<TableObjects, size_t> kTableKinds[] = {
    {1, 1, write_search_keys, read_search_keys},
    {2, 1, write_arrangement, read_arrangement},
};

constexpr ObjectKind<DatabaseSettings> kDatabaseKinds[] = {
    {1, 1, write_record_flag_types, read_record_flag_types},
    {2, 1, write_drop_down_lists, read_drop_down_lists},
};

std::span<const ObjectKind<TableObjects, size_t>> kinds_of(const TableObjects&) {
  return kTableKinds;
}

std::span<const ObjectKind<DatabaseSettings>> kinds_of(const DatabaseSettings&) {
  return kDatabaseKinds;
}

template <typename Objects>
std::map<uint16_t, LaterObjects> blocks_of(const Objects& objects) {
  std::map<uint16_t, LaterObjects> blocks;
  for (const auto& kind : kinds_of(objects)) {
    ItemWriter block;
    kind.write(objects, block);
    if (block.bytes().empty()) continue;
    blocks[kind.number] = {kind.number, kind.version, std::make_shared<const std::string>(block.bytes())};
  }
  return blocks;
}

template <typename Objects>
void write_blocks(const Objects& objects, const std::vector<LaterObjects>& later, ItemWriter& out) {
  std::map<uint16_t, LaterObjects> blocks = blocks_of(objects);
  for (const LaterObjects& one : later) blocks.emplace(one.kind, one);
  out.put_u32(static_cast<uint32_t>(blocks.size()));
  for (const auto& [number, block] : blocks) {
    out.put_u16(number);
    out.put_u16(block.version);
    out.put_text(*block.bytes);
  }
}

// CONTEXT is what the kinds of OBJECTS need for reading.
template <typename Objects, typename... Context>
bool read_blocks(ItemReader& in, Objects& objects, std::vector<LaterObjects>& later, Context... context) {
  const uint32_t count = in.get_count(kLeastBlockBytes);
  uint16_t last = 0;
  for (uint32_t i = 0; i < count; ++i) {
    const uint16_t number = in.get_u16();
    const uint16_t version = in.get_u16();
    std::string bytes = in.get_text();
    if (in.failed() || number <= last || version == 0) return false;
    last = number;
    const auto kinds = kinds_of(objects);
    const auto kind = std::ranges::find_if(
        kinds, [&](const auto& one) { return one.number == number && version <= one.version; });
    if (kind == kinds.end()) {
      later.push_back({number, version, std::make_shared<const std::string>(std::move(bytes))});
      continue;
    }
    ItemReader block(bytes);
    if (!kind->read(block, context..., objects) || block.failed() || !block.at_end()) return false;
  }
  return true;
}

template <typename Objects>
std::vector<LaterObjects> kinds_beside(const Objects& objects, std::vector<LaterObjects> later) {
  if (later.empty()) return later;
  const std::map<uint16_t, LaterObjects> blocks = blocks_of(objects);
  std::erase_if(later, [&blocks](const LaterObjects& one) { return blocks.contains(one.kind); });
  return later;
}

}  // namespace

void write_objects(const TableObjects& objects, const std::vector<LaterObjects>& later, ItemWriter& out) {
  write_blocks(objects, later, out);
}

void write_objects(const DatabaseSettings& objects, const std::vector<LaterObjects>& later, ItemWriter& out) {
  write_blocks(objects, later, out);
}

bool read_objects(ItemReader& in, size_t field_count, TableObjects& objects,
                  std::vector<LaterObjects>& later) {
  return read_blocks(in, objects, later, field_count);
}

bool read_objects(ItemReader& in, DatabaseSettings& objects, std::vector<LaterObjects>& later) {
  return read_blocks(in, objects, later);
}

std::vector<LaterObjects> kept_later_objects(const CWorkSheet& table) {
  const TableData& data = table.data();
  if (!data.later_objects.are_valid(data.fields, data.field_ids)) return {};
  return kinds_beside(data.objects, data.later_objects.kinds);
}

std::vector<LaterObjects> kept_later_objects(const Database& database) {
  return kinds_beside(database.settings(), database.later_objects());
}

}  // namespace rowvane
