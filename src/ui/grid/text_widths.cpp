#include "ui/grid/text_widths.h"

namespace rowvane {
namespace {

constexpr QChar kEllipsis = u'…';

}  // namespace

TextWidths::TextWidths(const QFont& font) : metrics_(font), raw_(QRawFont::fromFont(font)) {
  characters_.fill({-1, 0});
}

// Null for characters that need shaping.
const TextWidths::Character* TextWidths::known(QChar character) const {
  const bool is_ellipsis = character == kEllipsis;
  if (character.unicode() >= kKnown && !is_ellipsis) return nullptr;
  Character& found = characters_[is_ellipsis ? kKnown : character.unicode()];
  if (found.width < 0) {
    found.width = static_cast<float>(metrics_.horizontalAdvance(character));
    const QList<quint32> glyphs = raw_.glyphIndexesForString(QString(character));
    found.glyph = glyphs.size() == 1 ? glyphs.first() : 0;
  }
  return &found;
}

std::optional<qreal> TextWidths::width(const QString& text) const {
  qreal sum = 0;
  for (const QChar character : text) {
    const Character* found = known(character);
    if (found == nullptr) return std::nullopt;
    sum += static_cast<qreal>(found->width);
  }
  return sum;
}

std::optional<QString> TextWidths::shortened(const QString& text, int room) const {
  qreal left = room - static_cast<qreal>(known(kEllipsis)->width);
  qsizetype count = 0;
  for (; count < text.size(); ++count) {
    const Character* found = known(text[count]);
    if (found == nullptr) return std::nullopt;
    left -= static_cast<qreal>(found->width);
    if (left < 0) break;
  }
  return text.left(count) + kEllipsis;
}

std::optional<QGlyphRun> TextWidths::glyphs(const QString& text) const {
  QList<quint32> indexes;
  QList<QPointF> positions;
  indexes.reserve(text.size());
  positions.reserve(text.size());
  qreal x = 0;
  for (const QChar character : text) {
    const Character* found = known(character);
    if (found == nullptr || found->glyph == 0) return std::nullopt;
    indexes.push_back(found->glyph);
    positions.push_back({x, 0});
    x += static_cast<qreal>(found->width);
  }
  QGlyphRun run;
  run.setRawFont(raw_);
  run.setGlyphIndexes(indexes);
  run.setPositions(positions);
  return run;
}

}  // namespace rowvane
