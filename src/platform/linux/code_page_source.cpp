#include "platform/code_page_source.h"

#include <algorithm>
#include <iterator>

#include <unicode/ucnv.h>

#include "platform/code_page_table.h"

namespace rowvane::platform {
namespace {

struct ByteRange {
  unsigned first = 1;
  unsigned last = 0;

  bool holds(unsigned byte) const { return byte >= first && byte <= last; }
};

struct KnownPage {
  unsigned number;
  const char* converter;
  ByteRange lead_bytes = {};
  ByteRange more_lead_bytes = {};
  bool has_micro_sign = false;  // at kMicroByte, where the converter has the Greek letter of the same look
};

constexpr unsigned kMicroByte = 0xE6;
constexpr char16_t kMicroSign = 0x00B5;

constexpr KnownPage kKnownPages[] = {
    {437, "ibm-437", {}, {}, true},
    {720, "ibm-720"},
    {737, "ibm-737"},
    {775, "ibm-775"},
    {850, "ibm-850"},
    {852, "ibm-852"},
    {855, "ibm-855"},
    {857, "ibm-857"},
    {858, "ibm-858"},
    {860, "ibm-860", {}, {}, true},
    {861, "ibm-861", {}, {}, true},
    {862, "ibm-862", {}, {}, true},
    {863, "ibm-863", {}, {}, true},
    {865, "ibm-865", {}, {}, true},
    {866, "ibm-866"},
    {869, "ibm-869"},
    {874, "windows-874"},
    {932, "windows-932", {0x81, 0x9F}, {0xE0, 0xFC}},
    {936, "windows-936", {0x81, 0xFE}},
    {949, "windows-949", {0x81, 0xFE}},
    {950, "windows-950", {0x81, 0xFE}},
    {1250, "windows-1250"},
    {1251, "windows-1251"},
    {1252, "windows-1252"},
    {1253, "windows-1253"},
    {1254, "windows-1254"},
    {1255, "windows-1255"},
    {1256, "windows-1256"},
    {1257, "windows-1257"},
    {1258, "windows-1258"},
    {28591, "ISO-8859-1"},
    {28592, "ISO-8859-2"},
    {28593, "ISO-8859-3"},
    {28594, "ISO-8859-4"},
    {28595, "ISO-8859-5"},
    {28596, "ISO-8859-6"},
    {28597, "ISO-8859-7"},
    {28598, "ISO-8859-8"},
    {28599, "ISO-8859-9"},
    {28603, "ISO-8859-13"},
    {28605, "ISO-8859-15"},
};

class IcuSource : public CodePageSource {
 public:
  explicit IcuSource(const KnownPage& page) : page_(page), converter_(ucnv_open(page.converter, &error_)) {
    if (is_open()) ucnv_setFallback(converter_, false);
  }
  ~IcuSource() override {
    if (converter_ != nullptr) ucnv_close(converter_);
  }
  IcuSource(const IcuSource&) = delete;
  IcuSource& operator=(const IcuSource&) = delete;

  bool is_open() const { return U_SUCCESS(error_); }

  bool is_lead_byte(unsigned char byte) const override {
    return page_.lead_bytes.holds(byte) || page_.more_lead_bytes.holds(byte);
  }

  char16_t character_of(unsigned code, int length) override {
    if (page_.has_micro_sign && code == kMicroByte) return kMicroSign;
    const char bytes[] = {static_cast<char>(length == 2 ? code >> 8 : code), static_cast<char>(code)};
    UChar characters[4];
    UErrorCode error = U_ZERO_ERROR;
    const int32_t count = ucnv_toUChars(converter_, characters, 4, bytes, length, &error);
    if (U_FAILURE(error) || count != 1 || characters[0] == kSubstitute) return kNoCharacter;
    return characters[0];
  }

  uint16_t bytes_of(char16_t character) override {
    char bytes[8];
    UErrorCode error = U_ZERO_ERROR;
    const int32_t count = ucnv_fromUChars(converter_, bytes, sizeof bytes, &character, 1, &error);
    if (U_FAILURE(error) || count < 1 || count > 2) return kNoBytes;
    const auto first = static_cast<unsigned char>(bytes[0]);
    return static_cast<uint16_t>(count == 1 ? first : first << 8 | static_cast<unsigned char>(bytes[1]));
  }

 private:
  // What some converters answer in place of U+FFFD for a byte without a meaning.
  static constexpr char16_t kSubstitute = 0x1A;

  const KnownPage& page_;
  UErrorCode error_ = U_ZERO_ERROR;
  UConverter* converter_;
};

}  // namespace

std::unique_ptr<CodePageSource> CodePageSource::open(unsigned number) {
  const auto* const page = std::ranges::find(kKnownPages, number, &KnownPage::number);
  if (page == std::end(kKnownPages)) return nullptr;
  auto source = std::make_unique<IcuSource>(*page);
  if (!source->is_open()) return nullptr;
  return source;
}

}  // namespace rowvane::platform
