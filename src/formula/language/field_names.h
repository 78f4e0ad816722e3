// Finds the names of fields in formulas.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rowvane {

class CWorkSheet;

// The field names of one table at the time it was made. Safe for threads.
class FieldNames {
 public:
  FieldNames() = default;
  explicit FieldNames(const CWorkSheet& table);

  struct Match {
    uint16_t field = 0;
    size_t bytes = 0;  // of the text, from its start
  };

  // The longest field name that TEXT begins with, in any letter case. What follows must not go on as a word
  // where the name ends with one, and must not be "(": that makes it a function's name.
  std::optional<Match> match(std::string_view text) const;
  // The field of this name.
  std::optional<uint16_t> find(std::string_view name) const;

 private:
  struct Entry {
    std::string folded;
    uint16_t field;
    bool ends_with_word;
  };

  std::vector<Entry> entries_;  // by `folded`
};

// True for what a bare name in a formula is made of: letters with their accents, digits, "#", "\" and "_".
bool is_name_character(char32_t character);

}  // namespace rowvane
