#include "exchange/text/rendered_texts.h"

namespace rowvane {

RenderedTexts::RenderedTexts(const TextPool& pool, const CellRules& rules, uint32_t width,
                             std::string_view suffix) {
  entries_.resize(pool.size());
  TextOutput output(bytes_);
  output.reserve(pool.text_bytes() + pool.size() * (suffix.size() + 1));
  CellWriter cells(rules, output);
  for (size_t code = 0; code < pool.size(); ++code) {
    const size_t start = output.size();
    cells.write_text(pool.text(static_cast<TextPool::Code>(code)), width);
    output.append(suffix);
    entries_[code] = static_cast<uint64_t>(start) << kLengthBits | (output.size() - start);
  }
  output.append(kShortCell, '\0');
  losses_ = cells.has_cut() || cells.has_replaced();
}

bool RenderedTexts::are_worthwhile(const TextPool& pool, uint32_t record_count, uint32_t width) {
  constexpr uint64_t kMaxBytes = uint64_t{64} << 20;
  constexpr uint64_t kBytesAround = 16;  // the entry, quotes and what follows
  const uint64_t bytes = pool.text_bytes() + pool.size() * (kBytesAround + width);
  return pool.size() <= record_count / 2 + 1 && bytes <= kMaxBytes;
}

}  // namespace rowvane
