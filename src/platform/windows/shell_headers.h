// The system's headers for the shell, in the order that they need.
#pragma once

// clang-format off
#include <windows.h>
#include <knownfolders.h>
#include <shellapi.h>
#include <shlobj.h>
#include <winspool.h>
// clang-format on
