#include "file/encrypted_contents.h"

#include "core/database/binary_names.h"
#include "exchange/text/ordered_blocks.h"
#include "file/archive_content.h"
#include "platform/paths.h"
#include "zip/zlib_codec.h"

namespace rowvane {
namespace {

constexpr uint64_t kLargeContent = uint64_t{16} << 20;

// The content as it is to be encrypted: packed.
ErrorCode pack_content(const Content& content, const std::string& name, const ContentPacking& packing,
                       bool& deflated, std::string& bytes) {
  const auto* stored = dynamic_cast<const ArchiveContent*>(content.source().get());
  if (stored != nullptr && stored->place().is_encrypted()) {
    const ArchiveContent::Place place = stored->place();
    deflated = place.archive->encryption(*place.member)->deflated;
    return place.archive->read_decrypted(*place.member, bytes);
  }
  deflated = packing.method_for(name) == ZipMethod::kDeflated;
  if (!deflated) return content.read(bytes);
  std::string raw;
  const ErrorCode error = content.read(raw);
  return error == ErrorCode::kOk ? Deflater(packing.level).deflate_block(raw, true, bytes) : error;
}

ErrorCode encrypt_content(const PendingContent& pending, const Protection& protection,
                          const ContentPacking& packing, EncryptedContent& made, std::string& bytes) {
  ErrorCode error = name_content(pending, made.name);
  if (error == ErrorCode::kOk)
    error = pack_content(pending.content, made.name, packing, made.deflated, bytes);
  MemberEncryptor encryptor;
  if (error == ErrorCode::kOk) error = encryptor.start(protection);
  if (error == ErrorCode::kOk) error = encryptor.run(bytes);
  if (error == ErrorCode::kOk) made.record = encryptor.finish(pending.content.size());
  return error;
}

}  // namespace

bool is_damage(ErrorCode error) {
  return error == ErrorCode::kZipCorrupted || error == ErrorCode::kZipUnexpectedEnd ||
         error == ErrorCode::kFileDecrypt || error == ErrorCode::kZlibUnknown;
}

ErrorCode name_content(const PendingContent& pending, std::string& name) {
  name = pending.name;
  if (!pending.is_long_text) return ErrorCode::kOk;
  if (const auto* stored = dynamic_cast<const ArchiveContent*>(pending.content.source().get())) {
    const std::string file_name = platform::file_name(stored->place().member->name);
    if (file_name == kRichTextFileName || file_name == kPlainTextFileName) {
      name += file_name;
      return ErrorCode::kOk;
    }
  }
  std::string text;
  const ErrorCode error = pending.content.read(text);
  name += long_text_file_name(text);
  return is_damage(error) ? ErrorCode::kOk : error;
}

ErrorCode encrypt_contents(const std::vector<PendingContent>& contents, const Protection& protection,
                           const ContentPacking& packing, int threads, const TakeEncrypted& take) {
  std::vector<EncryptedContent> made(contents.size());
  const auto is_large = [&contents](uint64_t i) { return contents[i].content.size() > kLargeContent; };
  const auto make = [&](uint64_t i, std::string& bytes) {
    if (!is_large(i)) made[i].error = encrypt_content(contents[i], protection, packing, made[i], bytes);
    return ErrorCode::kOk;
  };
  const auto take_made = [&](uint64_t i, std::string_view bytes) {
    std::string large;
    if (is_large(i)) {
      made[i].error = encrypt_content(contents[i], protection, packing, made[i], large);
      bytes = large;
    }
    const bool go_on = take(i, made[i], bytes);
    made[i] = {};
    return go_on;
  };
  return make_blocks_in_order(contents.size(), threads, make, take_made);
}

}  // namespace rowvane
