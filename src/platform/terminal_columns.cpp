#include "platform/terminal_columns.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace rowvane::platform {

std::optional<int> columns_from_environment() {
  constexpr int kMostColumns = 10000;
  const char* const value = std::getenv("COLUMNS");
  if (value == nullptr) return std::nullopt;
  const char* const end = value + std::strlen(value);
  int columns = 0;
  const auto [last, error] = std::from_chars(value, end, columns);
  if (error != std::errc() || last != end || columns < 1 || columns > kMostColumns) return std::nullopt;
  return columns;
}

}  // namespace rowvane::platform
