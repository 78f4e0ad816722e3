// Holds the tables of doc/profile.md against the settings that there are.
#include <sstream>

#include <gtest/gtest.h>

#include "app/profile/profile_settings.h"
#include "app/profile/profile_values.h"
#include "app/profile_test_support.h"
#include "source_folder.h"

namespace rowvane::profile {
namespace {

// Writes the tables, a row for each attribute with its format and default.
class Tables {
 public:
  void flag(const char* name, bool value) { row(name, "true or false", flag_text(value)); }
  void number(const char* name, int64_t value, NumberRange range) {
    row(name, number_text(range.least) + " to " + number_text(range.most), number_text(value));
  }
  void text(const char* name, const std::string& value) { row(name, "text", value); }
  template <typename Enum>
  void choice(const char* name, Enum value) {
    std::string list;
    for (const std::string_view entry : names_of(value)) {
      list += (list.empty() ? "" : ", ") + std::string(entry);
    }
    row(name, list, std::string(names_of(value)[static_cast<size_t>(value)]));
  }
  void color(const char* name, uint32_t value) { row(name, "#RRGGBB", color_text(value)); }
  void words(const char* name, const std::vector<std::string>& value) {
    row(name, "extensions", words_text(value));
  }
  void placement(const char* name, const FramePlacement& value) {
    row(name, "six numbers", placement_text(value));
  }
  void content(const std::string&) { out_ << "\nThe text of the element is the script.\n"; }

  template <typename Group>
  void element(const char* name, const Group& group) {
    begin("`" + std::string(name) + "`");
    visit_attributes(group, *this);
  }
  template <typename Group>
  void records(const char* parent, const char* name, const char*, size_t most, const std::vector<Group>&) {
    begin("`" + std::string(name) + "`, at most " + std::to_string(most) + " in `" + parent + "`");
    const Group group;
    visit_attributes(group, *this);
  }
  template <typename Entry>
  void list(const char* name, size_t most, const std::vector<Entry>&) {
    lists_ << "| `" << name << "` | " << most << " |\n";
  }

  std::string markdown() const {
    return out_.str() + "\n### Entries of `RecentLists`\n\n| element | at most |\n|---|---|\n" + lists_.str();
  }

 private:
  void begin(const std::string& title) {
    out_ << "\n### " << title << "\n\n| attribute | values | default |\n|---|---|---|\n";
  }
  void row(const char* name, const std::string& values, const std::string& value) {
    out_ << "| `" << name << "` | " << values << " | " << value << " |\n";
  }

  std::ostringstream out_;
  std::ostringstream lists_;
};

TEST(ProfileDocument, NamesEverySetting) {
  const Settings settings;
  Tables tables;
  visit_elements(settings, tables);
  const std::string document = content_of(std::string(kSourceFolder) + "/doc/profile.md");
  EXPECT_NE(document.find(tables.markdown()), std::string::npos)
      << "doc/profile.md should hold:\n<<<" << tables.markdown() << ">>>";
}

}  // namespace
}  // namespace rowvane::profile
