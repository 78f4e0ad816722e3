// What an operation on a record set gives.
#pragma once

#include "core/messages/error_code.h"
#include "recordset/record_set.h"

namespace rowvane {

struct RecordSetResult {
  RecordSet records;                 // empty unless the operation was completed
  ErrorCode error = ErrorCode::kOk;  // why it failed, where it did
  bool cancelled = false;            // the progress said so
};

}  // namespace rowvane
