// Texts of single Latin characters without shaping them: how wide they are, and their glyphs.
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QRawFont>
#include <QString>
#include <array>
#include <optional>

namespace rowvane {

// Looks each character up once. Kerning is left aside. All answer nothing for texts with characters of other
// scripts, which need shaping.
class TextWidths {
 public:
  explicit TextWidths(const QFont& font);

  // In pixels.
  std::optional<qreal> width(const QString& text) const;
  // What fits into ROOM pixels, with an ellipsis at its end.
  std::optional<QString> shortened(const QString& text, int room) const;
  // Side by side from the left end. Nothing also where the font lacks a character.
  std::optional<QGlyphRun> glyphs(const QString& text) const;

 private:
  static constexpr size_t kKnown = 0x250;

  struct Character {
    float width;    // negative: not looked up yet
    quint32 glyph;  // 0: the font has none
  };
  const Character* known(QChar character) const;

  QFontMetricsF metrics_;
  QRawFont raw_;
  mutable std::array<Character, kKnown + 1> characters_;  // the ellipsis comes last
};

}  // namespace rowvane
