// Reads any bytes as a configuration. What reads must be written so that it reads the same again.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "file/config_dat.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace rowvane;
  DatabaseConfig config;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (read_config(bytes, config) != ErrorCode::kOk) return 0;
  const std::string written = write_config(config);
  DatabaseConfig again;
  if (read_config(written, again) != ErrorCode::kOk || write_config(again) != written) std::abort();
  return 0;
}
