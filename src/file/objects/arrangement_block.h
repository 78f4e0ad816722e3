// How the grid shows a table, as the configuration holds it.
#pragma once

#include "core/table/table_objects.h"
#include "zip/byte_stream.h"

namespace rowvane {

void write_arrangement(const TableObjects& objects, ItemWriter& out);
bool read_arrangement(ItemReader& in, size_t field_count, TableObjects& objects);

}  // namespace rowvane
