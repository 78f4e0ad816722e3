// Where the keys lead to in a grid.
#pragma once

#include <optional>

#include "ui/grid/grid_layout.h"
#include "ui/pane/table_model.h"

namespace rowvane {

// What Enter does (`WhenEnterPressed`); Shift turns the direction round.
enum class EnterKey { kRecordBelow = 0, kNextField = 1, kStay = 2, kEdit = 3 };

struct GridPlace {
  int row = 0;
  int place = 0;

  bool operator==(const GridPlace&) const = default;
};

// The cell that KEY leads to from FROM: arrows, Home, End, Page Up and Down; with Ctrl the edges of the data.
// Nothing for other keys.
std::optional<GridPlace> arrow_target(int key, Qt::KeyboardModifiers modifiers, GridPlace from,
                                      const GridLayout& layout, const TableModel& model);
// The next field, at the end of a record the first of the next one; STEP -1: the other way round. FROM where
// there is none.
GridPlace tab_target(GridPlace from, int step, const GridLayout& layout);
// Where Enter (with Shift: STEP -1) leads to.
GridPlace enter_target(EnterKey enter, GridPlace from, int step, const GridLayout& layout);

}  // namespace rowvane
