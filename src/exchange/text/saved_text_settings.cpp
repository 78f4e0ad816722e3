#include "exchange/text/saved_text_settings.h"

#include <algorithm>
#include <utility>

#include "platform/utf8.h"

namespace rowvane {

SavedTextSettings::SavedTextSettings(std::vector<SavedTextSetting> entries) : entries_(std::move(entries)) {
  if (entries_.size() > kMaxEntries) entries_.resize(kMaxEntries);
}

std::string SavedTextSettings::proposed_name() const {
  return "Settings " + std::to_string(entries_.size() + 1) + ".";
}

Check SavedTextSettings::check_name(std::string_view name) {
  if (name.find_first_not_of(' ') == std::string_view::npos) return "Please enter a name for the settings.";
  // A tab would end the name in the menu.
  const auto is_control = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
  if (!is_valid_utf8(name) || std::ranges::any_of(name, is_control)) {
    return "The name contains characters that can't be used. Please enter another name.";
  }
  return {};
}

void SavedTextSettings::add(std::string name, const TextFileSettings& settings) {
  if (entries_.size() == kMaxEntries) entries_.pop_back();
  entries_.insert(entries_.begin(), SavedTextSetting{std::move(name), settings});
}

bool SavedTextSettings::overwrite(size_t index, const TextFileSettings& settings) {
  if (index >= entries_.size()) return false;
  entries_[index].settings = settings;
  return true;
}

bool SavedTextSettings::erase(size_t index) {
  if (index >= entries_.size()) return false;
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
  return true;
}

const TextFileSettings* SavedTextSettings::load(size_t index) const {
  return index < entries_.size() ? &entries_[index].settings : nullptr;
}

std::vector<std::string> SavedTextSettings::menu_texts() const {
  if (entries_.empty()) return {"(no saved settings)"};
  std::vector<std::string> lines;
  for (const SavedTextSetting& entry : entries_) lines.push_back(entry.name + "\t(Update: +SHIFT)");
  return lines;
}

}  // namespace rowvane
