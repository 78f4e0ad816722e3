#include "ui/pane/cell_texts.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>
#include <array>

#include "platform/utf8.h"
#include "ui/text.h"
#include "ui/theme.h"

namespace rowvane {
namespace {

constexpr QChar kMore = u'…';
constexpr size_t kMostTextBytes = 6000;  // of a short text: more than a cell of twenty lines shows

// The colours that format codes name, from 1 on, in the order that spreadsheets number them.
constexpr std::array<QRgb, kLastFormatColor> kFormatColors = {
    0x000000, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00, 0xFF00FF, 0x00FFFF, 0x800000, 0x008000,
    0x000080, 0x808000, 0x800080, 0x008080, 0xC0C0C0, 0x808080, 0x9999FF, 0x993366, 0xFFFFCC, 0xCCFFFF,
    0x660066, 0xFF8080, 0x0066CC, 0xCCCCFF, 0x000080, 0xFF00FF, 0xFFFF00, 0x00FFFF, 0x800080, 0x800000,
    0x008080, 0x0000FF, 0x00CCFF, 0xCCFFFF, 0xCCFFCC, 0xFFFF99, 0x99CCFF, 0xFF99CC, 0xCC99FF, 0xFFCC99,
    0x3366FF, 0x33CCCC, 0x99CC00, 0xFFCC00, 0xFF9900, 0xFF6600, 0x666699, 0x969696, 0x003366, 0x339966,
    0x003300, 0x333300, 0x993300, 0x993366, 0x333399, 0x333333};

}  // namespace

// Colours too near to the ground are moved away from it.
std::optional<QColor> format_color(uint8_t number, const QColor& base) {
  if (number == 0 || number > kLastFormatColor) return std::nullopt;
  constexpr int kLeastDistance = 90;
  QColor color = QColor::fromRgb(kFormatColors[number - 1u]);
  const bool dark_ground = is_dark(base);
  const int ground = base.lightness();
  if (dark_ground && color.lightness() < ground + kLeastDistance) {
    color.setHsl(color.hslHue(), color.hslSaturation(), std::min(ground + kLeastDistance + 30, 255));
  } else if (!dark_ground && color.lightness() > ground - kLeastDistance) {
    color.setHsl(color.hslHue(), color.hslSaturation(), std::max(ground - kLeastDistance - 40, 0));
  }
  return color;
}

CellTexts::CellTexts(const CWorkSheet& table, const DisplayRegion& region, const profile::Settings& settings)
    : table_(table), settings_(settings), texts_(table, region) {}

void CellTexts::read_number(double number, size_t field, ShownCell& cell) const {
  cell.is_number = true;
  const ShownValue how = texts_.read_number(number, field, buffer_);
  cell.color = how.color;
  cell.text = to_qt(buffer_);
  if (how.fill_position == ShownValue::kNoFill) return;
  cell.fill = to_qt(how.fill);
  cell.fill_position = to_qt(std::string_view(buffer_).substr(0, how.fill_position)).size();
}

void CellTexts::read_content(const Content& content, const Field& field, ShownCell& cell) const {
  const profile::CheckBoxOptions& options = settings_.check_box_options;
  const LongTextParts& parts = contents_.read(content, field.type);
  cell.shows_end = options.show_memo_text_end && !parts.whole;
  cell.wraps = field.type == FieldType::kLongText && options.wrap_text_in_memo_fields;
  cell.text = cell.shows_end ? parts.end : parts.beginning;
  if (!parts.whole) cell.text = cell.shows_end ? kMore + cell.text : cell.text + kMore;
}

QString CellTexts::file_text(const FileObject& file) const {
  const profile::CheckBoxOptions& options = settings_.check_box_options;
  QStringList parts;
  if (options.table_view_file_name) parts << to_qt(file.name);
  if (!options.table_view_file_size && !options.table_view_file_date) return parts.join(QString());
  const QFileInfo outside(to_qt(file.shortcut));
  if (options.table_view_file_size) {
    const qint64 bytes = file.is_shortcut() ? outside.size() : static_cast<qint64>(file.content.size());
    parts << QLocale().formattedDataSize(bytes);
  }
  if (options.table_view_file_date && file.is_shortcut() && outside.exists()) {
    parts << QLocale().toString(outside.lastModified(), QLocale::ShortFormat);
  }
  return parts.join(u", ");
}

QString CellTexts::files_text(const FileList& files) const {
  const profile::CheckBoxOptions& options = settings_.check_box_options;
  if (!options.files_in_tables) return QObject::tr("%n file(s)", nullptr, static_cast<int>(files.size()));
  if (!options.table_view_file_labels) return {};
  QStringList parts;
  for (const FileObject& file : files) parts << file_text(file);
  return parts.join(u"; ");
}

ShownCell CellTexts::read(uint32_t position, size_t field) const {
  ShownCell cell;
  const Field& definition = table_.field(field);
  const Column& column = table_.column(field);
  if (const auto* numbers = std::get_if<NumberColumn>(&column)) {
    read_number(numbers->cells[position], field, cell);
  } else if (const auto* texts = std::get_if<TextColumn>(&column)) {
    cell.text = to_qt(truncate_bytes(texts->text(position), kMostTextBytes));
    cell.is_link = definition.link && !cell.text.isEmpty();
    cell.wraps = !cell.is_link;
  } else if (const auto* contents = std::get_if<ContentColumn>(&column)) {
    const Content* content = contents->value(position);
    if (content != nullptr) read_content(*content, definition, cell);
  } else if (const FileList* files = std::get<FilesColumn>(column).value(position); files != nullptr) {
    cell.files = files;
    cell.text = files_text(*files);
  }
  return cell;
}

QString CellTexts::text(uint32_t position, size_t field, qsizetype most) const {
  const auto* contents = std::get_if<ContentColumn>(&table_.column(field));
  if (contents == nullptr) return read(position, field).text.left(most);
  const Content* content = contents->value(position);
  if (content == nullptr) return {};
  const LongTextParts& parts = contents_.read(*content, table_.field(field).type);
  if (parts.whole && parts.beginning.size() <= most) return parts.beginning;
  return parts.beginning.left(most) + kMore;
}

}  // namespace rowvane
