#include <algorithm>
#include <type_traits>

#include <pugixml.hpp>

#include "app/profile/profile_text_settings.h"
#include "app/profile/profile_values.h"
#include "app/profile/profile_xml.h"
#include "platform/utf8.h"

namespace rowvane::profile {
namespace {

// The text of a script; longer ones are no scripts any more.
constexpr size_t kMaxContentBytes = 512 * 1024;

// Reads the attributes of one element into a group.
class AttributeReader {
 public:
  AttributeReader(const pugi::xml_node& node, std::vector<std::string>& bad) : node_(node), bad_(bad) {}

  void flag(const char* name, bool& value) { read(name, value, parse_flag); }
  template <std::integral Number>
  void number(const char* name, Number& value, NumberRange range) {
    read(name, value, [range](std::string_view text) { return parse_number(text, range); });
  }
  void text(const char* name, std::string& value) { read(name, value, parse_text); }
  template <typename Enum>
  void choice(const char* name, Enum& value) {
    read(name, value, [](std::string_view text) -> std::optional<Enum> {
      const auto& names = names_of(Enum{});
      const auto found = std::ranges::find(names, text);
      if (found == names.end()) return std::nullopt;
      return static_cast<Enum>(found - names.begin());
    });
  }
  void color(const char* name, uint32_t& value) { read(name, value, parse_color); }
  void words(const char* name, std::vector<std::string>& value) { read(name, value, parse_words); }
  void placement(const char* name, FramePlacement& value) { read(name, value, parse_placement); }
  void content(std::string& value) {
    const std::string_view text = node_.text().get();
    if (text.size() <= kMaxContentBytes && is_valid_utf8(text)) {
      value = text;
    } else {
      bad_.push_back(node_.name());
    }
  }

 private:
  template <typename Value, typename Parse>
  void read(const char* name, Value& value, Parse parse) {
    const pugi::xml_attribute attribute = node_.attribute(name);
    if (!attribute) return;
    if (auto parsed = parse(attribute.value())) {
      value = static_cast<Value>(*std::move(parsed));
    } else {
      bad_.push_back(std::string(node_.name()) + "/" + name);
    }
  }

  const pugi::xml_node& node_;
  std::vector<std::string>& bad_;
};

class ElementReader {
 public:
  ElementReader(const pugi::xml_node& root, std::vector<std::string>& bad) : root_(root), bad_(bad) {}

  template <typename Group>
  void element(const char* name, Group& group) {
    const pugi::xml_node node = root_.child(name);
    AttributeReader reader(node, bad_);
    if (node) visit_attributes(group, reader);
  }

  template <typename Group>
  void records(const char* parent, const char* name, const char* /*key*/, size_t most,
               std::vector<Group>& groups) {
    groups.clear();
    for (const pugi::xml_node& node : root_.child(parent).children(name)) {
      if (groups.size() == most) break;
      AttributeReader reader(node, bad_);
      visit_attributes(groups.emplace_back(), reader);
    }
  }

  template <typename Entry>
  void list(const char* name, size_t most, std::vector<Entry>& entries) {
    entries.clear();
    for (const pugi::xml_node& node : root_.child("RecentLists").children(name)) {
      if (entries.size() == most) break;
      const auto text = parse_text(node.attribute("Value").value());
      if (!text || !append(*text, entries)) bad_.push_back(std::string(name) + "/Value");
    }
  }

 private:
  static bool append(const std::string& text, std::vector<std::string>& entries) {
    if (!text.empty()) entries.push_back(text);
    return !text.empty();
  }
  static bool append(const std::string& text, std::vector<RecentFile>& entries) {
    RecentFile file = parse_recent_file(text);
    if (file.path.empty()) return false;
    entries.push_back(std::move(file));
    return true;
  }

  const pugi::xml_node& root_;
  std::vector<std::string>& bad_;
};

}  // namespace

std::vector<std::string> read_settings(const pugi::xml_node& root, Settings& settings) {
  std::vector<std::string> bad;
  ElementReader reader(root, bad);
  visit_elements(settings, reader);
  const std::string text_file_options(kTextFileOptions);
  read_text_file_options(root.child(text_file_options.c_str()), settings.text_file_options, bad);
  std::vector<SavedTextSetting> named;
  const pugi::xml_node parent = root.child(std::string(kNamedTextFileSettings).c_str());
  for (const pugi::xml_node& node : parent.children(text_file_options.c_str())) {
    if (named.size() == SavedTextSettings::kMaxEntries) break;
    const std::string name = node.attribute("Name").value();
    if (!SavedTextSettings::check_name(name).passes()) {
      bad.push_back(text_file_options + "/Name");
      continue;
    }
    read_text_file_options(node, named.emplace_back(SavedTextSetting{name, {}}).settings, bad);
  }
  settings.named_text_file_settings = SavedTextSettings(std::move(named));
  return bad;
}

}  // namespace rowvane::profile
