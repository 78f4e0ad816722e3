// What values outside the record (long texts, code, images and files) are compared by.
#pragma once

#include <string>

#include "core/table/work_sheet.h"

namespace rowvane {

// The reference of the cell at POSITION, 0 when it is empty.
uint32_t outside_reference(const Column& column, uint32_t position);

// Reads the text of a long text or code, or the names of images and files joined by "; ", to OUT; empty for
// an empty cell. Answers why it can't be read. FIELD must be of one of these types; safe from several
// threads.
ErrorCode read_outside_text(const CWorkSheet& table, uint32_t position, size_t field, std::string& out);
// The same for a value that is in no cell.
ErrorCode read_outside_text(const CellValue& value, std::string& out);

}  // namespace rowvane
