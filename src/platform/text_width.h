// How wide texts are where all characters stand in columns.
#pragma once

#include <string_view>

namespace rowvane::platform {

// Number of terminal columns that the UTF-8 TEXT takes: wide characters two, combining marks and control
// characters none.
int display_width(std::string_view text);

}  // namespace rowvane::platform
