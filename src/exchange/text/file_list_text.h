// How the tables of database files list the objects of a files field: one line for each, line feeds between
// them.
//
//   NAME            an inserted file
//   |PATH           a shortcut whose name is the last part of its path
//   |NAME|PATH      a shortcut with another name, or one whose path holds a "|"
#pragma once

#include <string>
#include <string_view>

#include "core/table/content.h"

namespace rowvane {

void append_file_list(const FileList& files, std::string& out);

// The object that LINE stands for, without content. Its name and shortcut may break the rules.
FileObject parse_file_line(std::string_view line);

}  // namespace rowvane
