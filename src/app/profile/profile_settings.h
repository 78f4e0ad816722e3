// The settings of the profile as plain structures, and the walks over them.
//
// profile_settings.def lists them all. `visit_attributes` and `visit_elements` walk a structure in that order
// and call the visitor with the attribute's or element's name and the member, so that reading, writing and
// documenting are one function a kind of value, not one a setting.
#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "app/profile/recent_files.h"
#include "core/options.h"
#include "exchange/text/saved_text_settings.h"

namespace rowvane::profile {

enum class SortingType { kNone, kByName, kBySize, kByDate };
enum class SortCollation { kLanguage, kNeutral };
enum class SpellEngine { kHunspell, kWindows };

// What the values of an enumeration are called in the file, in their order.
inline constexpr std::array<std::string_view, 4> kSortingTypeNames = {"None", "ByName", "BySize", "ByDate"};
inline constexpr std::array<std::string_view, 2> kSortCollationNames = {"Language", "Neutral"};
inline constexpr std::array<std::string_view, 2> kSpellEngineNames = {"Hunspell", "Windows"};
constexpr const auto& names_of(SortingType) {
  return kSortingTypeNames;
}
constexpr const auto& names_of(SortCollation) {
  return kSortCollationNames;
}
constexpr const auto& names_of(SpellEngine) {
  return kSpellEngineNames;
}

// Where the main frame stood when it was closed. Coordinates are pixels of the screen.
struct FramePlacement {
  static constexpr int kNormal = 1;
  static constexpr int kMaximized = 3;
  static constexpr int kMinimized = 6;

  int flags = 0;
  int show_state = kNormal;
  int left = 0;
  int top = 0;
  int right = 0;  // not behind `left`: nothing was saved
  int bottom = 0;

  bool has_rectangle() const { return right > left && bottom > top; }
  // The frame is created at its default position instead of the saved rectangle, and then shown as saved.
  bool starts_at_default() const {
    return show_state == kMaximized || show_state == kMinimized || !has_rectangle();
  }
  bool operator==(const FramePlacement&) const = default;
};

struct NumberRange {
  int64_t least;
  int64_t most;
};

// clang-format off
// One structure for each group.
#define GROUP(Type) struct Type {
#define END_GROUP(Type) bool operator==(const Type&) const = default; };
#define FLAG(member, attribute, value) bool member = value;
#define NUMBER(member, attribute, value, least, most) int member = value;
#define WIDE_NUMBER(member, attribute, value, least, most) int64_t member = value;
#define TEXT(member, attribute, value) std::string member = value;
#define CHOICE(Enum, member, attribute, value) Enum member = value;
#define COLOR(member, attribute, value) uint32_t member = value;
#define WORDS(member, attribute, value) std::vector<std::string> member = value;
#define PLACEMENT(member, attribute) FramePlacement member;
#define CONTENT(member) std::string member;
#define ELEMENT(Type, member, tag)
#define RECORDS(Type, member, parent, tag, key, most)
#define LIST(Type, member, tag, most)
#include "app/profile/profile_settings.def"

// All settings of a profile; a new object holds the defaults.
struct Settings {
#define GROUP(Type)
#define END_GROUP(Type)
#define FLAG(member, attribute, value)
#define NUMBER(member, attribute, value, least, most)
#define WIDE_NUMBER(member, attribute, value, least, most)
#define TEXT(member, attribute, value)
#define CHOICE(Enum, member, attribute, value)
#define COLOR(member, attribute, value)
#define WORDS(member, attribute, value)
#define PLACEMENT(member, attribute)
#define CONTENT(member)
#define ELEMENT(Type, member, tag) Type member;
#define RECORDS(Type, member, parent, tag, key, most) std::vector<Type> member;
#define LIST(Type, member, tag, most) std::vector<Type> member;
#include "app/profile/profile_settings.def"
  TextFileSettings text_file_options;         // as the text dialogs were left
  SavedTextSettings named_text_file_settings;

  bool operator==(const Settings&) const = default;
};

template <typename Given, typename Type>
concept MaybeConst = std::same_as<std::remove_const_t<Given>, Type>;

// Calls VISITOR.flag(attribute, member), number(attribute, member, range), text, choice, color, words,
// placement(attribute, member) and content(member).
#define GROUP(Type) template <MaybeConst<Type> Group, typename Visitor> \
    void visit_attributes(Group& group, Visitor& visitor) {
#define END_GROUP(Type) }
#define FLAG(member, attribute, value) visitor.flag(attribute, group.member);
#define NUMBER(member, attribute, value, least, most) visitor.number(attribute, group.member, NumberRange{least, most});
#define WIDE_NUMBER(member, attribute, value, least, most) visitor.number(attribute, group.member, NumberRange{least, most});
#define TEXT(member, attribute, value) visitor.text(attribute, group.member);
#define CHOICE(Enum, member, attribute, value) visitor.choice(attribute, group.member);
#define COLOR(member, attribute, value) visitor.color(attribute, group.member);
#define WORDS(member, attribute, value) visitor.words(attribute, group.member);
#define PLACEMENT(member, attribute) visitor.placement(attribute, group.member);
#define CONTENT(member) visitor.content(group.member);
#define ELEMENT(Type, member, tag)
#define RECORDS(Type, member, parent, tag, key, most)
#define LIST(Type, member, tag, most)
#include "app/profile/profile_settings.def"

// Calls VISITOR.element(name, member), records(parent, element, key, most, member) and list(element, most,
// member). Text file settings are no part of the walk.
template <MaybeConst<Settings> Given, typename Visitor>
void visit_elements(Given& settings, Visitor& visitor) {
#define GROUP(Type)
#define END_GROUP(Type)
#define FLAG(member, attribute, value)
#define NUMBER(member, attribute, value, least, most)
#define WIDE_NUMBER(member, attribute, value, least, most)
#define TEXT(member, attribute, value)
#define CHOICE(Enum, member, attribute, value)
#define COLOR(member, attribute, value)
#define WORDS(member, attribute, value)
#define PLACEMENT(member, attribute)
#define CONTENT(member)
#define ELEMENT(Type, member, tag) visitor.element(tag, settings.member);
#define RECORDS(Type, member, parent, tag, key, most) visitor.records(parent, tag, key, size_t{most}, settings.member);
#define LIST(Type, member, tag, most) visitor.list(tag, size_t{most}, settings.member);
#include "app/profile/profile_settings.def"
}
// clang-format on

}  // namespace rowvane::profile
