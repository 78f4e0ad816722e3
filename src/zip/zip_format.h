// The records of a zip archive and their bytes. All numbers in them are little-endian.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "core/messages/error_code.h"

namespace rowvane {

enum class ZipVariant {
  kZip64,  // no limit on sizes and members
  kZip32,  // read by old programs too; at most 4 GB and 65,535 members
};

enum class ZipMethod : uint16_t { kStored = 0, kDeflated = 8 };

inline constexpr uint16_t kZipFlagEncrypted = 1 << 0;
inline constexpr uint16_t kZipFlagDescriptor = 1 << 3;  // sizes and CRC follow the data
inline constexpr uint16_t kZipFlagPatched = 1 << 5;
inline constexpr uint16_t kZipFlagStrongEncryption = 1 << 6;
inline constexpr uint16_t kZipFlagUtf8 = 1 << 11;
inline constexpr uint16_t kZipFlagMaskedHeader = 1 << 13;

inline constexpr uint16_t kZipVersionDeflate = 20;
inline constexpr uint16_t kZipVersionZip64 = 45;

inline constexpr uint16_t kZip64ExtraId = 0x0001;
inline constexpr uint32_t kZip32Max = 0xFFFFFFFF;  // in a 32-bit field: look into the zip64 extra field
inline constexpr uint16_t kZip16Max = 0xFFFF;

inline constexpr size_t kLocalHeaderSize = 30;    // without name and extra fields
inline constexpr size_t kCentralHeaderSize = 46;  // without name, extra fields and comment
inline constexpr size_t kEndRecordSize = 22;      // without comment
inline constexpr size_t kZip64EndRecordSize = 56;
inline constexpr size_t kZip64LocatorSize = 20;
inline constexpr size_t kMaxArchiveComment = 65535;

void append_u16(std::string& out, uint16_t value);
void append_u32(std::string& out, uint32_t value);
void append_u64(std::string& out, uint64_t value);
// The number at POSITION, which must lie within BYTES.
uint16_t u16_at(std::string_view bytes, size_t position);
uint32_t u32_at(std::string_view bytes, size_t position);
uint64_t u64_at(std::string_view bytes, size_t position);

// Date in the upper and time in the lower 16 bits, in steps of two seconds. Times before 1980 and after 2107
// become the first and last that can be written. TIME is taken as it is, without regard to time zones.
uint32_t dos_time(const std::tm& time);

// What local and central headers tell of one member, with the zip64 extra field already resolved.
struct ZipEntry {
  std::string name;  // bytes as in the file
  uint16_t version_needed = kZipVersionDeflate;
  uint16_t flags = 0;
  uint16_t method = 0;
  uint32_t time = 0;  // see dos_time
  uint32_t crc = 0;
  uint64_t compressed_size = 0;
  uint64_t size = 0;
  uint64_t header_offset = 0;        // central header only
  uint32_t disk = 0;                 // central header only
  uint32_t external_attributes = 0;  // central header only
  std::string extra;                 // extra fields; when writing, all but zip64
};

// True when a size of ENTRY needs the zip64 extra field in its local header.
bool needs_zip64_sizes(const ZipEntry& entry);

// With ZIP64_SIZES the sizes stand in a zip64 extra field whatever they are.
void append_local_header(const ZipEntry& entry, bool zip64_sizes, std::string& out);
void append_central_header(const ZipEntry& entry, std::string& out);

// Bytes of the whole local header, from its fixed part of kLocalHeaderSize bytes; nothing without its
// signature.
std::optional<size_t> local_header_length(std::string_view fixed_part);
// BYTES is the whole local header.
ErrorCode parse_local_header(std::string_view bytes, ZipEntry& entry);
// Takes one central header from the front of BYTES. kZipCorrupted when there is none.
ErrorCode parse_central_header(std::string_view& bytes, ZipEntry& entry);

// Content of the first extra field ID; nothing when there is none. Fields cut off by the end are ignored.
std::optional<std::string_view> find_extra_field(std::string_view extra, uint16_t id);

// Where the central directory lies.
struct ZipEnd {
  uint64_t member_count = 0;
  uint64_t directory_offset = 0;
  uint64_t directory_size = 0;
};

// Writes the records that end the archive and follow the directory at once.
void append_end_records(const ZipEnd& end, ZipVariant variant, std::string& out);

// Position of the end record in TAIL, the last bytes of the file; its comment must reach to the end of TAIL.
std::optional<size_t> find_end_record(std::string_view tail);
// BYTES starts with the end record. kZipCorrupted for archives of several disks.
ErrorCode parse_end_record(std::string_view bytes, ZipEnd& end);
// BYTES are the kZip64LocatorSize ones before the end record. Nothing when they are no locator.
std::optional<uint64_t> parse_zip64_locator(std::string_view bytes);
// BYTES is the fixed part of the zip64 end record. Values of END that are not marked as moved there must
// agree.
ErrorCode parse_zip64_end_record(std::string_view bytes, uint64_t record_room, ZipEnd& end);

}  // namespace rowvane
