// Database files: opening, saving and compacting "*.rvb".
//
// doc/file-format.md describes the file byte by byte.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/database/database.h"
#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/messages/questions.h"
#include "core/options.h"
#include "core/progress.h"
#include "crypto/protection.h"
#include "file/database_archive.h"
#include "file/manifest.h"
#include "zip/zip_writer.h"

namespace rowvane {

inline constexpr int kFormatVersion = 2025;  // written as "this-version.txt" and "min-version.txt"
// doc/benchmarks.md: several times as fast as level 6 for a tenth more bytes.
inline constexpr int kDefaultDeflateLevel = 1;

// The container variant to save in. kAuto keeps that of the opened file; new files are ZIP64.
enum class SaveVariant { kAuto, kZip64, kZip32 };

struct SaveSettings {
  SaveVariant variant = SaveVariant::kAuto;
  int level = kDefaultDeflateLevel;           // of deflate, 1 to 9
  uint64_t max_zip32_bytes = kMaxZip32Bytes;  // smaller for media that hold less
  std::vector<const CWorkSheet*> tables;      // to be saved; empty: all
  bool as_copy = false;                       // the database stays with the file that it has
  bool drop_unused = false;                   // leave out members that nothing refers to
};

// Asks texts::kZip32Limits.
Check check_save_variant(SaveVariant variant);

// The link between an open database and its file: what of the file is still valid, so that saving copies it
// as it is. Owned beside the database, which must outlive it.
class DatabaseFile {
 public:
  explicit DatabaseFile(Database& database) : database_(database) {}

  // Saves to PATH, which is replaced in one step once all is written; unless saved as a copy, the database
  // then belongs to that file. Tables and contents that did not change are copied without being packed again,
  // and so are members that the database does not know. Errors: kFileCreate, kFileInUse, kFileWrite,
  // kTooManyZipStreams and kBinaryFieldsTooLarge (limits), kEncryptedDataChanged (a value of an encrypted
  // field could not be decrypted any more), kInvalidPassword (open read-only), kCryptographicKey and
  // kFileEncrypt, those of contents that can't be read. The old file is whole then. Notices: message 188;
  // error 73 for contents that can't be read and are left out.
  //
  // The tables are only read, so a copy may be saved on a thread of its own until Database::before_change;
  // two saves never run side by side.
  Outcome save(const std::string& path, const SaveSettings& settings, const Options& options,
               Progress& progress = Progress::none());

  // True when compacting would make the file smaller.
  bool has_unused_members() const { return !unused_.empty(); }
  const std::vector<std::string>& unused_members() const { return unused_; }

  // How the next save protects the file; null: not at all.
  const Protection* protection() const { return protection_ ? &*protection_ : nullptr; }
  // Changes that, with the next save; nothing takes the protection away. kInvalidPassword when open
  // read-only.
  ErrorCode set_protection(std::optional<Protection> protection);
  // True when a protected file was opened without its password: what was read can be looked at, but not
  // saved.
  bool is_read_only() const { return read_only_; }

  // Variant of the opened file.
  ZipVariant variant() const { return variant_; }

 private:
  friend class DatabaseOpener;
  friend class DatabaseSaver;

  // A table as the file holds it.
  struct SavedTable {
    uint64_t revision;
    std::string member;
  };

  Database& database_;
  std::shared_ptr<const DatabaseArchive> archive_;
  std::optional<Protection> protection_;  // without a password when read-only
  bool read_only_ = false;
  ZipVariant variant_ = ZipVariant::kZip64;
  std::map<const CWorkSheet*, SavedTable> saved_;
  std::vector<std::string> unused_;
  std::string told_left_out_;  // with what the last save left out objects of a later version
};

// Notices: 123 to 125, 198 (a ZIP32 file), errors 12, 73, 128 and 131, and of new tables.
struct OpenedDatabase : Outcome {
  std::unique_ptr<Database> database;  // null unless it was done
  std::unique_ptr<DatabaseFile> file;
};

// Opens a database file. QUESTIONS decides whether tables that are in the archive but not in its
// configuration are added (message 183); without, they are not. Tables that can't be added give a notice and
// stay in the archive as they are. PASSWORD opens a protected database; without one (null) it is opened
// read-only where that is allowed. Errors: kInvalidPassword, kFileDecrypt (an encrypted member is damaged),
// kCryptographicKey; kFileOpen, kFileInUse, kFileRead; kInvalidBinaryFormat for a file that is no archive or
// whose configuration is damaged; kManifest; kNewerVersion; the zip codes for damaged members; kOutOfMemory.
OpenedDatabase open_database(const std::string& path, const Options& options, Questions* questions = nullptr,
                             Progress& progress = Progress::none(),
                             std::shared_ptr<const Secret> password = nullptr);

struct CompactResult : Outcome {
  MessageId message = MessageId::kCompacted;  // 174, 175 or 176: what to tell the user when it was done
};

// Rewrites the file of DATABASE without the members that nothing refers to.
CompactResult compact_database(Database& database, DatabaseFile& file, const Options& options,
                               Progress& progress = Progress::none());

}  // namespace rowvane
