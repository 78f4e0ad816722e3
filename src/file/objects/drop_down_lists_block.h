// The drop-down lists of a database as the configuration holds them.
#pragma once

#include "core/database/database.h"
#include "zip/byte_stream.h"

namespace rowvane {

void write_drop_down_lists(const DatabaseSettings& settings, ItemWriter& out);
bool read_drop_down_lists(ItemReader& in, DatabaseSettings& settings);

}  // namespace rowvane
