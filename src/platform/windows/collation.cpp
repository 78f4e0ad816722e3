#include "platform/collation.h"

#include <optional>
#include <string_view>
#include <utility>

#include <windows.h>

#include "platform/locale_name.h"
#include "platform/windows/locale.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

// The key of a text in which nothing counts, such as the empty one, for which Windows makes none.
constexpr std::string_view kEmptyKey("\1\1\1\1\0", 5);

class WindowsCollation : public Collation {
 public:
  // LOCALE: empty for the order in which no language has a say; the user's without it.
  WindowsCollation(std::optional<std::wstring> locale, CollationOptions options)
      : locale_(std::move(locale)),
        flags_((options.case_sensitive ? 0u : NORM_IGNORECASE) |
               (options.ignore_punctuation ? 0u : SORT_STRINGSORT)) {}

 private:
  int compare_cut(std::string_view a, std::string_view b) const override {
    const std::wstring first = to_wide(a);
    const std::wstring second = to_wide(b);
    const int order = ::CompareStringEx(locale(), flags_, first.data(), static_cast<int>(first.size()),
                                        second.data(), static_cast<int>(second.size()), nullptr, nullptr, 0);
    return order != 0 ? order - CSTR_EQUAL : first.compare(second);
  }

  void append_key_of_cut(std::string_view text, std::string& key) const override {
    const std::wstring wide = to_wide(text);
    const size_t start = key.size();
    key.resize(start + 6 * wide.size() + 16);
    int length = make_key(wide, key, start);
    if (length == 0 && !wide.empty()) {
      key.resize(start + static_cast<size_t>(key_length(wide)));
      length = make_key(wide, key, start);
    }
    key.resize(start + static_cast<size_t>(length));
    if (length == 0) key += kEmptyKey;
  }

  // Answers the length of the key, 0 when it does not fit behind START.
  int make_key(const std::wstring& wide, std::string& key, size_t start) const {
    // For keys, bytes are what Windows takes and counts.
    return ::LCMapStringEx(locale(), LCMAP_SORTKEY | flags_, wide.data(), static_cast<int>(wide.size()),
                           reinterpret_cast<wchar_t*>(key.data() + start),
                           static_cast<int>(key.size() - start), nullptr, nullptr, 0);
  }

  int key_length(const std::wstring& wide) const {
    return ::LCMapStringEx(locale(), LCMAP_SORTKEY | flags_, wide.data(), static_cast<int>(wide.size()),
                           nullptr, 0, nullptr, nullptr, 0);
  }

  const wchar_t* locale() const { return locale_ ? locale_->c_str() : LOCALE_NAME_USER_DEFAULT; }

  std::optional<std::wstring> locale_;
  DWORD flags_;
};

}  // namespace

std::unique_ptr<Collation> Collation::open_for_user(CollationOptions options) {
  return std::make_unique<WindowsCollation>(std::nullopt, options);
}

std::unique_ptr<Collation> Collation::open(const std::string& locale, CollationOptions options) {
  return std::make_unique<WindowsCollation>(system_locale_of(parse_locale_name(locale)), options);
}

}  // namespace rowvane::platform
