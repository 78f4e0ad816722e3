// What the states of the system's files mean to the user.
#pragma once

#include "core/messages/error_code.h"
#include "platform/file.h"

namespace rowvane {

// The error code of a failed file operation: states with a text of their own keep it, all others become
// OTHERWISE (kFileCreate, kFileRead, kFileWrite ...).
ErrorCode file_error(platform::FileStatus status, ErrorCode otherwise);

}  // namespace rowvane
