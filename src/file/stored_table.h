// A table's member text against its configuration.
#pragma once

#include <vector>

#include "exchange/text/text_load_plan.h"
#include "file/config_dat.h"

namespace rowvane {

// How the text of a table's member is read: the columns of the configuration by their types; columns that
// somebody added to the text by hand as a text file is opened.
TextLoadPlan stored_table_plan(const StoredTable& stored, const Options& options);

// The table that LOADED, read by that plan, and the configuration make together. Columns that the text lacks
// are empty; added ones become fields. FILE_LISTS gets, for each files field by index, what the text lists of
// its values.
TableData assemble_table(const StoredTable& stored, TableData loaded,
                         std::vector<std::pair<size_t, ContentColumn>>& file_lists);

}  // namespace rowvane
