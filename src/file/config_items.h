// What several parts of the configuration read in the same way.
#pragma once

#include <string>

#include "core/database/unique_names.h"
#include "platform/utf8.h"
#include "zip/byte_stream.h"

namespace rowvane {

inline constexpr size_t kLeastTextBytes = 4;  // of a stored text: its length

// A text that may be shown: what is not valid UTF-8 is repaired.
inline std::string get_utf8(ItemReader& in) {
  std::string text = in.get_text();
  return is_valid_utf8(text) ? text : repair_utf8(text);
}

}  // namespace rowvane
