// Light and dark colours.
#pragma once

namespace rowvane {

// Gives all windows of the program dark or light colours.
void set_dark_colors(bool dark);

}  // namespace rowvane
