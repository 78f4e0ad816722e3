// What the tests of archives share.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/temporary_folder.h"
#include "zip/zip_reader.h"
#include "zip/zip_writer.h"

namespace rowvane {

using TestFolder = platform::TemporaryFolder;

inline std::string read_file(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream content;
  content << file.rdbuf();
  return content.str();
}

inline void write_file(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

// Lines that deflate to about a third, different for each SEED.
inline std::string sample_text(size_t size, unsigned seed = 1) {
  std::mt19937 random(seed);
  std::string text;
  while (text.size() < size)
    text += std::to_string(random() % 100000) + ";Lisbon;" + std::to_string(random() % 7) + "\n";
  text.resize(size);
  return text;
}

inline ErrorCode open_bytes(ZipReader& reader, std::string bytes) {
  return reader.open(std::make_unique<MemoryByteSource>(std::move(bytes)));
}

inline std::string content_of(const ZipReader& reader, const std::string& name) {
  const ZipMember* member = reader.find(name);
  if (member == nullptr) return "no member " + name;
  std::string content;
  const ErrorCode error = reader.read(*member, uint64_t{1} << 30, content);
  return error == ErrorCode::kOk ? content : "error " + std::to_string(static_cast<int>(error));
}

// The member as its blocks give it, with the CRCs checked.
inline std::string content_by_blocks(const ZipReader& reader, const ZipMember& member) {
  std::string content;
  std::vector<uint32_t> crcs(ZipReader::block_count(member));
  for (size_t k = 0; k < crcs.size(); ++k) {
    std::string block;
    if (reader.read_block(member, k, block, crcs[k]) != ErrorCode::kOk) return "block " + std::to_string(k);
    content += block;
  }
  return ZipReader::verify_blocks(member, crcs) == ErrorCode::kOk ? content : "wrong CRC";
}

// One member of an archive built by hand: the two headers may contradict each other.
struct RawMember {
  ZipEntry local;
  ZipEntry central;
  std::string data;
};

inline RawMember stored_member(const std::string& name, const std::string& data) {
  ZipEntry entry{
      .name = name, .crc = crc32_of(data), .compressed_size = data.size(), .size = data.size(), .extra = {}};
  return {.local = entry, .central = entry, .data = data};
}

inline RawMember deflated_member(const std::string& name, const std::string& data) {
  RawMember member = stored_member(name, data);
  EXPECT_EQ(Deflater(6).deflate_block(data, true, member.data), ErrorCode::kOk);
  for (ZipEntry* entry : {&member.local, &member.central}) {
    entry->method = 8;
    entry->compressed_size = member.data.size();
  }
  return member;
}

// Central headers with an offset of 0 get the right one.
inline std::string assemble(std::vector<RawMember> members, ZipVariant variant = ZipVariant::kZip32,
                            std::string archive = {}) {
  for (RawMember& member : members) {
    if (member.central.header_offset == 0) member.central.header_offset = archive.size();
    append_local_header(member.local, false, archive);
    archive += member.data;
  }
  ZipEnd end{.member_count = members.size(), .directory_offset = archive.size(), .directory_size = 0};
  for (const RawMember& member : members) append_central_header(member.central, archive);
  end.directory_size = archive.size() - end.directory_offset;
  append_end_records(end, variant, archive);
  return archive;
}

}  // namespace rowvane
