#include "platform/collation.h"

#include <windows.h>

#include "platform/locale_name.h"
#include "platform/windows/locale.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

class SystemCollation : public Collation {
 public:
  // LOCALE is empty for the order in which no language has a say.
  SystemCollation(std::wstring locale, CollationOptions options)
      : locale_(std::move(locale)),
        flags_((options.case_sensitive ? 0 : NORM_IGNORECASE) |
               (options.ignore_punctuation ? 0 : SORT_STRINGSORT)) {}

 private:
  int compare_cut(std::string_view a, std::string_view b) const override {
    const std::wstring first = to_wide(a);
    const std::wstring second = to_wide(b);
    const int result =
        ::CompareStringEx(locale_.c_str(), flags_, first.data(), static_cast<int>(first.size()),
                          second.data(), static_cast<int>(second.size()), nullptr, nullptr, 0);
    return result == 0 ? a.compare(b) : result - CSTR_EQUAL;
  }

  void append_key_of_cut(std::string_view text, std::string& key) const override {
    // The system makes no key of nothing; a character that counts for nothing gives the key that an empty
    // text needs.
    const std::wstring wide = text.empty() ? std::wstring(1, L'\0') : to_wide(text);
    const int length = map(wide, nullptr, 0);
    if (length <= 0) return;
    const size_t start = key.size();
    key.resize(start + static_cast<size_t>(length));
    map(wide, reinterpret_cast<wchar_t*>(key.data() + start), length);
  }

  // Writes the sort key of TEXT, LENGTH bytes, to KEY; without a KEY answers its length.
  int map(const std::wstring& text, wchar_t* key, int length) const {
    return ::LCMapStringEx(locale_.c_str(), LCMAP_SORTKEY | flags_, text.data(),
                           static_cast<int>(text.size()), key, length, nullptr, nullptr, 0);
  }

  std::wstring locale_;
  DWORD flags_;
};

}  // namespace

std::unique_ptr<Collation> Collation::open_for_user(CollationOptions options) {
  wchar_t name[LOCALE_NAME_MAX_LENGTH] = L"";
  ::GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH);
  return std::make_unique<SystemCollation>(name, options);
}

std::unique_ptr<Collation> Collation::open(const std::string& locale, CollationOptions options) {
  return std::make_unique<SystemCollation>(system_locale_of(parse_locale_name(locale)), options);
}

}  // namespace rowvane::platform
