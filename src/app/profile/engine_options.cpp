#include "app/profile/engine_options.h"

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

SearchOptions search_options(const profile::Settings& settings) {
  const profile::FindAndReplaceOptions& find = settings.find_and_replace_options;
  SearchOptions options;
  options.empty_matches = find.empty_matches;
  options.caseless = find.caseless;
  options.search_now = find.search_now;
  options.default_kind = listed_kind(static_cast<size_t>(find.match_mode));
  return options;
}

void store_search_options(const SearchOptions& options, profile::Settings& settings) {
  profile::FindAndReplaceOptions& find = settings.find_and_replace_options;
  find.empty_matches = options.empty_matches;
  find.caseless = options.caseless;
  find.search_now = options.search_now;
  find.match_mode = static_cast<int>(criterion_list_index(options.default_kind).value_or(0));
}

}  // namespace rowvane
