// What screen readers learn of a grid: a table of cells with the heads of its fields and records.
#pragma once

namespace rowvane {

// Makes CCellvaneView known to Qt's accessibility; more than once does no harm.
void install_grid_accessibility();

}  // namespace rowvane
