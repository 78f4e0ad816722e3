// The parts of a path. Paths are UTF-8; "/" separates folders, on Windows "\" too. Nothing here looks at the
// disk.
#pragma once

#include <string>
#include <string_view>

namespace rowvane::platform {

// What follows the last separator: "b.txt" of "a/b.txt", empty for "a/".
std::string file_name(std::string_view path);

// The file name without its extension: "b.tar" of "a/b.tar.gz". A name that starts with its only point, such
// as
// ".profile", is all stem.
std::string file_stem(std::string_view path);

// What follows the last point of the file name, without the point and with A to Z in lower case: "gz" of
// "a/b.tar.GZ". Empty when there is none.
std::string extension(std::string_view path);

// The folder that holds the file: "a" of "a/b.txt", "/" of "/b.txt", "." of "b.txt".
std::string parent_folder(std::string_view path);

// NAME inside FOLDER, with one separator between them. An empty FOLDER gives NAME.
std::string join_path(std::string_view folder, std::string_view name);

}  // namespace rowvane::platform
