// Ranks of many texts: integers that compare as the texts do.
#pragma once

#include <functional>
#include <string_view>

#include "core/progress.h"
#include "core/uninitialized_vector.h"
#include "text/text_order.h"

namespace rowvane {

struct TextRanks {
  UninitializedVector<uint32_t> ranks;  // of each text, from 0; texts equal under the order have the same
  uint32_t count = 0;                   // of different ranks
};

// Ranks the texts 0 to COUNT - 1. TEXT_AT is called from several threads; what it answers must stay. Holds a
// key of each text meanwhile: about as many bytes as the texts, or twice as many. The ranks are not complete
// when PROGRESS was cancelled.
TextRanks rank_texts(size_t count, const std::function<std::string_view(size_t)>& text_at,
                     const TextOrder& order, int threads, const Progress& progress);

}  // namespace rowvane
