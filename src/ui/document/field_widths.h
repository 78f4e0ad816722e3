// Columns as wide as what they show.
#pragma once

#include <QFont>

#include "core/database/database.h"

namespace rowvane {

// Gives the fields of TABLE the width that their names and values need in FONT, within limits. Looks at every
// value.
void fit_field_widths(CWorkSheet& table, const QFont& font);
// The same for all tables of a database that was just made: nothing to be saved or undone.
void fit_field_widths(Database& database, const QFont& font);

}  // namespace rowvane
