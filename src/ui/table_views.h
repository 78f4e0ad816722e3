// The kinds of views that a table can be shown as.
#pragma once

#include "ui/pane/table_view.h"

namespace rowvane {

std::unique_ptr<TableView> make_grid(TablePane& pane);

}  // namespace rowvane
