#include "app/profile/options_change.h"

#include <algorithm>

#include "formula/passes/recalculation.h"
#include "platform/ascii.h"

namespace rowvane {
namespace {

// Walks the settings until it comes to one number.
class RangeFinder {
 public:
  explicit RangeFinder(const int& number) : number_(number) {}

  template <typename Group>
  void element(std::string_view, const Group& group) {
    profile::visit_attributes(group, *this);
  }
  template <typename... Arguments>
  void records(const Arguments&...) {}
  template <typename... Arguments>
  void list(const Arguments&...) {}

  void number(std::string_view, const int& value, profile::NumberRange range) {
    if (&value == &number_) range_ = range;
  }
  void number(std::string_view, const int64_t&, profile::NumberRange) {}
  template <typename Value>
  void flag(std::string_view, const Value&) {}
  template <typename Value>
  void text(std::string_view, const Value&) {}
  template <typename Value>
  void choice(std::string_view, const Value&) {}
  template <typename Value>
  void color(std::string_view, const Value&) {}
  template <typename Value>
  void words(std::string_view, const Value&) {}
  template <typename Value>
  void placement(std::string_view, const Value&) {}
  template <typename Value>
  void content(const Value&) {}

  profile::NumberRange range() const { return range_; }

 private:
  const int& number_;
  profile::NumberRange range_{0, 0};
};

}  // namespace

profile::NumberRange option_range(const profile::Settings& settings, const int& number) {
  RangeFinder finder(number);
  profile::visit_elements(settings, finder);
  return finder.range();
}

std::optional<std::vector<std::string>> parse_extensions(std::string_view text) {
  constexpr std::string_view kBetween = " ,;\t\r\n";
  std::vector<std::string> all;
  for (size_t i = text.find_first_not_of(kBetween); i != std::string_view::npos;
       i = text.find_first_not_of(kBetween, i)) {
    const size_t end = std::min(text.find_first_of(kBetween, i), text.size());
    std::string word(text.substr(i, end - i));
    i = end;
    if (word.starts_with('*')) word.erase(0, 1);
    if (word.starts_with('.')) word.erase(0, 1);
    const auto is_bad = [](char c) {
      return std::string_view("*?.\"/\\:<>|").find(c) != std::string_view::npos;
    };
    if (word.empty() || std::ranges::any_of(word, is_bad)) return std::nullopt;
    word = ascii::to_lower(word);
    if (std::ranges::find(all, word) == all.end()) all.push_back(std::move(word));
  }
  return all;
}

Check check_options_change(const profile::Settings& before, const profile::Settings& after) {
  Check check;
  const bool automatic = after.check_box_options.auto_update;
  if (automatic != before.check_box_options.auto_update)
    check.question = update_mode_question(automatic ? UpdateMode::kAutomatic : UpdateMode::kManual);
  if (before.general_options.max_records != after.general_options.max_records)
    check.notice = MessageId::kMaxRecordsChanged;
  return check;
}

}  // namespace rowvane
