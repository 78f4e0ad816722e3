// The version of the program; the project's CMakeLists.txt says which it is.
#pragma once

#include <string_view>

namespace rowvane {

// Such as "1.2".
std::string_view program_version();
// Such as "Rowvane 1.2".
std::string_view program_name_and_version();

}  // namespace rowvane
