// What can be read as a manifest is written and read back as the same.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "file/manifest.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace rowvane;
  std::vector<ManifestEntry> entries;
  if (read_manifest(std::string_view(reinterpret_cast<const char*>(data), size), entries) != ErrorCode::kOk)
    return 0;
  std::vector<ManifestEntry> again;
  const ErrorCode error = read_manifest(write_manifest(entries), again);
  if (error != ErrorCode::kOk || again != entries) std::abort();
  return 0;
}
