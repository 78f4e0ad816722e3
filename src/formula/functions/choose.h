// The function `if`, which passes over whole columns know by its implementation.
#pragma once

#include <span>

#include "formula/evaluation/scalar_operations.h"

namespace rowvane {

// ARGUMENTS are the test, the value for true and, if there, the one for false. Errors among the values that
// are not chosen do not matter.
Scalar choose(std::span<const Scalar> arguments, const ScalarContext& context);

}  // namespace rowvane
