#include <string>

#include <pugixml.hpp>

#include "app/profile/profile_text_settings.h"
#include "app/profile/profile_values.h"
#include "app/profile/profile_xml.h"

namespace rowvane::profile {
namespace {

void set_attribute(pugi::xml_node& node, const char* name, const std::string& value) {
  pugi::xml_attribute attribute = node.attribute(name);
  if (!attribute) attribute = node.append_attribute(name);
  attribute.set_value(value.c_str());
}

pugi::xml_node child_of(pugi::xml_node& parent, const char* name) {
  const pugi::xml_node found = parent.child(name);
  return found ? found : parent.append_child(name);
}

class AttributeWriter {
 public:
  explicit AttributeWriter(pugi::xml_node& node) : node_(node) {}

  void flag(const char* name, bool value) { set_attribute(node_, name, flag_text(value)); }
  void number(const char* name, int64_t value, NumberRange) {
    set_attribute(node_, name, number_text(value));
  }
  void text(const char* name, const std::string& value) { set_attribute(node_, name, value); }
  template <typename Enum>
  void choice(const char* name, Enum value) {
    set_attribute(node_, name, std::string(names_of(value)[static_cast<size_t>(value)]));
  }
  void color(const char* name, uint32_t value) { set_attribute(node_, name, color_text(value)); }
  void words(const char* name, const std::vector<std::string>& value) {
    set_attribute(node_, name, words_text(value));
  }
  void placement(const char* name, const FramePlacement& value) {
    set_attribute(node_, name, placement_text(value));
  }
  void content(const std::string& value) { node_.text().set(value.c_str()); }

 private:
  pugi::xml_node& node_;
};

// The elements NAME in PARENT, written anew in another order: each takes the former element with the same
// key, so that what others put there stays with the entry; those that nobody takes go away.
class ElementSequence {
 public:
  ElementSequence(pugi::xml_node& parent, const char* name, const char* key)
      : parent_(parent), name_(name), key_(key) {
    for (const pugi::xml_node& node : parent_.children(name)) former_.push_back(node);
  }
  ~ElementSequence() {
    for (const pugi::xml_node& node : former_) parent_.remove_child(node);
  }
  ElementSequence(const ElementSequence&) = delete;
  ElementSequence& operator=(const ElementSequence&) = delete;

  // Without a key the former elements are taken in their order.
  pugi::xml_node next(const std::string& key) {
    for (auto node = former_.begin(); node != former_.end(); ++node) {
      if (*key_ != '\0' && key != node->attribute(key_).value()) continue;
      const pugi::xml_node taken = parent_.append_move(*node);
      former_.erase(node);
      return taken;
    }
    return parent_.append_child(name_);
  }

 private:
  pugi::xml_node& parent_;
  const char* name_;
  const char* key_;
  std::vector<pugi::xml_node> former_;
};

std::string key_of(const Script& script) {
  return script.name;
}
std::string key_of(const CellOperation&) {
  return {};
}
const std::string& entry_text(const std::string& entry) {
  return entry;
}
std::string entry_text(const RecentFile& entry) {
  return recent_file_text(entry);
}

class ElementWriter {
 public:
  explicit ElementWriter(pugi::xml_node& root) : root_(root) {}

  template <typename Group>
  void element(const char* name, const Group& group) {
    pugi::xml_node node = child_of(root_, name);
    write(group, node);
  }

  template <typename Group>
  void records(const char* parent_name, const char* name, const char* key, size_t /*most*/,
               const std::vector<Group>& groups) {
    pugi::xml_node parent = child_of(root_, parent_name);
    ElementSequence sequence(parent, name, key);
    for (const Group& group : groups) {
      pugi::xml_node node = sequence.next(key_of(group));
      write(group, node);
    }
  }

  template <typename Entry>
  void list(const char* name, size_t /*most*/, const std::vector<Entry>& entries) {
    pugi::xml_node parent = child_of(root_, "RecentLists");
    ElementSequence sequence(parent, name, "Value");
    for (const Entry& entry : entries) {
      const std::string text = entry_text(entry);
      pugi::xml_node node = sequence.next(text);
      set_attribute(node, "Value", text);
    }
  }

 private:
  template <typename Group>
  static void write(const Group& group, pugi::xml_node& node) {
    AttributeWriter writer(node);
    visit_attributes(group, writer);
  }

  pugi::xml_node& root_;
};

}  // namespace

void write_settings(const Settings& settings, pugi::xml_node& root) {
  ElementWriter writer(root);
  visit_elements(settings, writer);
  const std::string text_file_options(kTextFileOptions);
  pugi::xml_node last_used = child_of(root, text_file_options.c_str());
  write_text_file_options(settings.text_file_options, last_used);
  pugi::xml_node parent = child_of(root, std::string(kNamedTextFileSettings).c_str());
  ElementSequence sequence(parent, text_file_options.c_str(), "Name");
  for (const SavedTextSetting& entry : settings.named_text_file_settings.entries()) {
    pugi::xml_node node = sequence.next(entry.name);
    set_attribute(node, "Name", entry.name);
    write_text_file_options(entry.settings, node);
  }
}

}  // namespace rowvane::profile
