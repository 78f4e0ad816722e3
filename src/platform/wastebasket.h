// The wastebasket: where users find what programs removed.
#pragma once

#include <string>

#include "platform/file.h"

namespace rowvane::platform {

// Moves the file PATH to the wastebasket. On Windows that is the Recycle Bin, on Linux the trash folder of
// the user or of the file's disk. Nothing is ever deleted: where there is no wastebasket the file stays, with
// kWriteError or what the system said.
[[nodiscard]] FileStatus move_to_wastebasket(const std::string& path);

}  // namespace rowvane::platform
