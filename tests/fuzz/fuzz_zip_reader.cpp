// Opens any bytes as an archive and reads all members in every way there is.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "zip/zip_reader.h"

namespace {

using namespace rowvane;

constexpr uint64_t kLimit = uint64_t{1} << 22;

// Nothing when the stream is refused.
bool read_stream(const ZipReader& reader, const ZipMember& member, std::string& content) {
  ZipMemberStream stream;
  if (member.size > kLimit || reader.stream(member, stream) != ErrorCode::kOk) return false;
  std::vector<char> piece(1000);
  size_t count = 0;
  do {
    if (stream.read(piece, count) != ErrorCode::kOk) return false;
    content.append(piece.data(), count);
  } while (count == piece.size());
  return true;
}

bool read_blocks(const ZipReader& reader, const ZipMember& member, std::string& content) {
  std::vector<uint32_t> crcs(ZipReader::block_count(member));
  for (size_t k = 0; k < crcs.size(); ++k) {
    std::string block;
    if (reader.read_block(member, k, block, crcs[k], kLimit) != ErrorCode::kOk) return false;
    content += block;
  }
  return ZipReader::verify_blocks(member, crcs) == ErrorCode::kOk;
}

void expect(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ZipReader reader;
  auto source = std::make_unique<MemoryByteSource>(std::string(reinterpret_cast<const char*>(data), size));
  if (reader.open(std::move(source)) != ErrorCode::kOk) {
    expect(reader.members().empty());
    return 0;
  }
  for (const ZipMember& member : reader.members()) {
    expect(reader.find(member.name) == &member);
    std::string whole;
    std::string streamed;
    std::string blocks;
    const bool is_whole = reader.read(member, kLimit, whole) == ErrorCode::kOk;
    const bool is_streamed = read_stream(reader, member, streamed);
    expect(is_whole == is_streamed && (!is_whole || whole == streamed));
    if (read_blocks(reader, member, blocks) && is_whole) expect(blocks == whole);
  }
  return 0;
}
