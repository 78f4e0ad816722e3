// Loads a text through a pipe: the caller reads and converts, a second thread cuts it up and fills the table.
#pragma once

#include "core/messages/outcome.h"
#include "core/progress.h"
#include "core/table/table_data.h"
#include "exchange/text/text_load_plan.h"
#include "exchange/text/text_source.h"

namespace rowvane {

struct TextStreamResult : Outcome {
  TableData data;
};

// Columns whose type shows too late to have kept their texts are read from SOURCE a second time.
TextStreamResult load_text(TextSource& source, const TextLoadPlan& plan, Progress& progress);

}  // namespace rowvane
