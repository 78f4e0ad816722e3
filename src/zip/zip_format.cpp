#include "zip/zip_format.h"

#include <algorithm>
#include <utility>

namespace rowvane {
namespace {

constexpr uint32_t kLocalHeaderSignature = 0x04034B50;
constexpr uint32_t kCentralHeaderSignature = 0x02014B50;
constexpr uint32_t kEndRecordSignature = 0x06054B50;
constexpr uint32_t kZip64EndRecordSignature = 0x06064B50;
constexpr uint32_t kZip64LocatorSignature = 0x07064B50;

// Attributes are those of Unix. Some unpackers take names of other systems for OEM text, whatever the UTF-8
// flag says.
constexpr uint16_t kMadeByUnix = 3 << 8;

constexpr size_t kExtraHeaderSize = 4;      // id and size of an extra field
constexpr size_t kZip64EndRecordLead = 12;  // signature and size, which the size does not count

template <typename Number>
void append_number(std::string& out, Number value) {
  for (size_t i = 0; i < sizeof(Number); ++i) out += static_cast<char>(value >> (8 * i) & 0xFF);
}

template <typename Number>
Number number_at(std::string_view bytes, size_t position) {
  Number value = 0;
  for (size_t i = sizeof(Number); i-- > 0;) {
    value = static_cast<Number>(value << 8 | static_cast<unsigned char>(bytes[position + i]));
  }
  return value;
}

bool exceeds_u32(uint64_t value) {
  return value >= kZip32Max;
}
uint32_t u32_or_marker(uint64_t value) {
  return static_cast<uint32_t>(std::min<uint64_t>(value, kZip32Max));
}
uint16_t u16_or_marker(uint64_t value) {
  return static_cast<uint16_t>(std::min<uint64_t>(value, kZip16Max));
}

// The part that local and central headers share, from the version to the length of the extra fields.
void append_common_fields(const ZipEntry& entry, uint16_t version, bool zip64_sizes, size_t extra_size,
                          std::string& out) {
  append_u16(out, version);
  append_u16(out, entry.flags);
  append_u16(out, entry.method);
  append_u32(out, entry.time);
  append_u32(out, entry.crc);
  append_u32(out, zip64_sizes ? kZip32Max : u32_or_marker(entry.compressed_size));
  append_u32(out, zip64_sizes ? kZip32Max : u32_or_marker(entry.size));
  append_u16(out, static_cast<uint16_t>(entry.name.size()));
  append_u16(out, static_cast<uint16_t>(extra_size));
}

void append_zip64_extra_header(std::string& out, size_t content_size) {
  append_u16(out, kZip64ExtraId);
  append_u16(out, static_cast<uint16_t>(content_size));
}

// Takes from the zip64 extra field, in their fixed order, the values whose plain fields hold the marker.
class Zip64Values {
 public:
  explicit Zip64Values(std::string_view extra)
      : content_(find_extra_field(extra, kZip64ExtraId).value_or(std::string_view())) {}

  void resolve(uint64_t& value) {
    if (value == kZip32Max) value = take<uint64_t>();
  }
  void resolve_disk(uint32_t& disk) {
    if (disk == kZip16Max) disk = take<uint32_t>();
  }
  bool complete() const { return complete_; }

 private:
  template <typename Number>
  Number take() {
    if (content_.size() < sizeof(Number)) {
      complete_ = false;
      return 0;
    }
    const Number value = number_at<Number>(content_, 0);
    content_.remove_prefix(sizeof(Number));
    return value;
  }

  std::string_view content_;
  bool complete_ = true;
};

void read_common_fields(std::string_view bytes, size_t position, ZipEntry& entry) {
  entry.version_needed = u16_at(bytes, position);
  entry.flags = u16_at(bytes, position + 2);
  entry.method = u16_at(bytes, position + 4);
  entry.time = u32_at(bytes, position + 6);
  entry.crc = u32_at(bytes, position + 10);
  entry.compressed_size = u32_at(bytes, position + 14);
  entry.size = u32_at(bytes, position + 18);
}

bool agrees(uint64_t plain, uint64_t marker, uint64_t zip64) {
  return plain == marker || plain == zip64;
}

void append_zip64_end(const ZipEnd& end, std::string& out) {
  append_u32(out, kZip64EndRecordSignature);
  append_u64(out, kZip64EndRecordSize - kZip64EndRecordLead);
  append_u16(out, kZipVersionZip64);  // made by
  append_u16(out, kZipVersionZip64);  // needed
  append_u32(out, 0);                 // this disk
  append_u32(out, 0);                 // disk of the directory
  append_u64(out, end.member_count);  // on this disk
  append_u64(out, end.member_count);
  append_u64(out, end.directory_size);
  append_u64(out, end.directory_offset);

  append_u32(out, kZip64LocatorSignature);
  append_u32(out, 0);  // disk of the zip64 end record
  append_u64(out, end.directory_offset + end.directory_size);
  append_u32(out, 1);  // disks
}

}  // namespace

void append_u16(std::string& out, uint16_t value) {
  append_number(out, value);
}
void append_u32(std::string& out, uint32_t value) {
  append_number(out, value);
}
void append_u64(std::string& out, uint64_t value) {
  append_number(out, value);
}
uint16_t u16_at(std::string_view bytes, size_t position) {
  return number_at<uint16_t>(bytes, position);
}
uint32_t u32_at(std::string_view bytes, size_t position) {
  return number_at<uint32_t>(bytes, position);
}
uint64_t u64_at(std::string_view bytes, size_t position) {
  return number_at<uint64_t>(bytes, position);
}

uint32_t dos_time(const std::tm& time) {
  const auto pack = [](int year, int month, int day, int hour, int minute, int second) {
    return static_cast<uint32_t>(year << 25 | month << 21 | day << 16 | hour << 11 | minute << 5 |
                                 second / 2);
  };
  const int year = time.tm_year - 80;
  if (year < 0) return pack(0, 1, 1, 0, 0, 0);
  if (year > 127) return pack(127, 12, 31, 23, 59, 58);
  return pack(year, time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, std::min(time.tm_sec, 59));
}

bool needs_zip64_sizes(const ZipEntry& entry) {
  return exceeds_u32(entry.size) || exceeds_u32(entry.compressed_size);
}

void append_local_header(const ZipEntry& entry, bool zip64_sizes, std::string& out) {
  constexpr size_t kSizes = 16;
  const uint16_t version = zip64_sizes ? kZipVersionZip64 : entry.version_needed;
  append_u32(out, kLocalHeaderSignature);
  append_common_fields(entry, version, zip64_sizes, zip64_sizes ? kExtraHeaderSize + kSizes : 0, out);
  out += entry.name;
  if (!zip64_sizes) return;
  append_zip64_extra_header(out, kSizes);
  append_u64(out, entry.size);
  append_u64(out, entry.compressed_size);
}

void append_central_header(const ZipEntry& entry, std::string& out) {
  std::string zip64;
  if (exceeds_u32(entry.size)) append_u64(zip64, entry.size);
  if (exceeds_u32(entry.compressed_size)) append_u64(zip64, entry.compressed_size);
  if (exceeds_u32(entry.header_offset)) append_u64(zip64, entry.header_offset);
  const size_t zip64_size = zip64.empty() ? 0 : kExtraHeaderSize + zip64.size();
  const uint16_t version = zip64.empty() ? entry.version_needed : kZipVersionZip64;

  append_u32(out, kCentralHeaderSignature);
  append_u16(out, static_cast<uint16_t>(kMadeByUnix | version));
  append_common_fields(entry, version, false, zip64_size + entry.extra.size(), out);
  append_u16(out, 0);  // comment
  append_u16(out, 0);  // disk
  append_u16(out, 0);  // internal attributes
  append_u32(out, entry.external_attributes);
  append_u32(out, u32_or_marker(entry.header_offset));
  out += entry.name;
  if (!zip64.empty()) append_zip64_extra_header(out, zip64.size());
  out += zip64;
  out += entry.extra;
}

std::optional<size_t> local_header_length(std::string_view fixed_part) {
  if (u32_at(fixed_part, 0) != kLocalHeaderSignature) return std::nullopt;
  return kLocalHeaderSize + u16_at(fixed_part, 26) + u16_at(fixed_part, 28);
}

ErrorCode parse_local_header(std::string_view bytes, ZipEntry& entry) {
  if (bytes.size() < kLocalHeaderSize || local_header_length(bytes) != bytes.size()) {
    return ErrorCode::kZipCorrupted;
  }
  read_common_fields(bytes, 4, entry);
  const size_t name_size = u16_at(bytes, 26);
  entry.name = bytes.substr(kLocalHeaderSize, name_size);
  entry.extra = bytes.substr(kLocalHeaderSize + name_size);
  Zip64Values zip64(entry.extra);
  zip64.resolve(entry.size);
  zip64.resolve(entry.compressed_size);
  return zip64.complete() ? ErrorCode::kOk : ErrorCode::kZipCorrupted;
}

ErrorCode parse_central_header(std::string_view& bytes, ZipEntry& entry) {
  if (bytes.size() < kCentralHeaderSize || u32_at(bytes, 0) != kCentralHeaderSignature) {
    return ErrorCode::kZipCorrupted;
  }
  const size_t name_size = u16_at(bytes, 28);
  const size_t extra_size = u16_at(bytes, 30);
  const size_t total = kCentralHeaderSize + name_size + extra_size + u16_at(bytes, 32);
  if (bytes.size() < total) return ErrorCode::kZipCorrupted;

  read_common_fields(bytes, 6, entry);
  entry.disk = u16_at(bytes, 34);
  entry.external_attributes = u32_at(bytes, 38);
  entry.header_offset = u32_at(bytes, 42);
  entry.name = bytes.substr(kCentralHeaderSize, name_size);
  entry.extra = bytes.substr(kCentralHeaderSize + name_size, extra_size);
  bytes.remove_prefix(total);

  Zip64Values zip64(entry.extra);
  zip64.resolve(entry.size);
  zip64.resolve(entry.compressed_size);
  zip64.resolve(entry.header_offset);
  zip64.resolve_disk(entry.disk);
  return zip64.complete() ? ErrorCode::kOk : ErrorCode::kZipCorrupted;
}

std::optional<std::string_view> find_extra_field(std::string_view extra, uint16_t id) {
  while (extra.size() >= kExtraHeaderSize) {
    const uint16_t field_id = u16_at(extra, 0);
    const size_t field_size = u16_at(extra, 2);
    extra.remove_prefix(kExtraHeaderSize);
    if (field_size > extra.size()) return std::nullopt;
    if (field_id == id) return extra.substr(0, field_size);
    extra.remove_prefix(field_size);
  }
  return std::nullopt;
}

void append_end_records(const ZipEnd& end, ZipVariant variant, std::string& out) {
  if (variant == ZipVariant::kZip64) append_zip64_end(end, out);
  append_u32(out, kEndRecordSignature);
  append_u16(out, 0);  // this disk
  append_u16(out, 0);  // disk of the directory
  append_u16(out, u16_or_marker(end.member_count));
  append_u16(out, u16_or_marker(end.member_count));
  append_u32(out, u32_or_marker(end.directory_size));
  append_u32(out, u32_or_marker(end.directory_offset));
  append_u16(out, 0);  // comment
}

std::optional<size_t> find_end_record(std::string_view tail) {
  if (tail.size() < kEndRecordSize) return std::nullopt;
  for (size_t position = tail.size() - kEndRecordSize + 1; position-- > 0;) {
    if (u32_at(tail, position) != kEndRecordSignature) continue;
    if (position + kEndRecordSize + u16_at(tail, position + 20) == tail.size()) return position;
  }
  return std::nullopt;
}

ErrorCode parse_end_record(std::string_view bytes, ZipEnd& end) {
  const auto is_first_disk = [](uint16_t disk) { return disk == 0 || disk == kZip16Max; };
  if (!is_first_disk(u16_at(bytes, 4)) || !is_first_disk(u16_at(bytes, 6))) return ErrorCode::kZipCorrupted;
  end.member_count = u16_at(bytes, 10);
  if (u16_at(bytes, 8) != end.member_count) return ErrorCode::kZipCorrupted;
  end.directory_size = u32_at(bytes, 12);
  end.directory_offset = u32_at(bytes, 16);
  return ErrorCode::kOk;
}

std::optional<uint64_t> parse_zip64_locator(std::string_view bytes) {
  if (u32_at(bytes, 0) != kZip64LocatorSignature) return std::nullopt;
  return u64_at(bytes, 8);
}

ErrorCode parse_zip64_end_record(std::string_view bytes, uint64_t record_room, ZipEnd& end) {
  if (u32_at(bytes, 0) != kZip64EndRecordSignature) return ErrorCode::kZipCorrupted;
  if (u64_at(bytes, 4) != record_room - kZip64EndRecordLead) return ErrorCode::kZipCorrupted;
  if (u32_at(bytes, 16) != 0 || u32_at(bytes, 20) != 0) return ErrorCode::kZipCorrupted;
  const ZipEnd zip64{.member_count = u64_at(bytes, 32),
                     .directory_offset = u64_at(bytes, 48),
                     .directory_size = u64_at(bytes, 40)};
  if (u64_at(bytes, 24) != zip64.member_count || !agrees(end.member_count, kZip16Max, zip64.member_count) ||
      !agrees(end.directory_size, kZip32Max, zip64.directory_size) ||
      !agrees(end.directory_offset, kZip32Max, zip64.directory_offset)) {
    return ErrorCode::kZipCorrupted;
  }
  end = zip64;
  return ErrorCode::kOk;
}

}  // namespace rowvane
