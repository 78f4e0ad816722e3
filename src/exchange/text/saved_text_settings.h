// The sets of text file settings that users keep under names of their own.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/check.h"
#include "exchange/text/text_file_settings.h"

namespace rowvane {

struct SavedTextSetting {
  std::string name;           // UTF-8
  TextFileSettings settings;  // with the column options of the field list as they were

  bool operator==(const SavedTextSetting&) const = default;
};

// At most kMaxEntries sets, newest first.
class SavedTextSettings {
 public:
  static constexpr size_t kMaxEntries = 8;

  SavedTextSettings() = default;
  // As a settings profile holds them; what is beyond kMaxEntries is dropped.
  explicit SavedTextSettings(std::vector<SavedTextSetting> entries);

  const std::vector<SavedTextSetting>& entries() const { return entries_; }

  // The name that the dialog for saving settings proposes.
  std::string proposed_name() const;
  // Whether a name that was entered can be taken.
  static Check check_name(std::string_view name);
  // Makes the new entry the first; the last of kMaxEntries is dropped for it.
  void add(std::string name, const TextFileSettings& settings);
  // Gives entry INDEX other settings; it keeps its name and place. False when there is no such entry.
  bool overwrite(size_t index, const TextFileSettings& settings);
  // Deletes entry INDEX. False when there is no such entry.
  bool erase(size_t index);
  // The settings of entry INDEX; null when there is none. Valid until the next change.
  const TextFileSettings* load(size_t index) const;

  // The lines of the menu that loads the entries.
  std::vector<std::string> menu_texts() const;

  bool operator==(const SavedTextSettings&) const = default;

 private:
  std::vector<SavedTextSetting> entries_;
};

}  // namespace rowvane
