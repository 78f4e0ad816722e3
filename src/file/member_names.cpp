#include "file/member_names.h"

#include <algorithm>
#include <charconv>
#include <unordered_set>

#include "core/database/names.h"
#include "core/limits.h"
#include "platform/characters.h"

namespace rowvane {
namespace {

constexpr std::string_view kTableExtension = ".txt";
constexpr size_t kRecordDigits = 9;
constexpr size_t kFieldDigits = 5;
constexpr size_t kPlaceLength = 2 + kRecordDigits + 1 + kFieldDigits;  // ".r000000012f00003"

std::optional<uint32_t> parse_digits(std::string_view digits) {
  uint32_t number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (result.ec != std::errc() || result.ptr != digits.data() + digits.size()) return std::nullopt;
  return number;
}

}  // namespace

std::string table_member_name(const CWorkSheet& table) {
  return table.path() + std::string(kTableExtension);
}

std::optional<std::string> table_path_of(std::string_view member_name) {
  if (!member_name.ends_with(kTableExtension)) return std::nullopt;
  const std::string_view path = member_name.substr(0, member_name.size() - kTableExtension.size());
  if (static_cast<size_t>(std::count(path.begin(), path.end(), '/')) > kMaxFolderDepth) return std::nullopt;
  for (std::string_view rest = path;;) {
    const size_t slash = rest.find('/');
    const std::string_view name = rest.substr(0, slash);
    if (!is_valid_table_name(name) || is_reserved_name(name)) return std::nullopt;
    if (slash == std::string_view::npos) return std::string(path);
    rest.remove_prefix(slash + 1);
  }
}

std::vector<std::string> binary_table_names(const std::vector<CWorkSheet*>& tables) {
  std::vector<std::string> names;
  std::unordered_set<std::string> taken;
  for (const CWorkSheet* table : tables) {
    const bool is_new = taken.insert(platform::fold_case(table->name())).second;
    names.push_back(is_new ? table->name() : table->path());
  }
  return names;
}

std::optional<BinaryMember> parse_binary_member(std::string_view database_name, std::string_view name) {
  if (!name.starts_with(database_name) || !name.substr(database_name.size()).starts_with(kBinaryFolderEnd)) {
    return std::nullopt;
  }
  const std::string_view inner = name.substr(database_name.size() + kBinaryFolderEnd.size());
  const size_t slash = inner.rfind('/');
  if (slash == std::string_view::npos || slash <= kPlaceLength || slash + 1 == inner.size())
    return std::nullopt;
  const std::string_view place = inner.substr(slash - kPlaceLength, kPlaceLength);
  const auto record = parse_digits(place.substr(2, kRecordDigits));
  const auto field = parse_digits(place.substr(3 + kRecordDigits));
  if (!place.starts_with(".r") || place[2 + kRecordDigits] != 'f' || !record || !field) return std::nullopt;
  if (*record == 0 || *field == 0) return std::nullopt;
  return BinaryMember{inner.substr(0, slash - kPlaceLength), RecordNumber(*record), *field,
                      inner.substr(slash + 1)};
}

}  // namespace rowvane
