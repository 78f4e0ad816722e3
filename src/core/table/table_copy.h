// Copies of tables and folders within their database.
#pragma once

#include "core/database/database.h"

namespace rowvane {

// Both add a copy to TARGET as one undo step, named as its original or, where that is taken, with a number.
// Fields, values, flags and search keys are those of the original. Formulas are copied as they stand: names
// of fields mean those of the copy, paths mean the tables that they meant before. The copies share the texts
// of their originals until one of them changes.
ErrorCode copy_table(Database& database, const CWorkSheet& table, Folder& target,
                     CWorkSheet** copy = nullptr);
// With all that is in it; TARGET may lie within SOURCE. kPathTooLong as Database::add_folder, kInvalidPath
// for the top folder; nothing is copied then.
ErrorCode copy_folder(Database& database, const Folder& source, Folder& target, Folder** copy = nullptr);

}  // namespace rowvane
