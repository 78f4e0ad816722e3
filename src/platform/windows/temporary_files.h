// How the temporary files beside a target are made, put in place and cleared away.
#pragma once

#include <string>

#include "platform/file.h"
#include "platform/windows/handle.h"

namespace rowvane::platform {

// A name beside TARGET that no other process uses.
std::string own_temporary_name(const std::string& target);

// Makes a new file beside TARGET for writing. Nobody else may write to it or delete it while FILE is open.
// NAME gets its path.
FileStatus create_temporary(const std::string& target, std::wstring& name, Handle& file);

// Gives FILE, which is closed by this and called NAME, the name TARGET, in one step where the file system
// can. The file that had this name goes away; others may have it open if they let it be deleted.
FileStatus rename_over(Handle file, const std::wstring& name, const std::wstring& target);

}  // namespace rowvane::platform
