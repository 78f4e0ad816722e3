// What the states of the system's files mean to the user.
#pragma once

#include "core/error_code.h"
#include "platform/file.h"

namespace rowvane {

// The error code of a failed file operation: states with a text of their own keep it, all others become
// OTHERWISE.
inline ErrorCode file_error(platform::FileStatus status, ErrorCode otherwise) {
  switch (status) {
    case platform::FileStatus::kOk:
      return ErrorCode::kOk;
    case platform::FileStatus::kInUse:
      return ErrorCode::kFileInUse;
    case platform::FileStatus::kPathTooLong:
      return ErrorCode::kPathTooLong;
    default:
      return otherwise;
  }
}

}  // namespace rowvane
