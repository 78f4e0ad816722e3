// The beginnings and ends of long texts, as far as cells show them.
#pragma once

#include <QCache>
#include <QString>

#include "core/table/content.h"
#include "core/table/field.h"

namespace rowvane {

// What is kept of a long text.
struct LongTextParts {
  QString beginning;   // at most kShownCharacters of the plain text
  QString end;         // the same from its end; the whole text where that is short
  bool whole = false;  // `beginning` is all of it
};

// Keeps what was read last, so that painting does not inflate the same value again and again. At most a few
// megabytes are kept.
class ContentTexts {
 public:
  static constexpr qsizetype kShownCharacters = 2000;
  // Larger contents are not read for a look at them.
  static constexpr uint64_t kMostReadBytes = uint64_t{4} << 20;

  ContentTexts();

  // Lives until the next call. Contents that can't be read are empty; of those that are too large the size is
  // said in their place.
  const LongTextParts& read(const Content& content, FieldType type);

 private:
  struct Kept {
    Content content;  // stays alive, so that no other can have its address
    LongTextParts parts;
  };

  QCache<const void*, Kept> kept_;
  LongTextParts unkept_;
};

}  // namespace rowvane
