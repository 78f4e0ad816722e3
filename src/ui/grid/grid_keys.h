// Where the keys lead to in a grid.
#pragma once

#include <optional>

#include "ui/grid/grid_layout.h"
#include "ui/grid/table_model.h"

namespace rowvane {

// What Enter does (`WhenEnterPressed`); Shift turns the direction round.
enum class EnterKey { kRecordBelow = 0, kNextField = 1, kStay = 2, kEdit = 3 };

struct CellPlace {
  int row = 0;
  int place = 0;

  bool operator==(const CellPlace&) const = default;
};

// The cell that KEY leads to from FROM: arrows, Home, End, Page Up and Down; with Ctrl the edges of the data.
// Nothing for other keys.
std::optional<CellPlace> arrow_target(int key, Qt::KeyboardModifiers modifiers, CellPlace from,
                                      const GridLayout& layout, const TableModel& model);
// The next field, at the end of a record the first of the next one; STEP -1: the other way round. FROM where
// there is none.
CellPlace tab_target(CellPlace from, int step, const GridLayout& layout);
// Where Enter (with Shift: STEP -1) leads to.
CellPlace enter_target(EnterKey enter, CellPlace from, int step, const GridLayout& layout);

}  // namespace rowvane
