// The records of a table that are shown, in the order in which they are shown.
#pragma once

#include <cstdint>
#include <vector>

namespace rowvane {

class CWorkSheet;

// 0-based record positions. Searching, sorting and their kin take a table and a record set and give a record
// set; they change no table.
using RecordSet = std::vector<uint32_t>;

// All records, in the order in which they were entered.
RecordSet all_records(const CWorkSheet& table);

}  // namespace rowvane
