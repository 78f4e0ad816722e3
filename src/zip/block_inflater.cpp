#include "zip/block_inflater.h"

#include <string_view>

#include <libdeflate.h>

namespace rowvane {

BlockInflater::BlockInflater() : decompressor_(libdeflate_alloc_decompressor()) {}
BlockInflater::~BlockInflater() = default;

void BlockInflater::Close::operator()(libdeflate_decompressor* decompressor) const {
  libdeflate_free_decompressor(decompressor);
}

ErrorCode BlockInflater::inflate(std::string& packed, bool last, std::span<char> out) {
  // libdeflate reads whole streams only: an empty stored block, marked as the last one, makes it whole.
  constexpr std::string_view kStreamEnd("\x01\x00\x00\xFF\xFF", 5);
  if (decompressor_ == nullptr) return ErrorCode::kZipMemory;
  if (!last) packed += kStreamEnd;
  size_t taken = 0;
  const auto result = libdeflate_deflate_decompress_ex(decompressor_.get(), packed.data(), packed.size(),
                                                       out.data(), out.size(), &taken, nullptr);
  return result == LIBDEFLATE_SUCCESS && taken == packed.size() ? ErrorCode::kOk : ErrorCode::kZipCorrupted;
}

}  // namespace rowvane
