// The tables of the categories of functions.
#pragma once

#include <span>

#include "formula/functions/function_registry.h"

namespace rowvane {

struct FunctionTables {
  std::span<const EvaluationEntry> evaluation;
  std::span<const DocumentationEntry> documentation;
};

FunctionTables mathematical_functions();
FunctionTables textual_functions();
FunctionTables logical_functions();
FunctionTables informational_functions();
// Names that are known and have no implementation: their value is "#DATA!".
FunctionTables placeholder_functions();

}  // namespace rowvane
