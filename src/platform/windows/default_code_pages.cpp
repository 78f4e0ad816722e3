#include "platform/default_code_pages.h"

#include <windows.h>

namespace rowvane::platform {
namespace {

// Where the user has made UTF-8 the page of the system, the one that the region had before: that is the page
// of the files that are not UTF-8.
unsigned page_of_region(LCTYPE type, unsigned fallback) {
  DWORD page = 0;
  const int length = ::GetLocaleInfoEx(LOCALE_NAME_SYSTEM_DEFAULT, type | LOCALE_RETURN_NUMBER,
                                       reinterpret_cast<wchar_t*>(&page), sizeof page / sizeof(wchar_t));
  // Regions that never had one say CP_ACP or CP_OEMCP.
  return length > 0 && page > CP_THREAD_ACP && page != CP_UTF8 ? page : fallback;
}

}  // namespace

DefaultCodePages user_code_pages() {
  DefaultCodePages pages;
  pages.ansi = ::GetACP() != CP_UTF8 ? ::GetACP() : page_of_region(LOCALE_IDEFAULTANSICODEPAGE, pages.ansi);
  pages.oem = ::GetOEMCP() != CP_UTF8 ? ::GetOEMCP() : page_of_region(LOCALE_IDEFAULTCODEPAGE, pages.oem);
  return pages;
}

}  // namespace rowvane::platform
