// Columns: the values of one field for all records of a table, by 0-based record position.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "core/table/cell_value.h"
#include "core/table/text_pool.h"
#include "core/uninitialized_vector.h"
#include "core/values/number_cell.h"

namespace rowvane {

// Numbers, empty cells and formula errors, 8 bytes each (number_cell.h).
struct NumberColumn {
  using Cells = UninitializedVector<double>;
  Cells cells;
};

// A code into the pool for each record. Copies of the column share the pool: it only grows, so all codes stay
// valid.
struct TextColumn {
  using Cells = UninitializedVector<TextPool::Code>;
  Cells cells;
  std::shared_ptr<TextPool> pool = std::make_shared<TextPool>();
  bool interning = true;  // false once the texts are known not to repeat
  size_t dropped = 0;     // cells that gave up a text since the pool was clean

  std::string_view text(size_t position) const { return pool->text(cells[position]); }
  // A code for TEXT, added where it is new.
  TextPool::Code code_for(std::string_view text);
};

// A reference for each record; 0 is empty, n the value n - 1 of the list. Values that no record refers to any
// more stay until `compact`.
template <typename Value>
struct ReferenceColumn {
  using Cells = UninitializedVector<uint32_t>;
  Cells cells;
  std::vector<Value> values;

  const Value* value(size_t position) const {
    return cells[position] == 0 ? nullptr : &values[cells[position] - 1];
  }
  uint32_t add(Value value) {
    values.push_back(std::move(value));
    return static_cast<uint32_t>(values.size());
  }
  // Drops the values that no record refers to.
  void compact();
};

using ContentColumn = ReferenceColumn<Content>;
using FilesColumn = ReferenceColumn<FileList>;

using Column = std::variant<NumberColumn, TextColumn, ContentColumn, FilesColumn>;

size_t column_size(const Column& column);
// Adds empty cells at the end, or drops cells there.
void resize_column(Column& column, size_t size);
// Inserts COUNT empty cells before POSITION.
void insert_cells(Column& column, size_t position, size_t count);
// Removes the cells at POSITIONS, which ascend.
void erase_cells(Column& column, std::span<const uint32_t> positions);

CellValue cell_value(const Column& column, size_t position);
// Stores VALUE, which must be empty or of the column's kind.
void store_value(Column& column, size_t position, const CellValue& value);
// True when VALUE is empty or of the column's kind.
bool fits_column(const Column& column, const CellValue& value);

// A column of the same kind with the cells at POSITIONS, in that order; pools and values are shared or
// copied.
Column select_cells(const Column& column, std::span<const uint32_t> positions);
// Writes CELLS, made by select_cells, over the cells at POSITIONS.
void assign_cells(Column& column, std::span<const uint32_t> positions, const Column& cells);
// The inverse of erase_cells: puts CELLS, made by select_cells, back at POSITIONS, which ascend.
void restore_cells(Column& column, std::span<const uint32_t> positions, const Column& cells);

// Drops texts and values that no record uses any more, when they are many.
void clean_pool(Column& column);

uint64_t memory_bytes(const Column& column);

}  // namespace rowvane
