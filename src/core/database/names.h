// The rules for the names of tables, folders and fields.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/messages/messages.h"

namespace rowvane {

inline constexpr size_t kMaxNameBytes = 8155;       // of a field name
inline constexpr size_t kMaxTableNameBytes = 200;   // of a table or folder name, which becomes a file name
inline constexpr size_t kMaxFileNameBytes = 1024;   // of an inserted file
inline constexpr size_t kShownFieldNameBytes = 64;  // lists show no more of a field name

// True when both name the same thing: letter case does not tell names apart.
bool same_name(std::string_view a, std::string_view b);

// Starts with a letter of any script, is valid UTF-8 without control characters and at most kMaxNameBytes
// long.
bool is_valid_field_name(std::string_view name);

// Not empty, valid UTF-8, at most kMaxTableNameBytes, without control characters and any of \ / : * ? " < >
// |, without a blank or point at its ends. Tables are stored as files of these names, which the common
// systems and archivers all accept.
bool is_valid_table_name(std::string_view name);

// True for names at the top level whose members would collide with the database file's own.
bool is_reserved_name(std::string_view name);

// Of an inserted file, which becomes the last part of a member's name: not empty, valid UTF-8, at most
// kMaxFileNameBytes, without control characters and any of / \ |, not "." or "..".
bool is_valid_file_name(std::string_view name);

// Of the path of an outside file, or empty: valid UTF-8 without control characters.
bool is_valid_shortcut(std::string_view path);

// NAME as an inserted file may have it: what is_valid_file_name refuses is replaced by "_".
std::string repair_file_name(std::string_view name);

// A valid field name made of a column heading: an empty one becomes "field%d" with the 1-based COLUMN, one
// that does not start with a letter gets "field_" before it; control characters become blanks.
std::string repair_field_name(std::string_view heading, size_t column);

// Makes NAMES unique by appending "_2", "_3" ... to the later ones.
void make_names_unique(std::span<std::string> names);

// NAME as it may stand for a table: what is_valid_table_name refuses is replaced by "_"; "table" where
// nothing is left.
std::string repair_table_name(std::string_view name);

}  // namespace rowvane
