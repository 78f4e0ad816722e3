// The built-in functions: what evaluates them, and what documents them. The two tables are kept apart,
// because some functions are evaluated and not documented, and some the other way round.
//
// A function stands in functions/CATEGORY.cpp: its implementation, its entry for evaluation and the one that
// documents it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formula/evaluation/scalar_operations.h"

namespace rowvane {

class FormulaEvaluator;

// ---- evaluation

// Takes the arguments of the call from the evaluator's value stack and leaves one value in their place.
using FunctionImplementation = void (*)(FormulaEvaluator&);

// A pure function from single values to a single value: the result depends on the arguments alone, so it may
// be worked out once for records with the same arguments. Arrays and ranges among its arguments make it apply
// element by element.
struct SingleValueFunction {
  Scalar (*function)(std::span<const Scalar> arguments, const ScalarContext& context) = nullptr;
  uint8_t min_arguments = 0;
  uint8_t max_arguments = 0;
  bool takes_errors = false;  // otherwise the first error among the arguments is the result
};

constexpr bool takes_arguments(const SingleValueFunction& function, size_t count) {
  return count >= function.min_arguments && count <= function.max_arguments;
}

// Calls FUNCTION, which takes as many arguments as there are.
Scalar call_function(const SingleValueFunction& function, std::span<const Scalar> arguments,
                     const ScalarContext& context);

struct EvaluationEntry {
  // Null for a single-value function. A function that has both is called by `single` while all arguments are
  // single values.
  FunctionImplementation implementation = nullptr;
  char name[32] = {};  // in capitals, with "(": "SUM("
  SingleValueFunction single;
};

// The function whose name and "(" TEXT begins with, in any letter case: its index in the evaluation table.
std::optional<uint16_t> find_function(std::string_view text);
const EvaluationEntry& evaluation_entry(uint16_t index);
// With its "(".
std::string_view function_name(uint16_t index);

// ---- documentation

enum class FunctionCategory : uint8_t {
  kRollUp,
  kMathematical,
  kTextual,
  kDateTime,
  kFinancial,
  kLookup,
  kLogical,
  kInformational,
  kEngineering,
  kStatistical,
  kSolver,
  kMatrix,
};
inline constexpr size_t kFunctionCategories = 12;
// "Roll-up" and so on.
std::string_view category_name(FunctionCategory category);

struct DocumentationEntry {
  uint64_t flags = 0;           // made by documentation_flags
  const char* name = "";        // as documented, such as "vLookUp_ex"
  const char* parameters = "";  // names, each with its terminating zero, and another zero at the end
  const char* kinds =
      "";                 // for each parameter "1" where it takes an array, "0" where it takes a single value
  const char* help = "";  // the syntax line, a blank line, the description, examples; lines end in CR LF
};

// Bits 0 to 7: the category; bits 8 to 15: the number of fixed parameters; bit 16: more may follow.
constexpr uint64_t documentation_flags(FunctionCategory category, unsigned parameters,
                                       bool variadic = false) {
  return static_cast<uint64_t>(category) | uint64_t{parameters} << 8 | uint64_t{variadic} << 16;
}

// In the order of the table.
std::vector<const DocumentationEntry*> documented_functions(FunctionCategory category);
// Null when NAME, in any letter case, is not documented.
const DocumentationEntry* find_documentation(std::string_view name);
// Empty for a name that is not documented.
std::string_view help_text(std::string_view name);
// The names of the parameters, as long as the entry stands.
std::vector<std::string_view> parameter_names(const DocumentationEntry& entry);
// The place among them of the one that ARGUMENT, counted from 0, is for: behind the last one it repeats for a
// function with a variable number of arguments, otherwise there is none.
std::optional<size_t> parameter_of(const DocumentationEntry& entry, size_t argument);
// The name of that parameter of the function NAME; empty for none.
std::string_view parameter_hint(std::string_view name, size_t argument);

}  // namespace rowvane
