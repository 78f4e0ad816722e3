#include <thread>

#include "zip/zip_names.h"
#include "zip/zip_test_support.h"

namespace rowvane {
namespace {

struct Variant {
  ZipVariant variant;
  int threads;
  int level;
};

class ZipRoundTrip : public testing::TestWithParam<Variant> {
 protected:
  ZipWriterOptions options() const {
    return {.variant = GetParam().variant, .level = GetParam().level, .threads = GetParam().threads};
  }
  TestFolder folder_;
  std::string path_ = folder_.path("a.zip");
};

TEST_P(ZipRoundTrip, WholeMembersStreamsAndBlocks) {
  const std::string big = sample_text(3 * kZipBlockSize + 17);
  ZipWriter writer;
  ASSERT_EQ(writer.create(path_, options()), ErrorCode::kOk);
  ASSERT_EQ(writer.add("empty deflated", "", ZipMethod::kDeflated), ErrorCode::kOk);
  ASSERT_EQ(writer.add("empty stored", "", ZipMethod::kStored), ErrorCode::kOk);
  ASSERT_EQ(writer.add("small/\xC3\xA4\xE2\x82\xAC", "hello hello hello", ZipMethod::kDeflated),
            ErrorCode::kOk);
  ASSERT_EQ(writer.add("big", big, ZipMethod::kDeflated), ErrorCode::kOk);
  for (const ZipMethod method : {ZipMethod::kStored, ZipMethod::kDeflated}) {
    const std::string suffix = method == ZipMethod::kStored ? " stored" : " deflated";
    ASSERT_EQ(writer.begin("stream" + suffix, method), ErrorCode::kOk);
    for (size_t i = 0; i < big.size(); i += 77777) {
      ASSERT_EQ(writer.write(std::string_view(big).substr(i, 77777)), ErrorCode::kOk);
    }
    ASSERT_EQ(writer.end(), ErrorCode::kOk);
    ASSERT_EQ(writer.begin("empty stream" + suffix, method), ErrorCode::kOk);
    ASSERT_EQ(writer.end(), ErrorCode::kOk);
    const auto uneven = [&](uint64_t block, std::string& out) {  // sizes from nothing to 1900 bytes
      out = sample_text(block % 20 * 100, static_cast<unsigned>(block));
      return ErrorCode::kOk;
    };
    ASSERT_EQ(writer.add_blocks("blocks" + suffix, method, 201, uneven, true), ErrorCode::kOk);
    ASSERT_EQ(writer.add_blocks("no blocks" + suffix, method, 0, uneven), ErrorCode::kOk);
  }
  ASSERT_EQ(writer.finish(), ErrorCode::kOk);
  EXPECT_EQ(folder_.file_count(), 1U);
  EXPECT_EQ(writer.bytes_written(), std::filesystem::file_size(path_));

  std::string blocks;
  for (unsigned block = 0; block < 201; ++block) blocks += sample_text(block % 20 * 100, block);
  ZipReader reader;
  ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
  EXPECT_EQ(reader.variant(), GetParam().variant);
  EXPECT_EQ(reader.members().size(), 12U);
  EXPECT_EQ(content_of(reader, "small/\xC3\xA4\xE2\x82\xAC"), "hello hello hello");
  EXPECT_EQ(content_of(reader, "big"), big);
  for (const std::string suffix : {" stored", " deflated"}) {
    EXPECT_EQ(content_of(reader, "empty" + suffix), "");
    EXPECT_EQ(content_of(reader, "empty stream" + suffix), "");
    EXPECT_EQ(content_of(reader, "no blocks" + suffix), "");
    EXPECT_EQ(content_of(reader, "stream" + suffix), big);
    EXPECT_EQ(content_of(reader, "blocks" + suffix), blocks);
    EXPECT_TRUE(reader.find("blocks" + suffix)->index.blocks_end_at_records);
    EXPECT_EQ(content_by_blocks(reader, *reader.find("blocks" + suffix)), blocks);
    EXPECT_EQ(ZipReader::block_count(*reader.find("stream" + suffix)), 4U);
  }
  for (const ZipMember& member : reader.members()) {
    EXPECT_EQ(content_by_blocks(reader, member), content_of(reader, member.name)) << member.name;
  }
  EXPECT_EQ(reader.find("big")->index.blocks[1].size, kZipBlockSize);
  EXPECT_TRUE(reader.find("empty deflated")->index.blocks.empty());
}

std::string variant_name(const testing::TestParamInfo<Variant>& info) {
  const std::string variant = info.param.variant == ZipVariant::kZip64 ? "Zip64" : "Zip32";
  return variant + "Level" + std::to_string(info.param.level) + "Threads" +
         std::to_string(info.param.threads);
}

INSTANTIATE_TEST_SUITE_P(Variants, ZipRoundTrip,
                         testing::Values(Variant{ZipVariant::kZip64, 1, 6}, Variant{ZipVariant::kZip64, 4, 1},
                                         Variant{ZipVariant::kZip32, 3, 0},
                                         Variant{ZipVariant::kZip32, 2, 9}),
                         variant_name);

TEST(ZipThreads, SeveralThreadsReadOneArchive) {
  TestFolder folder;
  const std::string text = sample_text(600'000);
  const size_t block_size = 10'000;
  ZipWriter writer;
  ASSERT_EQ(writer.create(folder.path("a"), {.level = 1, .threads = 4}), ErrorCode::kOk);
  const auto produce = [&](uint64_t block, std::string& out) {
    out.assign(text, block * block_size, block_size);
    return ErrorCode::kOk;
  };
  ASSERT_EQ(writer.add_blocks("t", ZipMethod::kDeflated, 60, produce), ErrorCode::kOk);
  ASSERT_EQ(writer.finish(), ErrorCode::kOk);

  ZipReader reader;
  ASSERT_EQ(reader.open(folder.path("a")), ErrorCode::kOk);
  const ZipMember& member = *reader.find("t");
  std::vector<std::string> blocks(60);
  std::vector<uint32_t> crcs(60);
  std::vector<ErrorCode> errors(60, ErrorCode::kZipState);
  {
    std::vector<std::jthread> threads;
    for (size_t thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&, thread] {
        for (size_t k = thread; k < 60; k += 4) errors[k] = reader.read_block(member, k, blocks[k], crcs[k]);
      });
    }
  }
  EXPECT_EQ(errors, std::vector<ErrorCode>(60, ErrorCode::kOk));
  EXPECT_EQ(ZipReader::verify_blocks(member, crcs), ErrorCode::kOk);
  std::string all;
  for (const std::string& block : blocks) all += block;
  EXPECT_EQ(all, text);
  std::swap(crcs[3], crcs[4]);
  EXPECT_EQ(ZipReader::verify_blocks(member, crcs), ErrorCode::kZipCorrupted);
  std::string block;
  EXPECT_EQ(reader.read_block(member, 60, block, crcs[0]), ErrorCode::kZipState);
}

TEST(ZipCopy, KeepsBytesTimeAndIndex) {
  TestFolder folder;
  const std::string text = sample_text(2 * kZipBlockSize + 5);
  ZipWriter writer;
  ZipWriterOptions options{.threads = 2};
  options.save_time.tm_year = 124;
  options.save_time.tm_mon = 10;
  options.save_time.tm_mday = 9;
  options.save_time.tm_hour = 12;
  options.save_time.tm_min = 30;
  options.save_time.tm_sec = 59;
  ASSERT_EQ(writer.create(folder.path("a"), options), ErrorCode::kOk);
  ASSERT_EQ(writer.add("t", text, ZipMethod::kDeflated), ErrorCode::kOk);
  ASSERT_EQ(writer.add("s", "stored", ZipMethod::kStored), ErrorCode::kOk);
  ASSERT_EQ(writer.finish(), ErrorCode::kOk);

  // The target is its own source, as when a database is saved under its name.
  ZipReader source;
  ASSERT_EQ(source.open(folder.path("a")), ErrorCode::kOk);
  ASSERT_EQ(writer.create(folder.path("a"), {.variant = ZipVariant::kZip32}), ErrorCode::kOk);
  ASSERT_EQ(writer.copy(source, *source.find("s"), "s"), ErrorCode::kOk);
  ASSERT_EQ(writer.copy(source, *source.find("t"), "renamed"), ErrorCode::kOk);
  EXPECT_EQ(writer.copy(source, *source.find("t"), "s"), ErrorCode::kNameNotUnique);
  ASSERT_EQ(writer.finish(folder.path("backup")), ErrorCode::kOk);

  ZipReader copy;
  ASSERT_EQ(copy.open(folder.path("a")), ErrorCode::kOk);
  EXPECT_EQ(content_of(copy, "s"), "stored");
  EXPECT_EQ(content_of(copy, "renamed"), text);
  EXPECT_EQ(copy.find("renamed")->time, source.find("t")->time);
  EXPECT_EQ(copy.find("renamed")->time,
            (44U << 25) + (11U << 21) + (9U << 16) + (12U << 11) + (30U << 5) + 29U);
  EXPECT_EQ(copy.find("renamed")->index.blocks.size(), 3U);
  EXPECT_EQ(content_by_blocks(copy, *copy.find("renamed")), text);
  ZipReader backup;
  ASSERT_EQ(backup.open(folder.path("backup")), ErrorCode::kOk);
  EXPECT_EQ(content_of(backup, "t"), text);
}

TEST(ZipBlockIndexField, JoinsBlocksUntilTheyFit) {
  ZipBlockIndex index{.blocks_end_at_records = true, .blocks = {}};
  for (uint64_t i = 0; i < 20'000; ++i)
    index.blocks.push_back({.offset = i * 100, .compressed_size = 100, .size = 100 + i});
  const std::string extra = encode_block_index(index, 1000);
  ASSERT_LE(extra.size(), 1000U);
  const auto content = find_extra_field(extra, kBlockIndexExtraId);
  ASSERT_TRUE(content);
  ZipBlockIndex decoded;
  const uint64_t size = 20'000 * 100 + 19'999 * 20'000 / 2;
  EXPECT_FALSE(decode_block_index(*content, 2'000'001, size, false, decoded));
  EXPECT_FALSE(decode_block_index(*content, 2'000'000, size - 1, false, decoded));
  EXPECT_FALSE(decode_block_index(content->substr(0, content->size() - 1), 2'000'000, size, false, decoded));
  ASSERT_TRUE(decode_block_index(*content, 2'000'000, size, false, decoded));
  EXPECT_TRUE(decoded.blocks_end_at_records);
  EXPECT_EQ(decoded.blocks.size(), 124U);  // 162 at a time; 161 would make 125, one too many
  EXPECT_EQ(decoded.blocks[1].offset, decoded.blocks[0].compressed_size);

  index.blocks = {{0, uint64_t{1} << 32, uint64_t{1} << 32}, {uint64_t{1} << 32, 1, 1}};
  EXPECT_EQ(encode_block_index(index, 1000), "");
  index.blocks.pop_back();
  EXPECT_EQ(encode_block_index(index, 1000), "");
}

TEST(ZipCrc, CombinesLongStretches) {
  const std::string a = sample_text(1000, 1);
  const std::string b = sample_text(500, 2);
  EXPECT_EQ(crc32_combined(crc32_of(a), crc32_of(b), b.size()), crc32_of(a + b));
  // 3 GB of the second part at once, or as 3 parts of 1 GB.
  const uint32_t gigabyte = 0x89ABCDEF;
  uint32_t parts = gigabyte;
  for (int i = 0; i < 2; ++i) parts = crc32_combined(parts, gigabyte, 1'000'000'000);
  const uint32_t two = crc32_combined(gigabyte, gigabyte, 1'000'000'000);
  EXPECT_EQ(crc32_combined(gigabyte, two, 2'000'000'000), parts);
  EXPECT_EQ(crc32_combined(crc32_of(a), crc32_combined(parts, 0x1234, 5'000'000'000), 8'000'000'000),
            crc32_combined(crc32_combined(crc32_of(a), parts, 3'000'000'000), 0x1234, 5'000'000'000));
}

TEST(ZipNames, ForeignNames) {
  std::string name;
  ASSERT_TRUE(decode_member_name("M\x81nchen", false, name));
  EXPECT_EQ(name, "M\xC3\xBCnchen");
  ASSERT_TRUE(decode_member_name("M\xC3\xBCnchen", false, name));
  EXPECT_EQ(name, "M\xC3\xBCnchen");
  for (const char* broken : {"\x81", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                             "\xF8\x88\x80\x80\x80"}) {
    EXPECT_FALSE(decode_member_name(broken, true, name)) << broken;
    EXPECT_FALSE(is_writable_member_name(broken));
  }
  EXPECT_TRUE(is_writable_member_name("a..b/...c/\xF0\x9F\x98\x80"));
}

}  // namespace
}  // namespace rowvane
