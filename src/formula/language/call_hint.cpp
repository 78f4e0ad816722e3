#include "formula/language/call_hint.h"

#include <algorithm>
#include <vector>

#include "formula/functions/function_registry.h"
#include "platform/ascii.h"

namespace rowvane {
namespace {

struct OpenBracket {
  std::string_view function;  // empty for a bracket that calls nothing
  size_t arguments_before = 0;
};

bool is_function_name_character(char character) {
  return ascii::is_letter(character) || ascii::is_digit(character) || character == '_';
}

std::string_view name_at_end(std::string_view text) {
  const auto start = std::find_if_not(text.rbegin(), text.rend(), is_function_name_character);
  return text.substr(static_cast<size_t>(text.rend() - start));
}

// Nothing within a quoted text that has no end.
std::vector<OpenBracket> open_brackets(std::string_view formula, const FormulaSeparators& separators) {
  std::vector<OpenBracket> open;
  for (size_t at = 0; at < formula.size(); ++at) {
    const char character = formula[at];
    if (character == '"' || character == '\'') {
      at = formula.find(character, at + 1);
      if (at == std::string_view::npos) return {};
    } else if (character == '(' || character == '{') {
      open.push_back({character == '(' ? name_at_end(formula.substr(0, at)) : std::string_view()});
    } else if (!open.empty() && (character == ')' || character == '}')) {
      open.pop_back();
    } else if (!open.empty() && formula.substr(at).starts_with(separators.list)) {
      ++open.back().arguments_before;
    }
  }
  return open;
}

CallHint hint_of(const DocumentationEntry& entry, size_t argument) {
  const std::vector<std::string_view> names = parameter_names(entry);
  const std::optional<size_t> current = parameter_of(entry, argument);
  CallHint hint{.text = std::string(entry.name) + "("};
  for (size_t i = 0; i < names.size(); ++i) {
    if (i > 0) hint.text += ", ";
    if (i == current) hint.begin = hint.text.size();
    hint.text += names[i];
    if (i == current) hint.end = hint.text.size();
  }
  hint.text += ")";
  return hint;
}

}  // namespace

std::optional<CallHint> call_hint(std::string_view formula, const FormulaSeparators& separators) {
  const std::vector<OpenBracket> open = open_brackets(formula, separators);
  for (auto bracket = open.rbegin(); bracket != open.rend(); ++bracket) {
    const DocumentationEntry* entry = find_documentation(bracket->function);
    if (entry != nullptr) return hint_of(*entry, bracket->arguments_before);
  }
  return std::nullopt;
}

}  // namespace rowvane
