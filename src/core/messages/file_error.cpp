#include "core/messages/file_error.h"

namespace rowvane {

ErrorCode file_error(platform::FileStatus status, ErrorCode otherwise) {
  using platform::FileStatus;
  switch (status) {
    case FileStatus::kOk:
      return ErrorCode::kOk;
    case FileStatus::kInUse:
      return ErrorCode::kFileInUse;
    case FileStatus::kIsFolder:
      return ErrorCode::kFolderPath;
    case FileStatus::kPathTooLong:
      return ErrorCode::kPathTooLong;
    case FileStatus::kNotFound:
    case FileStatus::kAccessDenied:
    case FileStatus::kNoSpace:
    case FileStatus::kReadError:
    case FileStatus::kWriteError:
      break;
  }
  return otherwise;
}

}  // namespace rowvane
