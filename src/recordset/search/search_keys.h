// The commands for search keys: named, saved search expressions of a table (core/table/search_key.h).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/check.h"
#include "core/table/work_sheet.h"

namespace rowvane {

namespace texts {
inline constexpr std::string_view kAddSearchKeyTitle = "Add New Search Key";
inline constexpr std::string_view kRenameSearchKeyTitle = "Rename Search Key";
inline constexpr std::string_view kSearchKeyExists =
    "A key with that name already exists. Please enter a unique key name.";
inline constexpr std::string_view kIncorrectSearchKey = "Incorrect search key selection.";
inline constexpr std::string_view kSearchKeyNeedsName = "Please enter a key name.";
}  // namespace texts

// The key that a window works with. It goes by its name, so that undoing and redoing keep it right.
struct CurrentSearchKey {
  std::string name;       // empty: none
  bool updating = false;  // its expressions are being edited and wait to be stored

  // Its place among the table's keys; nothing when there is none of its name.
  std::optional<size_t> find(const CWorkSheet& table) const;
};

// Indices of the keys in the order in which lists show them: by name in the order of the user's language
// where SORTED (`SortSearchKeys`), otherwise as they were added.
std::vector<size_t> listed_search_keys(const CWorkSheet& table, bool sorted);

// What the name dialog answers to NAME. OWN: the key being renamed;
// nothing for a new one.
Check check_search_key_name(const CWorkSheet& table, std::string_view name, std::optional<size_t> own = {});

// texts::kIncorrectSearchKey for a key that no search of TABLE can be made of: one that is not there, or
// without any expression (all its fields were deleted).
Check check_search_key(const CWorkSheet& table, std::optional<size_t> key);

// The functions below need a passed check of their name or key; each is one undo step.

// Adds a key of the current EXPRESSIONS of all fields, which becomes the current one.
ErrorCode add_search_key(CWorkSheet& table, SearchKey key, CurrentSearchKey& current);
ErrorCode rename_search_key(CWorkSheet& table, std::string name, CurrentSearchKey& current);
// No key is current afterwards.
ErrorCode delete_search_key(CWorkSheet& table, CurrentSearchKey& current);

// Makes KEY the current one and answers its expressions, to be searched with. An update that was not finished
// is given up.
std::vector<SearchExpression> choose_search_key(const CWorkSheet& table, size_t key,
                                                CurrentSearchKey& current);

// Starts updating the current key, or, where it is being updated, finishes: EXPRESSIONS, those of all fields
// as they stand now, become the key's. An update of a key that was deleted meanwhile answers
// kInvalidCacheIndex and ends.
ErrorCode start_or_finish_update(CWorkSheet& table, std::vector<SearchExpression> expressions,
                                 CurrentSearchKey& current);

}  // namespace rowvane
