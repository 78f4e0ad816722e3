// The record flag types of a database as the configuration holds them.
#pragma once

#include "core/database/database.h"
#include "zip/byte_stream.h"

namespace rowvane {

void write_record_flag_types(const DatabaseSettings& settings, ItemWriter& out);
bool read_record_flag_types(ItemReader& in, DatabaseSettings& settings);

}  // namespace rowvane
