// The names of a database file's members.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/database/binary_names.h"
#include "core/table/work_sheet.h"

namespace rowvane {

inline constexpr std::string_view kThisVersionName = "this-version.txt";
inline constexpr std::string_view kMinVersionName = "min-version.txt";
inline constexpr std::string_view kConfigName = "config.dat";

// "folder1/orders.txt"
std::string table_member_name(const CWorkSheet& table);

// The table path that a member's name stands for, or nothing when it is no table's: "folder1/orders.txt"
// gives "folder1/orders".
std::optional<std::string> table_path_of(std::string_view member_name);

// Under which name the long texts and files of each table are stored: the table's name; its path where an
// earlier one of TABLES has the same name.
std::vector<std::string> binary_table_names(const std::vector<CWorkSheet*>& tables);

// What the name of a long text's or file's member says.
struct BinaryMember {
  std::string_view table_name;
  RecordNumber record;
  size_t field;  // 1-based
  std::string_view file_name;
};
// Nothing when NAME does not follow the pattern under DATABASE_NAME. The parts point into NAME.
std::optional<BinaryMember> parse_binary_member(std::string_view database_name, std::string_view name);

}  // namespace rowvane
