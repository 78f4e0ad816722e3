#include "platform/command_text.h"

namespace rowvane::platform {

std::optional<std::string> command_text() {
  return std::nullopt;
}

}  // namespace rowvane::platform
