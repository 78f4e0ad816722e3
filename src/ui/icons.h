// The icons of the commands: one family of line drawings, in the colour of the texts.
#pragma once

#include <QIcon>
#include <QString>

namespace rowvane {

// The drawing NAME of src/ui/icons, for every size and scale of the screen.
QIcon icon(const QString& name);

}  // namespace rowvane
