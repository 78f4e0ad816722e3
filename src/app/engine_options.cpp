#include "app/engine_options.h"

namespace rowvane {

Options engine_options(const profile::Settings& settings) {
  const profile::GeneralOptions& general = settings.general_options;
  Options options;
  options.max_records = static_cast<uint32_t>(general.max_records);
  options.used_processor_cores = general.used_processor_cores;
  options.auto_update = settings.check_box_options.auto_update;
  options.undo_level = static_cast<size_t>(general.undo_level);
  options.backups = general.backups;
  options.show_unused_members = settings.check_box_options.show_unused_zip_streams;
  options.text_export_row_limit = static_cast<uint64_t>(general.text_export_row_limit);
  options.non_deflate_files = general.non_deflate_files;
  return options;
}

}  // namespace rowvane
