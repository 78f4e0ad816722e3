// The search keys of a table as the configuration holds them.
#pragma once

#include "core/table/table_objects.h"
#include "zip/byte_stream.h"

namespace rowvane {

void write_search_keys(const TableObjects& objects, ItemWriter& out);
bool read_search_keys(ItemReader& in, size_t field_count, TableObjects& objects);

}  // namespace rowvane
