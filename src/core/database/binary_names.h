// The names under which long texts, codes and files are kept outside the tables, in database files and beside
// exported texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/table/record_number.h"

namespace rowvane {

inline constexpr std::string_view kRichTextFileName = "text.rtf";
inline constexpr std::string_view kPlainTextFileName = "text.txt";

// Ends the name of the folder that holds them all, which begins with the database's name.
inline constexpr std::string_view kBinaryFolderEnd = ".rvb-bin/";

// The file name of a long text: kRichTextFileName when it begins with "{\rtf" or "{urtf".
std::string_view long_text_file_name(std::string_view beginning);

// "shop.rvb-bin/orders.r000000012f00003/": FIELD is 1-based.
std::string binary_folder_name(std::string_view database_name, std::string_view table_name,
                               RecordNumber record, size_t field);

}  // namespace rowvane
