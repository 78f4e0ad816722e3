// Text files as a format of databases.
#pragma once

#include "app/formats/file_format.h"

namespace rowvane {

// Tabs where the extension of PATH says so, otherwise the defaults.
TextFileSettings text_settings_of_name(const std::string& path);

// A text is one table, named after the file. Saving writes the first table, the one that came from the file.
OpenedDatabase open_text_file(const OpenRequest& request);
Check check_save_as_text(const OpenDatabase& open);
Outcome save_as_text(OpenDatabase& open, Progress& progress);
Check check_export_as_text(const CWorkSheet& table, const TableExport& settings);
TableExportResult export_as_text(const CWorkSheet& table, const std::string& target,
                                 const TableExport& settings, Progress& progress);

}  // namespace rowvane
