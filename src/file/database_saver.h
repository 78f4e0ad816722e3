// Writes one database file.
#pragma once

#include <optional>

#include "crypto/encryptor_queue.h"
#include "file/database_file.h"
#include "file/encrypted_contents.h"

namespace rowvane {

class DatabaseSaver {
 public:
  DatabaseSaver(DatabaseFile& file, const SaveSettings& settings, const Options& options, Progress& progress);

  Outcome run(const std::string& path);

 private:
  ErrorCode write_all(const std::string& path);
  ErrorCode write_config_member(const std::string& database_name);
  ErrorCode write_table(const CWorkSheet& table);
  ErrorCode write_binaries(const std::string& database_name);
  ErrorCode write_field_binaries(const CWorkSheet& table, size_t field, std::string_view database_name,
                                 std::string_view table_name);
  ErrorCode write_contents(const std::vector<PendingContent>& contents);
  ErrorCode write_content(const PendingContent& pending);
  ErrorCode write_encrypted_contents(const std::vector<PendingContent>& contents);
  ErrorCode verify_encrypted_values() const;
  bool is_unchanged(const CWorkSheet& table) const;
  const ZipMember* member_to_copy(const CWorkSheet& table) const;
  ErrorCode copy_table(const ZipMember& member, const std::string& name);
  ErrorCode recode_table(const ZipMember& member, const std::string& name);
  ErrorCode start_encryptor(std::optional<MemberEncryptor>& encryptor);
  ErrorCode copy_member(const ZipReader& archive, const ZipMember& member, const std::string& name);
  ErrorCode leave_out_if_damaged(ErrorCode error);
  void tell_left_out_objects(Outcome& outcome);
  ErrorCode write_unused(const std::string& database_name);
  ErrorCode write_unused_member(const ZipMember& member);
  ErrorCode write_manifest_member();
  ErrorCode add_text(std::string_view name, std::string_view text);
  void note_member(const std::string& name, bool deflated,
                   std::optional<EncryptionRecord> encryption = std::nullopt);
  ZipMethod method_for(std::string_view file_name) const;
  uint64_t estimated_bytes() const;
  void adopt(const std::string& path);

  DatabaseFile& file_;
  Database& database_;
  const SaveSettings& settings_;
  const Options& options_;
  Progress& progress_;
  std::vector<CWorkSheet*> tables_;
  const Protection* protection_;  // null: none
  int threads_;
  ZipVariant variant_;
  std::optional<EncryptorQueue> encryptors_;  // of the configuration and the tables
  ZipWriter writer_;
  std::vector<ManifestEntry> manifest_;
  std::vector<std::pair<std::shared_ptr<const ContentSource>, std::string>> written_contents_;
  std::vector<std::string> written_unused_;
  bool left_out_ = false;  // something that can't be read
};

}  // namespace rowvane
