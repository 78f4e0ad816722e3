// The function `if` on blocks of records.
#pragma once

#include <vector>

#include "formula/passes/block_nodes.h"

namespace rowvane {

bool is_choice(const ScalarOperation& operation);
// Takes OPERANDS, those of `if`, and answers a node for them; null, with OPERANDS as they were, when their
// forms are better worked on one by one.
BlockNodePointer make_choice_node(std::vector<BlockNodePointer>& operands);

}  // namespace rowvane
