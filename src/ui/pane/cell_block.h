// Changes of many cells at a time, each one undo step.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/table/work_sheet.h"
#include "platform/regional_settings.h"
#include "ui/pane/clipboard.h"

namespace rowvane {

// Cells of a table: those of FIELDS in the records at POSITIONS, both in the order in which they are shown.
struct CellBlock {
  std::vector<uint32_t> positions;
  std::vector<size_t> fields;

  size_t size() const { return positions.size() * fields.size(); }
};

struct CellChanges {
  size_t changed = 0;
  size_t refused = 0;                // cells that kept their value
  ErrorCode error = ErrorCode::kOk;  // why the first one was refused
};

// Adds what another step did.
void add_changes(CellChanges& sum, const CellChanges& more);

// Empties the cells.
CellChanges clear_cells(CWorkSheet& table, const CellBlock& block);

// Gives all records the values of the first one.
CellChanges fill_down(CWorkSheet& table, const CellBlock& block);

// Writes ROWS into the cells of BLOCK from its first on; a single row fills all records of the block, a
// single cell all of it. Rows and cells beyond the block are left out.
CellChanges paste_cells(CWorkSheet& table, const CellBlock& block, const ClipboardRows& rows,
                        const platform::RegionalSettings& region);

}  // namespace rowvane
