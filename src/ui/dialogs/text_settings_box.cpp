#include "ui/dialogs/text_settings_box.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kNarrowBox = 48;

QLabel* label_for(const QString& text, QWidget* buddy, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setBuddy(buddy);
  return label;
}

QLineEdit* one_character_box(QWidget* parent) {
  auto* box = new QLineEdit(parent);
  box->setMaxLength(1);
  box->setFixedWidth(kNarrowBox);
  return box;
}

}  // namespace

TextSettingsBox::TextSettingsBox(Use use, QWidget* parent)
    : QWidget(parent),
      use_(use),
      separator_(new QComboBox(this)),
      other_separator_(one_character_box(this)),
      fixed_widths_(new QCheckBox(tr("Fixed field &widths:"), this)),
      widths_(new QLineEdit(this)),
      quoting_(new QCheckBox(tr("Quoting symbol:"), this)),
      quoting_symbol_(one_character_box(this)),
      encoding_(new QComboBox(this)),
      code_page_(new QComboBox(this)),
      field_names_(new QCheckBox(
          use == Use::kOpen ? tr("First &row contains field names") : tr("Field names in the first &row"),
          this)),
      analyze_(new QCheckBox(tr("Analyze and select matching field types (no information loss)"), this)),
      convert_dates_(new QCheckBox(tr("Convert text to date/time strings YYYY-MM-DD(T...)"), this)) {
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  add_separator_row(*layout);
  add_encoding_rows(*layout);
  add_options(*layout);
  layout->setColumnStretch(1, 1);
  other_separator_->setAccessibleName(tr("Other field separator"));
  widths_->setAccessibleName(tr("Fixed field widths"));
  quoting_symbol_->setAccessibleName(tr("Quoting symbol"));
  for (QComboBox* list : {separator_, encoding_, code_page_})
    connect(list, &QComboBox::currentIndexChanged, this, &TextSettingsBox::changed);
  for (QLineEdit* box : {other_separator_, widths_, quoting_symbol_})
    connect(box, &QLineEdit::textChanged, this, &TextSettingsBox::changed);
  for (QCheckBox* box : {fixed_widths_, quoting_, field_names_, analyze_, convert_dates_})
    connect(box, &QCheckBox::toggled, this, &TextSettingsBox::changed);
  connect(this, &TextSettingsBox::changed, this, &TextSettingsBox::enable_controls);
  show_settings(TextFileSettings());
}

void TextSettingsBox::add_separator_row(QGridLayout& layout) {
  for (const std::string_view text : kSeparatorListTexts) separator_->addItem(to_qt(text));
  auto* row = new QHBoxLayout();
  row->addWidget(separator_, 1);
  row->addWidget(other_separator_);
  layout.addWidget(label_for(tr("&Field separator:"), separator_, this), 0, 0);
  layout.addLayout(row, 0, 1);
  widths_->setMaxLength(static_cast<int>(kMaxWidthsText));
  widths_->setToolTip(to_qt(kWidthsHint));
  widths_->setPlaceholderText("10,8,15");
  layout.addWidget(fixed_widths_, 1, 0);
  layout.addWidget(widths_, 1, 1);
  layout.addWidget(quoting_, 2, 0);
  layout.addWidget(quoting_symbol_, 2, 1, Qt::AlignLeft);
}

void TextSettingsBox::add_encoding_rows(QGridLayout& layout) {
  for (const std::string_view text : kEncodingListTexts) encoding_->addItem(to_qt(text));
  for (const TextCodePage& page : kTextCodePages) code_page_->addItem(to_qt(page.list_text));
  layout.addWidget(label_for(tr("&Text encoding:"), encoding_, this), 3, 0);
  layout.addWidget(encoding_, 3, 1);
  layout.addWidget(label_for(tr("&Windows code page:"), code_page_, this), 4, 0);
  layout.addWidget(code_page_, 4, 1);
}

void TextSettingsBox::add_options(QGridLayout& layout) {
  layout.addWidget(field_names_, 5, 0, 1, 2);
  layout.addWidget(analyze_, 6, 0, 1, 2);
  layout.addWidget(convert_dates_, 7, 0, 1, 2);
  analyze_->setVisible(use_ == Use::kOpen);
  convert_dates_->setVisible(use_ == Use::kOpen);
}

void TextSettingsBox::enable_controls() {
  other_separator_->setEnabled(separator_->currentIndex() == kOtherSeparator);
  widths_->setEnabled(fixed_widths_->isChecked());
  quoting_symbol_->setEnabled(quoting_->isChecked());
  const bool has_code_page = encoding_->currentIndex() == kCodePageEncoding;
  code_page_->setEnabled(has_code_page);
  if (has_code_page && code_page_->currentIndex() < 0) code_page_->setCurrentIndex(0);
}

void TextSettingsBox::show_settings(const TextFileSettings& settings) {
  const TextSettingsControls shown = show_text_settings(settings);
  {
    const QSignalBlocker blocker(this);
    separator_->setCurrentIndex(shown.separator);
    other_separator_->setText(to_qt(shown.other_separator));
    fixed_widths_->setChecked(shown.fixed_widths);
    widths_->setText(to_qt(shown.widths));
    quoting_->setChecked(shown.quoting);
    quoting_symbol_->setText(to_qt(shown.quoting_symbol));
    encoding_->setCurrentIndex(shown.encoding);
    code_page_->setCurrentIndex(shown.code_page);
    field_names_->setChecked(shown.field_names);
    analyze_->setChecked(shown.analyze);
    convert_dates_->setChecked(shown.convert_dates);
  }
  emit changed();
}

TextSettingsControls TextSettingsBox::controls() const {
  TextSettingsControls controls;
  controls.separator = separator_->currentIndex();
  controls.other_separator = to_utf8(other_separator_->text());
  controls.fixed_widths = fixed_widths_->isChecked();
  controls.widths = to_utf8(widths_->text());
  controls.quoting = quoting_->isChecked();
  controls.quoting_symbol = to_utf8(quoting_symbol_->text());
  controls.encoding = encoding_->currentIndex();
  controls.code_page = code_page_->currentIndex();
  controls.field_names = field_names_->isChecked();
  controls.analyze = analyze_->isChecked();
  controls.convert_dates = convert_dates_->isChecked();
  return controls;
}

}  // namespace rowvane
