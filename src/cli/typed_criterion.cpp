#include "cli/typed_criterion.h"

#include "cli/report.h"
#include "core/messages/messages.h"

namespace rowvane::cli {
namespace {

constexpr size_t kShownBytes = 100;  // of a text that is refused

// Takes "KIND:TEXT" apart; the text may be left out for records without a value. Nothing when it is no
// criterion.
std::optional<Criterion> read_criterion(std::string_view typed) {
  if (typed == "k") return is_empty_criterion();
  if (typed.size() < 2 || typed[1] != ':') return std::nullopt;
  TextEntry entry = read_criterion_entry(typed.substr(2));
  if (!entry.warning.empty()) warn(entry.warning);
  return parse_criterion(std::string(typed.substr(0, 2)) + entry.text);
}

// The field that TYPED begins with, the one with the longest name where several fit: names may hold colons.
// Nothing when there is none. CRITERION is what follows it.
std::optional<size_t> find_typed_field(const CWorkSheet& table, std::string_view typed,
                                       std::string_view& criterion) {
  for (size_t colon = typed.rfind(':'); colon != std::string_view::npos && colon > 0;
       colon = typed.rfind(':', colon - 1)) {
    criterion = typed.substr(colon + 1);
    const bool has_kind =
        !criterion.empty() && criterion_kind(criterion[0]) && (criterion.size() == 1 || criterion[1] == ':');
    if (!has_kind) continue;
    if (const auto field = table.find_field(typed.substr(0, colon))) return field;
  }
  return std::nullopt;
}

}  // namespace

int read_field_criterion(const CWorkSheet& table, const std::string& typed, FieldCriterion& criterion) {
  const std::string shown = "\"" + typed.substr(0, kShownBytes) + "\"";
  std::string_view rest;
  const auto field = find_typed_field(table, typed, rest);
  if (!field) return fail_usage(shown + " is no FIELD:KIND:TEXT with a field of " + table.path());
  const auto read = read_criterion(rest);
  if (!read) return fail_usage(shown + " has no text that its kind takes");
  criterion = {*field, *read};
  return kDone;
}

}  // namespace rowvane::cli
