// The icons of the window, one family of drawings.
#pragma once

#include <QColor>
#include <QIcon>

namespace rowvane {

// The drawing NAME of icons/, in the colour of the texts around it, whatever colours the window has.
QIcon icon(const QString& name);
// The same always in COLOR.
QIcon icon(const QString& name, const QColor& color);

// That of the program itself, in its own colours.
QIcon program_icon();

}  // namespace rowvane
