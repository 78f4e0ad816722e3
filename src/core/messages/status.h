// How an import or an export ended.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "core/messages/error_code.h"
#include "core/messages/messages.h"

namespace rowvane {

// One byte; shown as "status 21" or "status 'r'".
// clang-format off
enum class [[nodiscard]] Status : uint8_t {
  kOk = 0,
  kFailed = 21,      // a file that can't be opened or written, a table that can't be made: nothing was done
  kCancelled = 'r',
};
// clang-format on

// Something the user should know about work that was done all the same.
using Notice = std::variant<MessageId, ErrorCode>;

inline std::string notice_text(const Notice& notice) {
  const auto* id = std::get_if<MessageId>(&notice);
  return id != nullptr ? message(*id) : std::string(error_text(std::get<ErrorCode>(notice)));
}

}  // namespace rowvane
