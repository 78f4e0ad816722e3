#include "formula/functions/function_registry.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "formula/functions/categories.h"
#include "platform/ascii.h"
#include "text/folded_text.h"

namespace rowvane {
namespace {

std::string_view name_of(const EvaluationEntry& entry) {
  return {entry.name, std::min(std::strlen(entry.name), sizeof entry.name - 1)};
}

// Compares NAME with as much of TEXT as NAME is long, without letter case.
int compare_front(std::string_view name, std::string_view text) {
  for (size_t i = 0; i < name.size(); ++i) {
    if (i == text.size()) return 1;
    const int order = ascii::to_upper(name[i]) - ascii::to_upper(text[i]);
    if (order != 0) return order;
  }
  return 0;
}

// Category by category; then by name for the binary search.
struct Registry {
  std::vector<EvaluationEntry> evaluation;
  std::vector<DocumentationEntry> documentation;

  Registry() {
    for (const FunctionTables& tables : {mathematical_functions(), textual_functions(), logical_functions(),
                                         informational_functions(), placeholder_functions()}) {
      evaluation.insert(evaluation.end(), tables.evaluation.begin(), tables.evaluation.end());
      documentation.insert(documentation.end(), tables.documentation.begin(), tables.documentation.end());
    }
    std::ranges::stable_sort(evaluation, [](const EvaluationEntry& a, const EvaluationEntry& b) {
      return std::ranges::lexicographical_compare(name_of(a), name_of(b), {}, ascii::to_upper,
                                                  ascii::to_upper);
    });
  }
};

const Registry& registry() {
  static const Registry all;
  return all;
}

constexpr std::array<std::string_view, kFunctionCategories> kCategoryNames = {
    "Roll-up", "Mathematical",  "Textual",     "Date/time",   "Financial", "Lookup & reference",
    "Logical", "Informational", "Engineering", "Statistical", "Solver",    "Matrix & eq. systems"};

}  // namespace

Scalar call_function(const SingleValueFunction& function, std::span<const Scalar> arguments,
                     const ScalarContext& context) {
  if (!function.takes_errors) {
    const auto error = std::ranges::find_if(arguments, [](const Scalar& each) { return each.is_error(); });
    if (error != arguments.end()) return Scalar::of(error->error);
  }
  return function.function(arguments, context);
}

std::optional<uint16_t> find_function(std::string_view text) {
  const auto& table = registry().evaluation;
  const auto found = std::partition_point(table.begin(), table.end(), [text](const EvaluationEntry& entry) {
    return compare_front(name_of(entry), text) < 0;
  });
  if (found == table.end() || compare_front(name_of(*found), text) != 0) return std::nullopt;
  return static_cast<uint16_t>(found - table.begin());
}

const EvaluationEntry& evaluation_entry(uint16_t index) {
  return registry().evaluation[index];
}

std::string_view function_name(uint16_t index) {
  return name_of(registry().evaluation[index]);
}

std::string_view category_name(FunctionCategory category) {
  return kCategoryNames[static_cast<size_t>(category)];
}

std::vector<const DocumentationEntry*> documented_functions(FunctionCategory category) {
  std::vector<const DocumentationEntry*> found;
  for (const DocumentationEntry& entry : registry().documentation) {
    if ((entry.flags & 0xFF) == static_cast<uint64_t>(category)) found.push_back(&entry);
  }
  return found;
}

const DocumentationEntry* find_documentation(std::string_view name) {
  for (const DocumentationEntry& entry : registry().documentation) {
    if (compare_folded(entry.name, name) == 0) return &entry;
  }
  return nullptr;
}

std::string_view help_text(std::string_view name) {
  const DocumentationEntry* entry = find_documentation(name);
  return entry != nullptr ? std::string_view(entry->help) : std::string_view();
}

std::vector<std::string_view> parameter_names(const DocumentationEntry& entry) {
  std::vector<std::string_view> names;
  for (const char* next = entry.parameters; *next != '\0'; next += names.back().size() + 1)
    names.emplace_back(next);
  return names;
}

std::optional<size_t> parameter_of(const DocumentationEntry& entry, size_t argument) {
  const size_t count = parameter_names(entry).size();
  if (argument < count) return argument;
  const bool variadic = (entry.flags >> 16 & 1) != 0;
  return variadic && count > 0 ? std::optional(count - 1) : std::nullopt;
}

std::string_view parameter_hint(std::string_view name, size_t argument) {
  const DocumentationEntry* entry = find_documentation(name);
  if (entry == nullptr) return {};
  const auto parameter = parameter_of(*entry, argument);
  return parameter ? parameter_names(*entry)[*parameter] : std::string_view();
}

}  // namespace rowvane
