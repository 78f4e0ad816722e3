// "config.dat": everything of a database but its records, as one stream of binary items. doc/file-format.md
// describes each item.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/database/database.h"
#include "core/messages/error_code.h"
#include "crypto/cipher.h"

namespace rowvane {

inline constexpr uint16_t kConfigLayout = 5;
inline constexpr size_t kMaxConfigBytes = size_t{1} << 30;  // what a reader takes

// A number of records in a row with equal flag words.
struct FlagRun {
  uint32_t records;
  RecordFlags flags;
};

struct StoredTable {
  std::string name;
  uint32_t folder = 0;  // 0: the top folder; n: entry n - 1 of the folders
  uint32_t record_count = 0;
  std::vector<Field> fields;
  std::vector<FlagRun> flag_runs;  // empty: all flags are 0
  TableObjects objects = {};
  std::vector<LaterObjects> later_objects = {};
};

struct StoredFolder {
  std::string name;
  uint32_t parent = 0;  // as StoredTable::folder; always one of the entries before
};

// What the configuration tells of the protection; the password is nowhere in the file.
struct StoredProtection {
  CipherAlgorithm algorithm = CipherAlgorithm::kTwofishCfb;
  bool read_only_open = false;
};

struct DatabaseConfig {
  std::string database_name;  // under which the long texts and files are stored
  DatabaseSettings settings;
  std::vector<LaterObjects> later_objects;
  std::optional<StoredProtection> protection;
  std::vector<StoredFolder> folders;
  std::vector<StoredTable> tables;
};

// The configuration of DATABASE with the tables TABLES, in their order, stored under DATABASE_NAME.
DatabaseConfig config_of(const Database& database, const std::vector<CWorkSheet*>& tables,
                         const std::string& database_name);

std::string write_config(const DatabaseConfig& config);

// kNewerVersion for a layout that this version does not know, kInvalidBinaryFormat for anything that
// write_config does not write: cut off or surplus bytes, wrong types, indices and counts, names that break
// the rules. Texts that are not valid UTF-8 are repaired.
ErrorCode read_config(std::string_view bytes, DatabaseConfig& config);

}  // namespace rowvane
