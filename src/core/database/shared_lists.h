// Changing what the tables of a database share: its drop-down lists and record flag types. What fields and
// records have of them follows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/database/database.h"
#include "core/messages/check.h"

namespace rowvane {

// An entry of a list as the user leaves it, and the entry that it was; nothing for a new one. Entries that no
// one was are deleted.
template <typename Entry>
struct EditedEntry {
  Entry entry;
  std::optional<size_t> former;
};
using EditedDropDownLists = std::vector<EditedEntry<DropDownList>>;
using EditedFlagTypes = std::vector<EditedEntry<RecordFlagType>>;

// What is wrong with the entries. Names must not be blank, and differ in more
// than letter case; there are at most kMaxRecordFlagTypes types (message 187).
Check check_drop_down_lists(const EditedDropDownLists& lists);
Check check_record_flag_types(const EditedFlagTypes& types);

// Both take entries that have passed the check, as one undo step. Fields go on to have the lists that they
// had by their new names, and none where theirs is deleted; records likewise have the types that they had.
ErrorCode change_drop_down_lists(Database& database, const EditedDropDownLists& lists);
ErrorCode change_record_flag_types(Database& database, const EditedFlagTypes& types);

}  // namespace rowvane
