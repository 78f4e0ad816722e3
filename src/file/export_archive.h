// The archive beside an exported text file that holds its long texts or files.
#pragma once

#include <memory>
#include <string>

#include "exchange/text_export.h"

namespace rowvane {

// A ZIP64 archive at PATH; null when it can't be made. An ExportArchiveMaker.
std::unique_ptr<ExportArchive> make_export_archive(const std::string& path);

}  // namespace rowvane
