#include "platform/temporary_names.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <system_error>

#include "platform/paths.h"
#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

constexpr std::string_view kMark = ".rvtmp-";
constexpr size_t kLongestStem =
    200;  // leaves room for the mark and the numbers within the 255 bytes of a name

// TARGET's own name as far as it goes into the temporary's, with the mark behind it.
std::string marked_name(const std::string& target) {
  return std::string(truncate_bytes(file_name(target), kLongestStem)).append(kMark);
}

}  // namespace

std::string temporary_name(const std::string& target, uint32_t process) {
  static std::atomic<unsigned> counter = 0;
  const std::string numbers = std::to_string(process) + "-" + std::to_string(++counter);
  return join_path(parent_folder(target), marked_name(target) + numbers);
}

std::optional<uint32_t> owner_of_temporary(std::string_view name, const std::string& target) {
  const std::string marked = marked_name(target);
  if (!name.starts_with(marked)) return std::nullopt;
  const char* const end = name.data() + name.size();
  uint32_t owner = 0;
  const auto [dash, error] = std::from_chars(name.data() + marked.size(), end, owner);
  if (error != std::errc() || owner == 0 || dash == end || *dash != '-') return std::nullopt;
  unsigned long number = 0;
  const auto [last, number_error] = std::from_chars(dash + 1, end, number);
  if (number_error != std::errc() || last != end) return std::nullopt;
  return owner;
}

}  // namespace rowvane::platform
