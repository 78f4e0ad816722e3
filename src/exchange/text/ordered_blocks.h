// Blocks of bytes made on several threads and taken in their order.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/messages/error_code.h"

namespace rowvane {

// Appends block BLOCK to the empty OUT; called on several threads at once.
using MakeBlock = std::function<ErrorCode(uint64_t block, std::string& out)>;
// Takes the bytes of the next block; false to stop.
using TakeBlock = std::function<bool(uint64_t block, std::string_view bytes)>;

// Makes the blocks 0 to COUNT - 1 on THREADS threads of their own and takes them one after the other on the
// calling thread. At most two blocks a thread wait to be taken. Answers the error of the first block that
// failed, kOutOfMemory when one found no memory; kOk also when `take` stopped.
ErrorCode make_blocks_in_order(uint64_t count, int threads, const MakeBlock& make, const TakeBlock& take);

}  // namespace rowvane
