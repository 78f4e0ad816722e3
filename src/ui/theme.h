// Light and dark colours.
#pragma once

#include <QColor>

namespace rowvane {

// Gives all windows of the program dark or light colours.
void set_dark_colors(bool dark);
// Whether texts on GROUND have to be light.
bool is_dark(const QColor& ground);

}  // namespace rowvane
