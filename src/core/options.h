// The user's options that the engine reads. The settings profile fills them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/limits.h"

namespace rowvane {

struct Options {
  uint32_t max_records = kDefaultMaxRecords;  // `MaxRecords`: records of one table
  int used_processor_cores = 0;               // `UsedProcessorCores`: 1 to 16; 0: as many as the machine has
  bool auto_update = true;                    // `AutoUpdate`: calculated fields follow every change
  size_t undo_level = 100;                    // `UndoLevel`: steps that can be undone
  bool backups = false;                       // `Backups`: keep the former file as .bak when saving
  uint64_t text_export_row_limit = 0;         // `TextExportRowLimit`: records of one file; 0: no limit
  bool show_unused_members = false;           // `ShowUnusedZipStreams`
  // `NonDeflateFiles`: extensions, in lower case without the point, that are stored without compression
  // because their contents are compressed already.
  std::vector<std::string> non_deflate_files = {"7z",   "avi",  "bz2",  "docx", "flac", "gif",  "gz",
                                                "jpeg", "jpg",  "m4a",  "mkv",  "mov",  "mp3",  "mp4",
                                                "ods",  "odt",  "ogg",  "pdf",  "png",  "pptx", "rar",
                                                "rvb",  "webm", "webp", "xlsx", "xz",   "zip",  "zst"};
};

}  // namespace rowvane
