// Finds and checks the central directory of an archive.
#pragma once

#include <vector>

#include "core/error_code.h"
#include "file/byte_source.h"
#include "file/zip_format.h"
#include "file/zip_reader.h"

namespace rowvane {

// Reads all members from SOURCE in the order of the directory. Errors are those of ZipReader::open,
// kZipMemory when the directory does not fit into memory.
ErrorCode read_zip_directory(const ByteSource& source, ZipVariant& variant, std::vector<ZipMember>& members);

}  // namespace rowvane
