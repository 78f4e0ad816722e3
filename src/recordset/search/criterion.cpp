#include "recordset/search/criterion.h"

#include <algorithm>
#include <charconv>

#include "core/limits.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

struct KindTexts {
  std::string_view list_entry;
  std::string_view header_prefix;
  std::string_view name;
};

// From 'b' on. The list says "Less than:" where the head says "Smaller than: ", and "IsEmpty" has no colon.
constexpr std::array<KindTexts, kListedKinds> kKinds = {{
    {"RegEx:", "RegEx: ", "Regular Expression"},
    {"Starts with:", "Starts with: ", "Starts with"},
    {"Equal:", "Equal: ", "Equal"},
    {"Not equal:", "Not equal: ", "Not equal"},
    {"Greater than:", "Greater than: ", "Greater than"},
    {"Less than:", "Smaller than: ", "Less than"},
    {"Between:", "Between: ", "Between"},
    {"And:", "And: ", ""},
    {"Or:", "Or: ", ""},
    {"IsEmpty", "Is empty: ", ""},
    {"Similar:", "Similar: ", ""},
}};

constexpr auto kListEntries = [] {
  std::array<std::string_view, kListedKinds> entries;
  for (size_t i = 0; i < kListedKinds; ++i) entries[i] = kKinds[i].list_entry;
  return entries;
}();

constexpr size_t kTooLong = kMaxBufferBytes + 1;

std::optional<int> read_flag_number(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

Criterion is_empty_criterion() {
  return {CriterionKind::kIsEmpty, " "};
}

Criterion flag_criterion(int number) {
  return {CriterionKind::kFlag, std::to_string(number)};
}

int flag_number(const Criterion& criterion) {
  return read_flag_number(criterion.text).value_or(0);
}

std::optional<CriterionKind> criterion_kind(char letter) {
  if (letter < criterion_letter(CriterionKind::kFormula) || letter > criterion_letter(CriterionKind::kFlag))
    return std::nullopt;
  return static_cast<CriterionKind>(letter);
}

std::string stored_criterion(const Criterion& criterion) {
  return std::string{criterion_letter(criterion.kind), ':'} + criterion.text;
}

std::optional<Criterion> parse_criterion(std::string_view stored) {
  stored = stored.substr(0, stored.find('\0'));
  if (stored.size() < 2 || stored[1] != ':') return std::nullopt;
  const auto kind = criterion_kind(stored[0]);
  const std::string_view text = stored.substr(2);
  if (!kind || text.size() > kMaxBufferBytes) return std::nullopt;
  if (*kind == CriterionKind::kIsEmpty) return is_empty_criterion();
  if (*kind == CriterionKind::kFlag && !read_flag_number(text)) return std::nullopt;
  return Criterion{*kind, std::string(text)};
}

TextEntry read_criterion_entry(std::string_view text) {
  TextEntry entry;
  if (text.size() > kMaxBufferBytes) entry.warning = texts::kEntryTruncated;
  entry.text = truncate_bytes(text, kMaxBufferBytes);
  return entry;
}

std::vector<std::string_view> criterion_words(std::string_view text) {
  std::vector<std::string_view> words;
  for (size_t first = text.find_first_not_of(' '); first != std::string_view::npos;
       first = text.find_first_not_of(' ', first)) {
    const size_t end = std::min(text.find(' ', first), text.size());
    words.push_back(text.substr(first, end - first));
    first = end;
  }
  return words;
}

std::span<const std::string_view, kListedKinds> criterion_list() {
  return kListEntries;
}

std::optional<size_t> criterion_list_index(CriterionKind kind) {
  if (kind == CriterionKind::kFormula || kind == CriterionKind::kFlag) return std::nullopt;
  return static_cast<size_t>(criterion_letter(kind) - criterion_letter(CriterionKind::kRegEx));
}

CriterionKind listed_kind(size_t index) {
  return static_cast<CriterionKind>(criterion_letter(CriterionKind::kRegEx) +
                                    static_cast<char>(std::min(index, kListedKinds - 1)));
}

std::string_view criterion_kind_name(CriterionKind kind) {
  const auto index = criterion_list_index(kind);
  return index ? kKinds[*index].name : std::string_view();
}

std::string criterion_text(const Criterion& criterion, std::span<const RecordFlagType> flags) {
  std::string shown;
  std::string_view text = criterion.text;
  if (criterion.kind == CriterionKind::kFlag) {
    const int number = flag_number(criterion);
    const bool known = number >= 1 && static_cast<size_t>(number) <= flags.size();
    shown = "Flag: ";
    text = known ? std::string_view(flags[static_cast<size_t>(number) - 1].name) : "Any";
  } else if (const auto index = criterion_list_index(criterion.kind)) {
    shown = kKinds[*index].header_prefix;
  }
  const bool too_long = shown.size() + text.size() >= kTooLong;
  return shown.append(too_long ? "..." : text);
}

std::string criterion_header(std::string_view field_name, const Criterion& criterion,
                             std::span<const RecordFlagType> flags) {
  return std::string(field_name) + ":   \n" + criterion_text(criterion, flags);
}

}  // namespace rowvane
