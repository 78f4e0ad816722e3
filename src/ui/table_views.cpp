#include "ui/table_views.h"

#include "ui/grid/cellvane_view.h"

namespace rowvane {

std::unique_ptr<TableView> make_grid(TablePane& pane) {
  return std::make_unique<CCellvaneView>(pane);
}

}  // namespace rowvane
