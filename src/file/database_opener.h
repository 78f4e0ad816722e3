// Reads one database file.
#pragma once

#include <map>
#include <unordered_set>

#include "exchange/text/text_stream.h"
#include "file/config_dat.h"
#include "file/database_file.h"
#include "file/member_names.h"

namespace rowvane {

class DatabaseOpener {
 public:
  DatabaseOpener(const std::string& path, const Options& options, Questions* questions, Progress& progress,
                 std::shared_ptr<const Secret> password);

  OpenedDatabase run();

 private:
  // The binary members of one table, by 0-based field and record.
  using BinaryMembers = std::map<std::pair<size_t, uint32_t>, std::vector<const ZipMember*>>;

  ErrorCode read_all();
  ErrorCode open_archive();
  ErrorCode verify_manifest();
  ErrorCode verify_password();
  ErrorCode verify_version();
  ErrorCode read_configuration();
  ErrorCode build_folders();
  void take_protection();
  ErrorCode read_tables();
  ErrorCode read_table(const StoredTable& stored);
  std::string member_name(const StoredTable& stored) const;
  ErrorCode load_records(const ZipMember& member, const TextLoadPlan& plan, TableData& data);
  ErrorCode load_blocks(const ZipMember& member, const TextLoadPlan& plan, TableData& data);
  ErrorCode load_stream(const ZipMember& member, const TextLoadPlan& plan, TableData& data);
  ErrorCode add_table(std::string name, TableData data, Folder& folder, CWorkSheet** added);
  ErrorCode attach_binaries();
  ErrorCode attach_table_binaries(CWorkSheet& table, const BinaryMembers& members);
  Column long_texts(uint32_t records, size_t field, const BinaryMembers& members);
  Column files(const CWorkSheet& table, size_t field, const BinaryMembers& members);
  FileList file_list(const std::string& listed, const std::vector<const ZipMember*>& members);
  void add_member(const ZipMember& member, FileList& value);
  void add_object(FileObject object, FileList& value);
  ErrorCode add_new_tables();
  ErrorCode read_new_table(const ZipMember& member, const std::string& path);
  void collect_unused();
  void add_notice(UserText notice);
  const ZipMember* use(std::string_view name);

  std::string path_;
  const Options& options_;
  Questions* questions_;
  Progress& progress_;
  std::shared_ptr<const Secret> password_;
  OpenedDatabase result_;
  std::shared_ptr<DatabaseArchive> archive_;
  std::vector<std::string> missing_;  // members that the manifest lists in vain
  DatabaseConfig config_;
  std::vector<Folder*> folders_;
  std::vector<CWorkSheet*> tables_;
  // What the table texts list of the values of a files field: names and shortcuts.
  std::map<std::pair<const CWorkSheet*, size_t>, ContentColumn> listed_files_;
  std::unordered_set<std::string_view> used_;  // names of members that the database knows
};

}  // namespace rowvane
