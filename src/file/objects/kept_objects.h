// The objects kept with tables and with the database, as the configuration holds them: a list of blocks, one
// for each kind of which there is something, with the kind's number and its length before it. So a version
// finds what it knows, and keeps what it doesn't. The kinds stand in one table for each list, in
// kept_objects.cpp.
#pragma once

#include <vector>

#include "core/database/database.h"
#include "zip/byte_stream.h"

namespace rowvane {

// LATER is written beside OBJECTS, but for kinds of which there are OBJECTS.
void write_objects(const TableObjects& objects, const std::vector<LaterObjects>& later, ItemWriter& out);
void write_objects(const DatabaseSettings& objects, const std::vector<LaterObjects>& later, ItemWriter& out);

// False for what write_objects does not write: kinds twice or out of order, blocks that are too long or too
// short, and what breaks a kind's own rules. LATER gets the kinds, and versions of kinds, that are not known.
bool read_objects(ItemReader& in, size_t field_count, TableObjects& objects,
                  std::vector<LaterObjects>& later);
bool read_objects(ItemReader& in, DatabaseSettings& objects, std::vector<LaterObjects>& later);

// What a file can keep of the objects that later versions gave TABLE or DATABASE: none when the table has
// other fields by now, and none of a kind of which there are objects that this version knows.
std::vector<LaterObjects> kept_later_objects(const CWorkSheet& table);
std::vector<LaterObjects> kept_later_objects(const Database& database);

}  // namespace rowvane
