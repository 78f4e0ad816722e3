// Writes zip archives, large members on several processors.
#pragma once

#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "core/messages/error_code.h"
#include "core/progress.h"
#include "platform/file.h"
#include "zip/zip_block_index.h"
#include "zip/zip_format.h"

namespace rowvane {

class BlockPacker;
struct BlockOrder;
class ByteSource;
class Deflater;
class ZipReader;
struct ZipMember;

inline constexpr uint64_t kMaxZip32Bytes = 0xFFFFFFFF;  // in a file; a member when unpacked holds one less
inline constexpr uint64_t kMaxZip32Members = 65535;

struct ZipWriterOptions {
  ZipVariant variant = ZipVariant::kZip64;
  int level = 6;        // of deflate: 0 packs nothing, 1 is fast, 9 is small
  int threads = 1;      // for members of more than one block
  std::tm save_time{};  // local time that all members get, from 1980 (also for all earlier times) to 2107
  uint64_t max_zip32_bytes = kMaxZip32Bytes;  // smaller for media that hold less
};

// One archive on its way to the disk. The target is replaced in `finish` and untouched until then; a writer
// destroyed before leaves nothing behind. Belongs to one thread.
//
// After an error in the middle of a member the archive cannot be finished: all further calls answer that
// error. These are noticed before anything is written and leave the writer usable:
//   kInvalidPath        the name is none (see is_writable_member_name)
//   kNameNotUnique      a member with this name is there already
//   kTooManyZipStreams  kZip32 holds no more members
//   kZipState           a call out of order
// Others are kFileWrite when the disk is full or cannot be written, or when a kZip32 archive becomes too
// large (then `size_limit_reached` is true), kZipMemory, and kZipState once the user has cancelled (then
// `cancelled` is true).
class ZipWriter {
 public:
  // Fills `out` with block BLOCK; called on several threads at once, each block once, handed out in rising
  // order. `out` is empty but may keep the memory of an old block. An error ends the member and the archive.
  using ProduceBlock = std::function<ErrorCode(uint64_t block, std::string& out)>;
  // Encrypts the packed bytes of a member in place, piece by piece in their order, on the writer's thread.
  // The archive stores what comes out of it.
  using Encrypt = std::function<ErrorCode(std::span<char> bytes)>;

  ZipWriter();
  ~ZipWriter();
  ZipWriter(const ZipWriter&) = delete;
  ZipWriter& operator=(const ZipWriter&) = delete;

  // kFileCreate, kFileInUse or kPathTooLong when TARGET cannot be written.
  ErrorCode create(const std::string& target, const ZipWriterOptions& options);

  // Reports the unpacked bytes written so far, of all members together, out of TOTAL_BYTES (0: not known),
  // and stops when PROGRESS is cancelled. PROGRESS must outlive the writer.
  void set_progress(Progress& progress, uint64_t total_bytes);

  // Adds a whole member.
  ErrorCode add(std::string_view name, std::string_view bytes, ZipMethod method);

  // Adds a member piece by piece: `begin`, any number of `write`, `end`. With ENCRYPT it is packed by METHOD
  // first.
  ErrorCode begin(std::string_view name, ZipMethod method, Encrypt encrypt = {});
  ErrorCode write(std::string_view bytes);
  ErrorCode end();

  // Adds a member of BLOCK_COUNT blocks. With BLOCKS_END_AT_RECORDS the caller promises that no record
  // continues in the next block, which readers learn from the block index.
  ErrorCode add_blocks(std::string_view name, ZipMethod method, uint64_t block_count,
                       const ProduceBlock& produce, bool blocks_end_at_records = false, Encrypt encrypt = {});

  // Adds a member whose blocks are packed already, by INDEX (without blocks: as one, of CONTENT_SIZE bytes
  // when it is unpacked), and encrypts them.
  ErrorCode add_packed_blocks(std::string_view name, const ZipBlockIndex& index, uint64_t content_size,
                              const ProduceBlock& produce, Encrypt encrypt);

  // Adds MEMBER of READER as it is, without inflating it; method, time and block index are kept. Errors of
  // the source are those of ZipReader.
  ErrorCode copy(const ZipReader& reader, const ZipMember& member, std::string_view new_name);

  // Writes the directory and puts the archive in the target's place; the former target is kept as BACKUP_PATH
  // unless that is empty. The writer is then closed and can `create` again.
  ErrorCode finish(const std::string& backup_path = {});

  // Size that the file has now and, in addition, what its directory will take.
  uint64_t bytes_written() const;
  uint64_t member_count() const { return entries_.size(); }
  // Bytes, before packing and encrypting, of the member that `begin` or `add_...blocks` wrote last.
  uint64_t content_size() const { return content_size_; }
  bool size_limit_reached() const { return size_limit_reached_; }
  bool cancelled() const { return cancelled_; }

 private:
  enum class State { kClosed, kReady, kInMember, kFailed };

  ErrorCode validate_new_member(std::string_view name) const;
  void prepare_entry(std::string_view name, ZipMethod method);
  ErrorCode open_member(std::string_view name, ZipMethod method, Encrypt encrypt);
  ErrorCode write_blocks(uint64_t block_count, const ProduceBlock& produce);
  ErrorCode close_member();
  ErrorCode add_small(std::string_view name, std::string_view bytes, ZipMethod method);
  ErrorCode write_known_member(std::string_view bytes);
  ErrorCode copy_bytes(const ByteSource& source, uint64_t offset);

  ErrorCode pack_produced(uint64_t block_count, const ProduceBlock& produce);
  ErrorCode pack_pending(bool last);
  BlockOrder block_order(bool last) const;
  ErrorCode make_room_for_block();
  ErrorCode write_packed_blocks();
  ErrorCode write_front_block();

  ErrorCode write_new_header(bool zip64_sizes, uint64_t data_size);
  ErrorCode write_data(std::string_view bytes);
  ErrorCode put(std::string_view bytes);
  ErrorCode write_directory();
  void keep_entry();
  void count_unpacked(uint64_t bytes);
  // True when the member being written may take MORE_BYTES of the file.
  bool has_room(uint64_t more_bytes) const;
  ErrorCode size_limit_error();
  ErrorCode stop_when_cancelled();
  // Answers ERROR; any but kOk ends the archive.
  ErrorCode settle(ErrorCode error);
  void reset();

  ZipWriterOptions options_;
  platform::ReplacingFile file_;
  State state_ = State::kClosed;
  ErrorCode error_ = ErrorCode::kOk;
  bool size_limit_reached_ = false;
  bool cancelled_ = false;

  Progress* progress_ = &Progress::none();
  uint64_t progress_total_ = 0;
  uint64_t unpacked_bytes_ = 0;

  std::vector<ZipEntry> entries_;
  std::unordered_set<std::string> names_;
  uint64_t directory_bytes_ = 0;

  ZipEntry entry_;                         // the member being written
  ZipMethod method_ = ZipMethod::kStored;  // of packing, also where the archive stores encrypted bytes
  Encrypt encrypt_;
  uint64_t content_size_ = 0;
  std::vector<uint64_t> block_sizes_;  // of the content, for blocks that came packed
  ZipBlockIndex index_;
  std::string pending_;  // of a stream: what does not fill a block yet
  std::unique_ptr<BlockPacker> packer_;
  std::unique_ptr<Deflater> deflater_;  // for members of one block
};

}  // namespace rowvane
