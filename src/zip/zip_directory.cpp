#include "zip/zip_directory.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "zip/zip_names.h"
#include "zip/zlib_codec.h"

namespace rowvane {
namespace {

// Where the directory lies, and where the archive's members must end.
struct DirectoryPlace {
  ZipEnd end;
  ZipVariant variant = ZipVariant::kZip32;
};

// A file without an end record has lost its end when it starts like an archive.
ErrorCode missing_end_error(const ByteSource& source) {
  std::string start(4, '\0');
  if (source.size() < start.size()) return ErrorCode::kZipUnexpectedEnd;
  if (const ErrorCode error = source.read_at(0, start); error != ErrorCode::kOk) return error;
  return start == "PK\3\4" ? ErrorCode::kZipUnexpectedEnd : ErrorCode::kZipCorrupted;
}

// Reads the zip64 end record that LOCATOR_POSITION's locator names; it must reach up to the locator.
ErrorCode read_zip64_end(const ByteSource& source, uint64_t record_position, uint64_t locator_position,
                         ZipEnd& end) {
  if (record_position > locator_position || locator_position - record_position < kZip64EndRecordSize) {
    return ErrorCode::kZipCorrupted;
  }
  std::string record(kZip64EndRecordSize, '\0');
  if (const ErrorCode error = source.read_at(record_position, record); error != ErrorCode::kOk) return error;
  return parse_zip64_end_record(record, locator_position - record_position, end);
}

// The directory must end exactly where the end records begin, so that offsets count from the start of the
// file.
ErrorCode validate_place(const DirectoryPlace& place, uint64_t records_position) {
  const ZipEnd& end = place.end;
  if (end.directory_size > records_position ||
      end.directory_offset != records_position - end.directory_size) {
    return ErrorCode::kZipCorrupted;
  }
  return end.member_count <= end.directory_size / kCentralHeaderSize ? ErrorCode::kOk
                                                                     : ErrorCode::kZipCorrupted;
}

ErrorCode find_directory(const ByteSource& source, DirectoryPlace& place) {
  const uint64_t tail_size =
      std::min<uint64_t>(source.size(), kMaxArchiveComment + kEndRecordSize + kZip64LocatorSize);
  std::string tail(static_cast<size_t>(tail_size), '\0');
  const uint64_t tail_position = source.size() - tail_size;
  if (const ErrorCode error = source.read_at(tail_position, tail); error != ErrorCode::kOk) return error;

  const auto end_record = find_end_record(tail);
  if (!end_record) return missing_end_error(source);
  ErrorCode error = parse_end_record(std::string_view(tail).substr(*end_record), place.end);
  if (error != ErrorCode::kOk) return error;

  uint64_t records_position = tail_position + *end_record;
  if (*end_record >= kZip64LocatorSize) {
    const size_t locator = *end_record - kZip64LocatorSize;
    if (const auto record = parse_zip64_locator(std::string_view(tail).substr(locator, kZip64LocatorSize))) {
      error = read_zip64_end(source, *record, tail_position + locator, place.end);
      if (error != ErrorCode::kOk) return error;
      place.variant = ZipVariant::kZip64;
      records_position = *record;
    }
  }
  return validate_place(place, records_position);
}

bool sizes_are_plausible(const ZipMember& member) {
  if (member.is_encrypted()) return true;  // never read
  if (member.is_stored()) return member.size == member.compressed_size;
  if (!member.is_deflated()) return true;
  return member.size / kMaxDeflateRatio <= member.compressed_size;
}

// An index that does not fit is left out: the member can still be read as a whole.
void take_block_index(const ZipEntry& entry, ZipMember& member) {
  if (!member.is_stored() && !member.is_deflated()) return;
  const auto content = find_extra_field(entry.extra, kBlockIndexExtraId);
  if (!content) return;
  if (!decode_block_index(*content, member.compressed_size, member.size, member.is_stored(), member.index)) {
    member.index = {};
  }
}

ErrorCode make_member(const ZipEntry& entry, ZipMember& member) {
  if (entry.disk != 0) return ErrorCode::kZipCorrupted;
  if (!decode_member_name(entry.name, (entry.flags & kZipFlagUtf8) != 0, member.name)) {
    return ErrorCode::kZipCorrupted;
  }
  member.flags = entry.flags;
  member.method = entry.method;
  member.time = entry.time;
  member.crc = entry.crc;
  member.compressed_size = entry.compressed_size;
  member.size = entry.size;
  member.header_offset = entry.header_offset;
  member.raw_name_size = entry.name.size();
  member.raw_name_crc = crc32_of(entry.name);
  if (!is_safe_member_name(member.name) || !sizes_are_plausible(member)) return ErrorCode::kZipCorrupted;
  take_block_index(entry, member);
  return ErrorCode::kOk;
}

// Sets where each member must end. kZipCorrupted when one reaches into the next or into the directory.
ErrorCode lay_out_members(uint64_t directory_offset, std::vector<ZipMember>& members) {
  std::vector<ZipMember*> by_offset;
  by_offset.reserve(members.size());
  for (ZipMember& member : members) by_offset.push_back(&member);
  std::ranges::sort(by_offset, std::greater(), &ZipMember::header_offset);

  uint64_t limit = directory_offset;
  for (ZipMember* member : by_offset) {
    const uint64_t header_size = kLocalHeaderSize + member->raw_name_size;
    if (member->header_offset > limit || limit - member->header_offset < header_size ||
        limit - member->header_offset - header_size < member->compressed_size) {
      return ErrorCode::kZipCorrupted;
    }
    member->end_limit = limit;
    limit = member->header_offset;
  }
  return ErrorCode::kOk;
}

ErrorCode read_members(const ByteSource& source, const ZipEnd& end, std::vector<ZipMember>& members) {
  std::string directory(static_cast<size_t>(end.directory_size), '\0');
  if (const ErrorCode error = source.read_at(end.directory_offset, directory); error != ErrorCode::kOk)
    return error;
  std::string_view rest = directory;
  members.reserve(static_cast<size_t>(end.member_count));
  for (uint64_t i = 0; i < end.member_count; ++i) {
    ZipEntry entry;
    if (const ErrorCode error = parse_central_header(rest, entry); error != ErrorCode::kOk) return error;
    if (const ErrorCode error = make_member(entry, members.emplace_back()); error != ErrorCode::kOk)
      return error;
  }
  if (!rest.empty()) return ErrorCode::kZipCorrupted;
  return lay_out_members(end.directory_offset, members);
}

}  // namespace

ErrorCode read_zip_directory(const ByteSource& source, ZipVariant& variant, std::vector<ZipMember>& members) {
  try {
    DirectoryPlace place;
    if (const ErrorCode error = find_directory(source, place); error != ErrorCode::kOk) return error;
    variant = place.variant;
    return read_members(source, place.end, members);
  } catch (const std::bad_alloc&) {
    return ErrorCode::kZipMemory;
  } catch (const std::length_error&) {
    return ErrorCode::kZipMemory;
  }
}

}  // namespace rowvane
