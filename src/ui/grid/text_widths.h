// How wide texts are, without shaping them.
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QString>
#include <array>
#include <optional>

namespace rowvane {

// Adds up the widths of single Latin characters, which are looked up once.
class TextWidths {
 public:
  explicit TextWidths(const QFont& font);

  // In pixels, kerning aside; nothing for texts with characters of other scripts, which need shaping.
  std::optional<qreal> width(const QString& text) const;

 private:
  static constexpr size_t kKnown = 0x250;

  QFontMetricsF metrics_;
  mutable std::array<float, kKnown> widths_;
};

}  // namespace rowvane
