// The names of the temporary files that stand beside the target of a ReplacingFile: "NAME.rvtmp-PID-N".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace rowvane::platform {

// A name beside TARGET that PROCESS has not used before. Very long names of targets are shortened in it.
std::string temporary_name(const std::string& target, uint32_t process);

// The id of the process that made the temporary file called NAME for a target of TARGET's name; nothing for
// names of any other kind.
std::optional<uint32_t> owner_of_temporary(std::string_view name, const std::string& target);

}  // namespace rowvane::platform
