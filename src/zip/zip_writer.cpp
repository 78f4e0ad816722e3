#include "zip/zip_writer.h"

#include <algorithm>
#include <utility>

#include "core/messages/file_error.h"
#include "zip/block_packer.h"
#include "zip/zip_names.h"
#include "zip/zip_reader.h"
#include "zip/zlib_codec.h"

namespace rowvane {
namespace {

constexpr uint32_t kRegularFileAttributes = 0100644U << 16;  // read by all, written by the owner
constexpr size_t kCopyBufferSize = size_t{1} << 20;
constexpr size_t kZip64CentralExtraSize = 28;  // with all values that may move there

std::string_view slice(std::string_view bytes, uint64_t block) {
  return bytes.substr(static_cast<size_t>(block) * kZipBlockSize, kZipBlockSize);
}

uint64_t end_records_size(ZipVariant variant) {
  return kEndRecordSize + (variant == ZipVariant::kZip64 ? kZip64EndRecordSize + kZip64LocatorSize : 0);
}

uint64_t central_size(const ZipEntry& entry) {
  return kCentralHeaderSize + entry.name.size() + entry.extra.size() + kZip64CentralExtraSize;
}

std::string block_index_extra(const ZipBlockIndex& index) {
  return encode_block_index(index, kZip16Max - kZip64CentralExtraSize);
}

uint64_t max_index_size(const ZipBlockIndex& index) {
  constexpr uint64_t kEntrySize = 8;
  return std::min<uint64_t>((index.blocks.size() + 1) * kEntrySize, kZip16Max);
}

}  // namespace

ZipWriter::ZipWriter() = default;
ZipWriter::~ZipWriter() = default;

ErrorCode ZipWriter::create(const std::string& target, const ZipWriterOptions& options) {
  reset();
  options_ = options;
  packer_ = std::make_unique<BlockPacker>(options.level, options.threads);
  deflater_ = std::make_unique<Deflater>(options.level);
  const ErrorCode error = file_error(file_.create(target), ErrorCode::kFileCreate);
  if (error == ErrorCode::kOk) state_ = State::kReady;
  return error;
}

void ZipWriter::reset() {
  packer_.reset();
  deflater_.reset();
  file_.discard();
  state_ = State::kClosed;
  error_ = ErrorCode::kOk;
  size_limit_reached_ = false;
  cancelled_ = false;
  unpacked_bytes_ = 0;
  entries_.clear();
  names_.clear();
  directory_bytes_ = 0;
  pending_.clear();
}

void ZipWriter::set_progress(Progress& progress, uint64_t total_bytes) {
  progress_ = &progress;
  progress_total_ = total_bytes;
}

ErrorCode ZipWriter::add(std::string_view name, std::string_view bytes, ZipMethod method) {
  if (bytes.size() <= kZipBlockSize) return add_small(name, bytes, method);
  const uint64_t block_count = (bytes.size() + kZipBlockSize - 1) / kZipBlockSize;
  return add_blocks(name, method, block_count, [bytes](uint64_t block, std::string& out) {
    out = slice(bytes, block);
    return ErrorCode::kOk;
  });
}

ErrorCode ZipWriter::add_small(std::string_view name, std::string_view bytes, ZipMethod method) {
  if (const ErrorCode error = validate_new_member(name); error != ErrorCode::kOk) return error;
  if (const ErrorCode error = stop_when_cancelled(); error != ErrorCode::kOk) return error;
  prepare_entry(name, method);
  entry_.size = bytes.size();
  entry_.crc = crc32_of(bytes);
  std::string deflated;
  if (method == ZipMethod::kDeflated) {
    const ErrorCode error = deflater_->deflate_block(bytes, true, deflated);
    if (error != ErrorCode::kOk) return error;
    bytes = deflated;
  }
  return write_known_member(bytes);
}

ErrorCode ZipWriter::write_known_member(std::string_view bytes) {
  entry_.compressed_size = bytes.size();
  ErrorCode error = write_new_header(needs_zip64_sizes(entry_), bytes.size());
  if (error != ErrorCode::kOk) return error;
  error = settle(write_data(bytes));
  if (error != ErrorCode::kOk) return error;
  count_unpacked(entry_.size);
  keep_entry();
  return ErrorCode::kOk;
}

ErrorCode ZipWriter::begin(std::string_view name, ZipMethod method, Encrypt encrypt) {
  if (const auto error = open_member(name, method, std::move(encrypt)); error != ErrorCode::kOk) return error;
  index_.blocks_end_at_records = false;
  return ErrorCode::kOk;
}

ErrorCode ZipWriter::write(std::string_view bytes) {
  if (state_ == State::kFailed) return error_;
  if (state_ != State::kInMember) return ErrorCode::kZipState;
  while (!bytes.empty()) {
    // A full block waits for more, as the last one of a member is packed differently.
    if (pending_.size() == kZipBlockSize) {
      if (const ErrorCode error = settle(pack_pending(false)); error != ErrorCode::kOk) return error;
    }
    const size_t count = std::min(bytes.size(), kZipBlockSize - pending_.size());
    pending_.append(bytes, 0, count);
    bytes.remove_prefix(count);
  }
  return ErrorCode::kOk;
}

ErrorCode ZipWriter::end() {
  if (state_ == State::kFailed) return error_;
  if (state_ != State::kInMember) return ErrorCode::kZipState;
  ErrorCode error = pack_pending(true);
  if (error == ErrorCode::kOk) error = write_packed_blocks();
  if (error == ErrorCode::kOk) error = close_member();
  return settle(error);
}

ErrorCode ZipWriter::add_blocks(std::string_view name, ZipMethod method, uint64_t block_count,
                                const ProduceBlock& produce, bool blocks_end_at_records, Encrypt encrypt) {
  if (const auto error = open_member(name, method, std::move(encrypt)); error != ErrorCode::kOk) return error;
  index_.blocks_end_at_records = blocks_end_at_records;
  return write_blocks(block_count, produce);
}

ErrorCode ZipWriter::add_packed_blocks(std::string_view name, const ZipBlockIndex& index,
                                       uint64_t content_size, const ProduceBlock& produce, Encrypt encrypt) {
  const auto error = open_member(name, ZipMethod::kStored, std::move(encrypt));
  if (error != ErrorCode::kOk) return error;
  index_.blocks_end_at_records = index.blocks_end_at_records;
  for (const ZipBlock& block : index.blocks) block_sizes_.push_back(block.size);
  if (block_sizes_.empty()) block_sizes_.push_back(content_size);
  return write_blocks(block_sizes_.size(), produce);
}

ErrorCode ZipWriter::write_blocks(uint64_t block_count, const ProduceBlock& produce) {
  ErrorCode error = pack_produced(block_count, produce);
  if (error == ErrorCode::kOk) error = write_packed_blocks();
  if (error == ErrorCode::kOk) error = close_member();
  return settle(error);
}

ErrorCode ZipWriter::pack_produced(uint64_t block_count, const ProduceBlock& produce) {
  if (block_count == 0) return pack_pending(true);
  for (uint64_t block = 0; block < block_count; ++block) {
    if (const ErrorCode error = make_room_for_block(); error != ErrorCode::kOk) return error;
    packer_->submit([&produce, block](std::string& out) { return produce(block, out); },
                    block_order(block + 1 == block_count));
  }
  return ErrorCode::kOk;
}

ErrorCode ZipWriter::copy(const ZipReader& reader, const ZipMember& member, std::string_view new_name) {
  if (const ErrorCode error = validate_new_member(new_name); error != ErrorCode::kOk) return error;
  if (const ErrorCode error = stop_when_cancelled(); error != ErrorCode::kOk) return error;
  uint64_t data_offset = 0;
  if (const ErrorCode error = reader.locate(member, data_offset); error != ErrorCode::kOk) return error;

  prepare_entry(new_name, static_cast<ZipMethod>(member.method));
  entry_.time = member.time;
  entry_.crc = member.crc;
  entry_.size = member.size;
  entry_.compressed_size = member.compressed_size;
  index_ = member.index;
  entry_.extra = block_index_extra(index_);
  ErrorCode error = write_new_header(needs_zip64_sizes(entry_), entry_.compressed_size);
  if (error != ErrorCode::kOk) return error;
  error = settle(copy_bytes(reader.source(), data_offset));
  if (error != ErrorCode::kOk) return error;
  count_unpacked(entry_.size);
  keep_entry();
  return ErrorCode::kOk;
}

ErrorCode ZipWriter::copy_bytes(const ByteSource& source, uint64_t offset) {
  std::string buffer;
  for (uint64_t left = entry_.compressed_size; left > 0; left -= buffer.size(), offset += buffer.size()) {
    if (const ErrorCode error = stop_when_cancelled(); error != ErrorCode::kOk) return error;
    buffer.resize(static_cast<size_t>(std::min<uint64_t>(left, kCopyBufferSize)));
    if (const ErrorCode error = source.read_at(offset, buffer); error != ErrorCode::kOk) return error;
    if (const ErrorCode error = write_data(buffer); error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

ErrorCode ZipWriter::finish(const std::string& backup_path) {
  if (state_ == State::kFailed) return error_;
  if (state_ != State::kReady) return ErrorCode::kZipState;
  if (const ErrorCode error = stop_when_cancelled(); error != ErrorCode::kOk) return error;
  ErrorCode error = write_directory();
  if (error == ErrorCode::kOk) error = file_error(file_.commit(backup_path), ErrorCode::kFileWrite);
  if (error != ErrorCode::kOk) return settle(error);
  state_ = State::kClosed;
  packer_.reset();
  deflater_.reset();
  return ErrorCode::kOk;
}

ErrorCode ZipWriter::write_directory() {
  ZipEnd end{.member_count = entries_.size(), .directory_offset = file_.position(), .directory_size = 0};
  std::string bytes;
  for (const ZipEntry& entry : entries_) {
    append_central_header(entry, bytes);
    if (bytes.size() < kCopyBufferSize) continue;
    if (const ErrorCode error = put(bytes); error != ErrorCode::kOk) return error;
    bytes.clear();
  }
  end.directory_size = file_.position() + bytes.size() - end.directory_offset;
  append_end_records(end, options_.variant, bytes);
  return put(bytes);
}

uint64_t ZipWriter::bytes_written() const {
  return file_.position() +
         (state_ == State::kClosed ? 0 : directory_bytes_ + end_records_size(options_.variant));
}

ErrorCode ZipWriter::validate_new_member(std::string_view name) const {
  if (state_ == State::kFailed) return error_;
  if (state_ != State::kReady) return ErrorCode::kZipState;
  if (!is_writable_member_name(name)) return ErrorCode::kInvalidPath;
  if (names_.contains(std::string(name))) return ErrorCode::kNameNotUnique;
  const bool is_full = options_.variant == ZipVariant::kZip32 && entries_.size() >= kMaxZip32Members;
  return is_full ? ErrorCode::kTooManyZipStreams : ErrorCode::kOk;
}

void ZipWriter::prepare_entry(std::string_view name, ZipMethod method) {
  method_ = method;
  encrypt_ = nullptr;
  content_size_ = 0;
  block_sizes_.clear();
  index_ = {};
  entry_ = {.name = std::string(name),
            .flags = kZipFlagUtf8,
            .method = static_cast<uint16_t>(method),
            .time = dos_time(options_.save_time),
            .header_offset = file_.position(),
            .external_attributes = kRegularFileAttributes,
            .extra = {}};
}

ErrorCode ZipWriter::open_member(std::string_view name, ZipMethod method, Encrypt encrypt) {
  if (const ErrorCode error = validate_new_member(name); error != ErrorCode::kOk) return error;
  if (const ErrorCode error = stop_when_cancelled(); error != ErrorCode::kOk) return error;
  prepare_entry(name, method);
  encrypt_ = std::move(encrypt);
  index_.encrypted = encrypt_ != nullptr;
  if (encrypt_) entry_.method = static_cast<uint16_t>(ZipMethod::kStored);
  const ErrorCode error = write_new_header(options_.variant == ZipVariant::kZip64, 0);
  if (error == ErrorCode::kOk) state_ = State::kInMember;
  return error;
}

// Puts sizes and CRC, known only now, into the header before the data.
ErrorCode ZipWriter::close_member() {
  const bool zip64_sizes = options_.variant == ZipVariant::kZip64;
  if (zip64_sizes) entry_.version_needed = kZipVersionZip64;
  std::string header;
  append_local_header(entry_, zip64_sizes, header);
  const platform::FileStatus status = file_.write_at(entry_.header_offset, std::as_bytes(std::span(header)));
  if (status != platform::FileStatus::kOk) return file_error(status, ErrorCode::kFileWrite);
  entry_.extra = block_index_extra(index_);
  keep_entry();
  state_ = State::kReady;
  return ErrorCode::kOk;
}

void ZipWriter::keep_entry() {
  directory_bytes_ += central_size(entry_);
  names_.insert(entry_.name);
  entries_.push_back(std::move(entry_));
}

ErrorCode ZipWriter::pack_pending(bool last) {
  if (const ErrorCode error = make_room_for_block(); error != ErrorCode::kOk) return error;
  packer_->submit_bytes(pending_, block_order(last));
  return ErrorCode::kOk;
}

BlockOrder ZipWriter::block_order(bool last) const {
  return {.method = method_, .last = last, .with_crc = encrypt_ == nullptr};
}

ErrorCode ZipWriter::make_room_for_block() {
  if (const ErrorCode error = stop_when_cancelled(); error != ErrorCode::kOk) return error;
  return packer_->is_full() ? write_front_block() : ErrorCode::kOk;
}

ErrorCode ZipWriter::write_packed_blocks() {
  while (!packer_->is_empty()) {
    if (const ErrorCode error = stop_when_cancelled(); error != ErrorCode::kOk) return error;
    if (const ErrorCode error = write_front_block(); error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

ErrorCode ZipWriter::write_front_block() {
  PackedBlock& block = packer_->front();
  if (block.error != ErrorCode::kOk) return block.error;
  std::string& bytes = block.bytes(method_);
  const uint64_t size = block_sizes_.empty() ? block.raw.size() : block_sizes_[index_.blocks.size()];
  content_size_ += size;
  if (encrypt_) {
    if (const ErrorCode error = encrypt_(bytes); error != ErrorCode::kOk) return error;
    entry_.crc = crc32_of(bytes, entry_.crc);
    entry_.size += bytes.size();
  } else {
    entry_.crc = crc32_combined(entry_.crc, block.crc, size);
    entry_.size += size;
  }
  const uint64_t offset = entry_.compressed_size;
  entry_.compressed_size += bytes.size();
  if (!bytes.empty()) {
    index_.blocks.push_back({.offset = offset, .compressed_size = bytes.size(), .size = size});
  }
  if (const ErrorCode error = write_data(bytes); error != ErrorCode::kOk) return error;
  count_unpacked(size);
  packer_->pop();
  return ErrorCode::kOk;
}

// Writes the header of a member whose data of DATA_SIZE bytes follows, if there is room for both.
ErrorCode ZipWriter::write_new_header(bool zip64_sizes, uint64_t data_size) {
  if (zip64_sizes) entry_.version_needed = kZipVersionZip64;
  std::string header;
  append_local_header(entry_, zip64_sizes, header);
  if (!has_room(header.size() + data_size)) return size_limit_error();
  return settle(put(header));
}

ErrorCode ZipWriter::write_data(std::string_view bytes) {
  return has_room(bytes.size()) ? put(bytes) : size_limit_error();
}

ErrorCode ZipWriter::put(std::string_view bytes) {
  return file_error(file_.write(std::as_bytes(std::span(bytes))), ErrorCode::kFileWrite);
}

bool ZipWriter::has_room(uint64_t more_bytes) const {
  if (options_.variant == ZipVariant::kZip64) return true;
  const uint64_t limit = std::min(options_.max_zip32_bytes, kMaxZip32Bytes);
  const uint64_t used = bytes_written() + central_size(entry_) + max_index_size(index_);
  return used <= limit && more_bytes <= limit - used && entry_.size < kMaxZip32Bytes;
}

ErrorCode ZipWriter::size_limit_error() {
  size_limit_reached_ = true;
  return ErrorCode::kFileWrite;
}

void ZipWriter::count_unpacked(uint64_t bytes) {
  unpacked_bytes_ += bytes;
  progress_->report(unpacked_bytes_, progress_total_);
}

ErrorCode ZipWriter::stop_when_cancelled() {
  if (!progress_->cancelled()) return ErrorCode::kOk;
  cancelled_ = true;
  return settle(ErrorCode::kZipState);
}

ErrorCode ZipWriter::settle(ErrorCode error) {
  if (error == ErrorCode::kOk || state_ == State::kFailed) return error;
  state_ = State::kFailed;
  error_ = error;
  packer_->clear();
  file_.discard();
  return error;
}

}  // namespace rowvane
