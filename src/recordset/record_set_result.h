// What an operation on a record set gives.
#pragma once

#include "core/messages/outcome.h"
#include "recordset/record_set.h"

namespace rowvane {

struct RecordSetResult : Outcome {
  RecordSet records;  // empty unless the operation was completed
};

}  // namespace rowvane
