// The icons of the window, one family of drawings.
#pragma once

#include <QIcon>

namespace rowvane {

// The drawing NAME of icons/, in the colour of the texts around it, whatever colours the window has.
QIcon icon(const QString& name);

// That of the program itself, in its own colours.
QIcon program_icon();

}  // namespace rowvane
