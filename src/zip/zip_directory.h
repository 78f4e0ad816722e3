// Finds and checks the central directory of an archive.
#pragma once

#include <vector>

#include "core/messages/error_code.h"
#include "zip/byte_source.h"
#include "zip/zip_format.h"
#include "zip/zip_reader.h"

namespace rowvane {

// Reads all members from SOURCE in the order of the directory. Errors are those of ZipReader::open,
// kZipMemory when the directory does not fit into memory.
ErrorCode read_zip_directory(const ByteSource& source, ZipVariant& variant, std::vector<ZipMember>& members);

}  // namespace rowvane
