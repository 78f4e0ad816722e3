// Loads a text that arrives as a stream of bytes: cuts it into blocks of whole records, has them parsed on
// all processors and merged in order.
#pragma once

#include <functional>
#include <span>

#include "core/messages/error_code.h"
#include "exchange/text/text_loader.h"

namespace rowvane {

// Reads the text through READ until it answers 0, or until LOADER is full. READ fills a buffer and answers
// the number of bytes. kOutOfMemory when memory ran out; nothing of LOADER is of use then.
//
// Memory beside the loaded columns: a fixed number of blocks, whatever the text holds; a record larger than a
// block is read with the cell limits of its columns.
ErrorCode load_text_stream(TextLoader& loader, const TextLoadPlan& plan,
                           const std::function<size_t(std::span<char>)>& read);

// As load_text_stream for a text that comes in COUNT blocks of whole records, each read by `read_block(index,
// job)` on any of the threads; it fills job.block and answers an error code. Stops at the first error and
// answers it.
ErrorCode load_text_blocks(TextLoader& loader, const TextLoadPlan& plan, uint64_t count,
                           const std::function<ErrorCode(uint64_t index, LoadJob& job)>& read_block);

}  // namespace rowvane
