#include "ui/pane/content_texts.h"

#include <QLocale>
#include <memory>

#include "text/rich_text.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr qsizetype kMostKeptBytes = qsizetype{8} << 20;

const void* address(const Content& content) {
  if (content.source() != nullptr) return content.source().get();
  return content.in_memory().data();
}

LongTextParts parts_of(const Content& content, FieldType type) {
  LongTextParts parts;
  if (content.size() > ContentTexts::kMostReadBytes) {
    parts.beginning = parts.end =
        "[" + QLocale().formattedDataSize(static_cast<qint64>(content.size())) + "]";
    parts.whole = true;
    return parts;
  }
  std::string text;
  if (content.read(text) != ErrorCode::kOk) text.clear();
  if (type == FieldType::kLongText && is_rich_text(text)) text = plain_text_of(text);
  const QString all = to_qt(text);
  parts.whole = all.size() <= ContentTexts::kShownCharacters;
  parts.beginning = all.left(ContentTexts::kShownCharacters);
  parts.end = all.right(ContentTexts::kShownCharacters);
  return parts;
}

}  // namespace

ContentTexts::ContentTexts() : kept_(kMostKeptBytes) {}

const LongTextParts& ContentTexts::read(const Content& content, FieldType type) {
  const void* const key = address(content);
  if (const Kept* kept = kept_.object(key)) return kept->parts;
  unkept_ = parts_of(content, type);
  auto kept = std::make_unique<Kept>(Kept{content, unkept_});
  const qsizetype bytes = 2 * (unkept_.beginning.size() + unkept_.end.size()) + 200 +
                          static_cast<qsizetype>(content.in_memory().size());
  if (key != nullptr) kept_.insert(key, kept.release(), bytes);
  return unkept_;
}

}  // namespace rowvane
