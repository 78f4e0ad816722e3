#include <optional>

#include "zip/zip_test_support.h"

namespace rowvane {
namespace {

ErrorCode open_result(std::string bytes) {
  ZipReader reader;
  return open_bytes(reader, std::move(bytes));
}

// Opening ARCHIVE and reading its only member.
ErrorCode read_result(std::string archive) {
  ZipReader reader;
  if (const ErrorCode error = open_bytes(reader, std::move(archive)); error != ErrorCode::kOk) return error;
  std::string content;
  return reader.read(reader.members().at(0), 1 << 20, content);
}

std::string small_archive(ZipVariant variant) {
  TestFolder folder;
  ZipWriter writer;
  EXPECT_EQ(writer.create(folder.path("a"), {.variant = variant}), ErrorCode::kOk);
  EXPECT_EQ(writer.add("stored", "stored text", ZipMethod::kStored), ErrorCode::kOk);
  EXPECT_EQ(writer.add("deflated", sample_text(200), ZipMethod::kDeflated), ErrorCode::kOk);
  const auto produce = [](uint64_t block, std::string& out) {
    out = sample_text(100, static_cast<unsigned>(block));
    return ErrorCode::kOk;
  };
  EXPECT_EQ(writer.add_blocks("blocks", ZipMethod::kDeflated, 3, produce), ErrorCode::kOk);
  EXPECT_EQ(writer.finish(), ErrorCode::kOk);
  return read_file(folder.path("a"));
}

// In the order of the archive.
std::vector<std::string> expected_contents() {
  return {"stored text", sample_text(200), sample_text(100, 0) + sample_text(100, 1) + sample_text(100, 2)};
}

// What reading MEMBER gives, as a whole or by blocks; nothing when it is refused.
std::optional<std::string> read_whole(const ZipReader& reader, const ZipMember& member) {
  std::string content;
  if (reader.read(member, 1 << 20, content) != ErrorCode::kOk) return std::nullopt;
  return content;
}

std::optional<std::string> read_by_blocks(const ZipReader& reader, const ZipMember& member) {
  std::string content;
  std::vector<uint32_t> crcs(ZipReader::block_count(member));
  for (size_t k = 0; k < crcs.size(); ++k) {
    std::string block;
    if (reader.read_block(member, k, block, crcs[k]) != ErrorCode::kOk) return std::nullopt;
    content += block;
  }
  if (ZipReader::verify_blocks(member, crcs) != ErrorCode::kOk) return std::nullopt;
  return content;
}

class ZipDamage : public testing::TestWithParam<ZipVariant> {};

TEST_P(ZipDamage, EveryTruncationIsRefused) {
  const std::string archive = small_archive(GetParam());
  ASSERT_EQ(open_result(archive), ErrorCode::kOk);
  for (size_t size = 0; size < archive.size(); ++size) {
    EXPECT_EQ(open_result(archive.substr(0, size)), ErrorCode::kZipUnexpectedEnd) << size;
  }
}

TEST_P(ZipDamage, EveryFlippedBitGivesAnErrorOrTheRightContent) {
  const std::string archive = small_archive(GetParam());
  const std::vector<std::string> expected = expected_contents();
  size_t refused = 0;
  for (size_t bit = 0; bit < archive.size() * 8; ++bit) {
    std::string damaged = archive;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
    ZipReader reader;
    if (open_bytes(reader, damaged) != ErrorCode::kOk) {
      ++refused;
      continue;
    }
    ASSERT_EQ(reader.members().size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
      const auto whole = read_whole(reader, reader.members()[i]);
      const auto blocks = read_by_blocks(reader, reader.members()[i]);
      if (!whole) ++refused;
      EXPECT_EQ(whole.value_or(expected[i]), expected[i]) << "bit " << bit;
      EXPECT_EQ(blocks.value_or(expected[i]), expected[i]) << "bit " << bit;
    }
  }
  EXPECT_GT(refused, archive.size() * 4);  // most bits matter
}

INSTANTIATE_TEST_SUITE_P(Variants, ZipDamage, testing::Values(ZipVariant::kZip64, ZipVariant::kZip32));

TEST(ZipHostile, FilesThatAreNoArchives) {
  EXPECT_EQ(open_result(""), ErrorCode::kZipUnexpectedEnd);
  EXPECT_EQ(open_result(std::string(100'000, 'x')), ErrorCode::kZipCorrupted);
  ZipReader reader;
  EXPECT_EQ(reader.open("/no/such/file"), ErrorCode::kFileOpen);
  EXPECT_EQ(open_result(assemble({})), ErrorCode::kOk);
  EXPECT_EQ(open_result(assemble({}, ZipVariant::kZip64)), ErrorCode::kOk);
}

TEST(ZipHostile, UnsafeAndDuplicateNames) {
  for (const std::string& name : {std::string("../a"), std::string("a/../b"), std::string("a/.."),
                                  std::string("/a"), std::string("C:/a"), std::string("c:a"),
                                  std::string("a\\b"), std::string("a\0b", 3), std::string()}) {
    EXPECT_EQ(open_result(assemble({stored_member(name, "x")})), ErrorCode::kZipCorrupted) << name;
  }
  RawMember broken_utf8 = stored_member("a\x81", "x");
  EXPECT_EQ(read_result(assemble({broken_utf8})), ErrorCode::kOk);
  broken_utf8.local.flags = broken_utf8.central.flags = kZipFlagUtf8;
  EXPECT_EQ(open_result(assemble({broken_utf8})), ErrorCode::kZipCorrupted);
  EXPECT_EQ(open_result(assemble({stored_member("a", "x"), stored_member("a", "y")})),
            ErrorCode::kZipCorrupted);
  // The same name once in code page 437 and once in UTF-8.
  EXPECT_EQ(open_result(assemble({stored_member("\x81", "x"), stored_member("\xC3\xBC", "y")})),
            ErrorCode::kZipCorrupted);
}

TEST(ZipHostile, OverlappingMembers) {
  RawMember a = stored_member("a", std::string(100, 'a'));
  RawMember b = stored_member("b", "b");
  b.central.header_offset = 50;
  EXPECT_EQ(open_result(assemble({a, b})), ErrorCode::kZipCorrupted);
  // One member's extra fields reach over the next member, which the directory does not tell.
  a = stored_member("a", "aaaa");
  const std::string archive = assemble({a, stored_member("b", "b")});
  std::string hidden = archive;
  hidden[28] = 10;
  ZipReader reader;
  ASSERT_EQ(open_bytes(reader, hidden), ErrorCode::kOk);
  std::string content;
  EXPECT_EQ(reader.read(*reader.find("a"), 100, content), ErrorCode::kZipCorrupted);
  EXPECT_EQ(content_of(reader, "b"), "b");
  // The last member reaches into the directory.
  RawMember last = stored_member("a", "aaaa");
  last.central.size = last.central.compressed_size = 10;
  EXPECT_EQ(open_result(assemble({last})), ErrorCode::kZipCorrupted);
  last.central.size = last.central.compressed_size = uint64_t{1} << 63;
  EXPECT_EQ(open_result(assemble({last}, ZipVariant::kZip64)), ErrorCode::kZipCorrupted);
}

TEST(ZipHostile, BombsAndWrongSizes) {
  RawMember bomb = deflated_member("a", std::string(100'000, '\0'));
  EXPECT_EQ(read_result(assemble({bomb})), ErrorCode::kOk);
  ZipReader reader;
  ASSERT_EQ(open_bytes(reader, assemble({bomb})), ErrorCode::kOk);
  std::string content;
  EXPECT_EQ(reader.read(reader.members()[0], 99'999, content), ErrorCode::kZipMemory);
  uint32_t crc = 0;
  EXPECT_EQ(reader.read_block(reader.members()[0], 0, content, crc, 99'999), ErrorCode::kZipMemory);

  for (const uint64_t size : {uint64_t{99'999}, uint64_t{100'001}, uint64_t{0}, uint64_t{1} << 40}) {
    bomb.local.size = bomb.central.size = size;
    EXPECT_EQ(read_result(assemble({bomb})), ErrorCode::kZipCorrupted) << size;
  }
  RawMember longer = deflated_member("a", "text");
  longer.data += "garbage";
  longer.local.compressed_size = longer.central.compressed_size = longer.data.size();
  EXPECT_EQ(read_result(assemble({longer})), ErrorCode::kZipCorrupted);
  RawMember stored = stored_member("a", "text");
  stored.local.size = stored.central.size = 3;
  EXPECT_EQ(read_result(assemble({stored})), ErrorCode::kZipCorrupted);
}

TEST(ZipHostile, HeadersThatContradictEachOther) {
  const RawMember good = deflated_member("name", "text text text");
  const auto with_local = [&](auto change) {
    RawMember member = good;
    change(member.local);
    return read_result(assemble({member}));
  };
  EXPECT_EQ(with_local([](ZipEntry&) {}), ErrorCode::kOk);
  EXPECT_EQ(with_local([](ZipEntry& local) { local.name = "nAme"; }), ErrorCode::kZipCorrupted);
  EXPECT_EQ(with_local([](ZipEntry& local) { local.method = 0; }), ErrorCode::kZipCorrupted);
  EXPECT_EQ(with_local([](ZipEntry& local) { local.crc ^= 1; }), ErrorCode::kZipCorrupted);
  EXPECT_EQ(with_local([](ZipEntry& local) { ++local.size; }), ErrorCode::kZipCorrupted);
  EXPECT_EQ(with_local([](ZipEntry& local) { --local.compressed_size; }), ErrorCode::kZipCorrupted);
  EXPECT_EQ(with_local([](ZipEntry& local) { local.flags = kZipFlagEncrypted; }), ErrorCode::kZipCorrupted);
}

TEST(ZipHostile, UnreadableMembersAreListedOnly) {
  RawMember encrypted = stored_member("encrypted", "x");
  encrypted.local.flags = encrypted.central.flags = kZipFlagEncrypted;
  RawMember foreign = stored_member("lzma", "x");
  foreign.local.method = foreign.central.method = 14;
  RawMember folder = stored_member("folder/", "");
  ZipReader reader;
  ASSERT_EQ(open_bytes(reader, assemble({encrypted, foreign, folder})), ErrorCode::kOk);
  EXPECT_TRUE(reader.find("encrypted")->is_encrypted());
  EXPECT_TRUE(reader.find("folder/")->is_folder());
  std::string content;
  EXPECT_EQ(reader.read(*reader.find("encrypted"), 10, content), ErrorCode::kFileDecrypt);
  EXPECT_EQ(reader.read(*reader.find("lzma"), 10, content), ErrorCode::kZlibUnknown);
}

TEST(ZipHostile, EndRecords) {
  const std::string archive = assemble({stored_member("a", "a"), stored_member("b", "b")});
  const size_t end = archive.size() - kEndRecordSize;
  const auto with_byte = [&](size_t position, char value) {
    std::string changed = archive;
    changed[end + position] = value;
    return open_result(changed);
  };
  EXPECT_EQ(with_byte(4, 1), ErrorCode::kZipCorrupted);   // several disks
  EXPECT_EQ(with_byte(8, 1), ErrorCode::kZipCorrupted);   // counts differ
  EXPECT_EQ(with_byte(16, 1), ErrorCode::kZipCorrupted);  // wrong offset
  for (const char count : {char{1}, char{3}, char{127}}) {
    std::string changed = archive;
    changed[end + 8] = changed[end + 10] = count;
    EXPECT_EQ(open_result(changed), ErrorCode::kZipCorrupted) << int{count};
  }
  std::string commented = archive + std::string(65535, 'c');
  commented[end + 20] = commented[end + 21] = '\xFF';
  EXPECT_EQ(open_result(commented), ErrorCode::kOk);
  EXPECT_EQ(open_result(commented + "c"), ErrorCode::kZipUnexpectedEnd);

  RawMember other_disk = stored_member("a", "a");
  std::string moved = assemble({other_disk});
  moved[moved.size() - kEndRecordSize - 1 - kCentralHeaderSize + 34] = 1;
  EXPECT_EQ(open_result(moved), ErrorCode::kZipCorrupted);
}

TEST(ZipHostile, BytesBeforeTheArchive) {
  const std::string prefix(1000, '#');
  EXPECT_EQ(read_result(assemble({stored_member("a", "a")}, ZipVariant::kZip64, prefix)), ErrorCode::kOk);
  EXPECT_EQ(open_result(prefix + assemble({stored_member("a", "a")})), ErrorCode::kZipCorrupted);
}

TEST(ZipHostile, BlockIndexThatLies) {
  const std::string text = sample_text(3000);
  RawMember member = deflated_member("a", text);
  const uint64_t packed = member.data.size();
  ZipBlockIndex index{.blocks_end_at_records = false,
                      .blocks = {{0, packed / 2, 1500}, {packed / 2, packed - packed / 2, 1500}}};
  member.central.extra = encode_block_index(index, 1000);
  ZipReader reader;
  ASSERT_EQ(open_bytes(reader, assemble({member})), ErrorCode::kOk);
  ASSERT_EQ(ZipReader::block_count(reader.members()[0]), 2U);
  std::string block;
  uint32_t crc = 0;
  EXPECT_EQ(reader.read_block(reader.members()[0], 0, block, crc), ErrorCode::kZipCorrupted);
  EXPECT_EQ(reader.read_block(reader.members()[0], 1, block, crc), ErrorCode::kZipCorrupted);
  EXPECT_EQ(content_of(reader, "a"), text);

  index.blocks[1].size = 1501;  // does not add up: as if it were not there
  member.central.extra = encode_block_index(index, 1000);
  ASSERT_EQ(open_bytes(reader, assemble({member})), ErrorCode::kOk);
  EXPECT_EQ(ZipReader::block_count(reader.members()[0]), 1U);
  EXPECT_EQ(content_by_blocks(reader, reader.members()[0]), text);
}

// 5 GB of zeros in the middle that nobody has to store.
class SparseSource final : public ByteSource {
 public:
  SparseSource(std::string head, uint64_t gap, std::string tail)
      : head_(std::move(head)), gap_(gap), tail_(std::move(tail)) {}
  uint64_t size() const override { return head_.size() + gap_ + tail_.size(); }
  ErrorCode read_at(uint64_t offset, std::span<char> buffer) const override {
    for (char& byte : buffer) {
      if (offset >= size()) return ErrorCode::kZipUnexpectedEnd;
      byte = offset < head_.size()          ? head_[offset]
             : offset < head_.size() + gap_ ? '\0'
                                            : tail_[offset - head_.size() - gap_];
      ++offset;
    }
    return ErrorCode::kOk;
  }

 private:
  std::string head_;
  uint64_t gap_;
  std::string tail_;
};

TEST(ZipHostile, OffsetsAndSizesBeyondFourGigabytes) {
  const uint64_t gap = 5'000'000'000;
  ZipEntry big{.name = "big", .compressed_size = gap, .size = gap, .extra = {}};
  std::string head;
  append_local_header(big, true, head);
  RawMember small = stored_member("small", "beyond");
  small.central.header_offset = head.size() + gap;
  std::string tail;
  append_local_header(small.local, false, tail);
  tail += small.data;
  ZipEnd end{.member_count = 2, .directory_offset = head.size() + gap + tail.size(), .directory_size = 0};
  const size_t directory = tail.size();
  append_central_header(big, tail);
  append_central_header(small.central, tail);
  end.directory_size = tail.size() - directory;
  append_end_records(end, ZipVariant::kZip64, tail);

  ZipReader reader;
  ASSERT_EQ(reader.open(std::make_unique<SparseSource>(head, gap, tail)), ErrorCode::kOk);
  EXPECT_EQ(reader.find("big")->size, gap);
  EXPECT_EQ(content_of(reader, "small"), "beyond");
  ZipMemberStream stream;
  ASSERT_EQ(reader.stream(*reader.find("big"), stream), ErrorCode::kOk);
  std::string start(1000, 'x');
  size_t read = 0;
  ASSERT_EQ(stream.read(start, read), ErrorCode::kOk);
  EXPECT_EQ(start, std::string(1000, '\0'));
  // Copying it into the old variant is refused before anything is written.
  TestFolder folder;
  ZipWriter writer;
  ASSERT_EQ(writer.create(folder.path("a"), {.variant = ZipVariant::kZip32}), ErrorCode::kOk);
  EXPECT_EQ(writer.copy(reader, *reader.find("big"), "big"), ErrorCode::kFileWrite);
  EXPECT_TRUE(writer.size_limit_reached());
  EXPECT_EQ(writer.copy(reader, *reader.find("small"), "small"), ErrorCode::kOk);
  EXPECT_EQ(writer.finish(), ErrorCode::kOk);
}

}  // namespace
}  // namespace rowvane
