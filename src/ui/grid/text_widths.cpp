#include "ui/grid/text_widths.h"

namespace rowvane {

TextWidths::TextWidths(const QFont& font) : metrics_(font) {
  widths_.fill(-1);
}

std::optional<qreal> TextWidths::width(const QString& text) const {
  qreal sum = 0;
  for (const QChar character : text) {
    if (character.unicode() >= kKnown) return std::nullopt;
    float& width = widths_[character.unicode()];
    if (width < 0) width = static_cast<float>(metrics_.horizontalAdvance(character));
    sum += static_cast<qreal>(width);
  }
  return sum;
}

}  // namespace rowvane
