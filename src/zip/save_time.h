// The time that members of archives carry.
#pragma once

#include <ctime>

namespace rowvane {

// The local time of now.
inline std::tm save_time_now() {
  const std::time_t now = std::time(nullptr);
  return *std::localtime(&now);
}

}  // namespace rowvane
