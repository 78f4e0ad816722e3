#include "ui/dialogs/open_text_file_dlg.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/formats/recognized_file.h"
#include "app/profile/engine_options.h"
#include "platform/regional_settings.h"
#include "ui/dialogs.h"
#include "ui/dialogs/field_filter_dlg.h"
#include "ui/dialogs/named_text_settings.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr uint32_t kSampleRecords = 100;

// As the dialog was left, but for what belongs to the file: its columns, the separator that its name tells
// and the encoding that its content does.
TextFileSettings first_settings(const TextFileSettings& suggested, const TextFileSettings& left) {
  TextFileSettings settings = left;
  settings.column_options = {};
  if (suggested.encoding != TextFileSettings().encoding) settings.encoding = suggested.encoding;
  if (suggested.separator == TextFileSettings().separator) return settings;
  settings.separator = suggested.separator;
  settings.set(settings.flags, TextFileSettings::kSeparated, true);
  settings.fixed_widths_on = 0;
  return settings;
}

// What the next dialog begins with: an encoding that the content of this file told, and the user left so, is
// no choice.
TextFileSettings left_settings(const TextFileSettings& accepted, const TextFileSettings& suggested,
                               const TextFileSettings& before) {
  TextFileSettings left = accepted;
  const bool is_told = suggested.encoding != TextFileSettings().encoding;
  if (is_told && accepted.encoding == suggested.encoding) left.encoding = before.encoding;
  return left;
}

}  // namespace

COpenTextFileDlg::COpenTextFileDlg(const QString& path, profile::Settings& profile, Dialogs& dialogs,
                                   QWidget* parent)
    : QDialog(parent),
      profile_(profile),
      dialogs_(dialogs),
      suggested_(recognize_file(to_utf8(path)).text),
      settings_(first_settings(suggested_, profile.text_file_options)),
      box_(new TextSettingsBox(TextSettingsBox::Use::kOpen, this)),
      fields_(new CTextFieldList(this)),
      fit_widths_(new QCheckBox(tr("Auto-fit column widths"), this)),
      problem_(new QLabel(this)),
      reader_(new SampleReader(to_utf8(path), kSampleRecords, this)) {
  setWindowTitle(tr("Open Text File") + " - " + QFileInfo(path).fileName());
  resize(900, 640);
  problem_->setTextFormat(Qt::PlainText);
  fit_widths_->setChecked(profile.check_box_options.auto_col_width_on_import);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &COpenTextFileDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(10);
  layout->addLayout(upper_part());
  layout->addLayout(sample_part(), 1);
  auto* lowest = new QHBoxLayout();
  lowest->setSpacing(6);
  lowest->addWidget(problem_, 1);
  lowest->addWidget(buttons);
  layout->addLayout(lowest);
  connect(fit_widths_, &QCheckBox::clicked, this, &COpenTextFileDlg::ask_about_fitting);
  connect(reader_, &SampleReader::finished, this, [this](const auto& sample) {
    show_sample(*sample, std::shared_ptr<const CWorkSheet>(sample, sample->table.get()));
  });
  show_settings(settings_);
  connect(box_, &TextSettingsBox::changed, this, &COpenTextFileDlg::reload);
}

QLayout* COpenTextFileDlg::upper_part() {
  auto* named = new NamedTextSettings(
      profile_.named_text_file_settings, dialogs_, [this] { return current_settings(); }, this);
  connect(named, &NamedTextSettings::loaded, this, &COpenTextFileDlg::show_settings);
  auto* right = new QVBoxLayout();
  right->setSpacing(6);
  right->addWidget(named);
  right->addWidget(fit_widths_);
  right->addStretch(1);
  auto* upper = new QHBoxLayout();
  upper->setSpacing(24);
  upper->addWidget(box_, 1);
  upper->addLayout(right);
  return upper;
}

QLayout* COpenTextFileDlg::sample_part() {
  auto* label = new QLabel(tr("File data &sample:"), this);
  label->setBuddy(fields_);
  auto* reload_button = new QPushButton(tr("Reload fields"), this);
  reload_button->setAutoDefault(false);
  connect(reload_button, &QPushButton::clicked, this, &COpenTextFileDlg::reload);
  auto* filter_button = new QPushButton(tr("Set Filter..."), this);
  filter_button->setAutoDefault(false);
  filter_button->setToolTip(tr("Of the chosen column: only records that satisfy it are shown at first"));
  connect(filter_button, &QPushButton::clicked, this, &COpenTextFileDlg::set_filter);
  auto* heading = new QHBoxLayout();
  heading->setSpacing(6);
  heading->addWidget(label, 1);
  heading->addWidget(filter_button);
  heading->addWidget(reload_button);
  auto* part = new QVBoxLayout();
  part->setSpacing(6);
  part->addLayout(heading);
  part->addWidget(fields_, 1);
  return part;
}

bool COpenTextFileDlg::fits_column_widths() const {
  return fit_widths_->isChecked();
}

QString COpenTextFileDlg::problem() const {
  return problem_->text();
}

void COpenTextFileDlg::show_settings(const TextFileSettings& settings) {
  settings_ = settings;
  fields_->set_column_options(settings.column_options);
  box_->show_settings(settings);
  reload();
}

std::optional<TextFileSettings> COpenTextFileDlg::current_settings() {
  problem_->setText(to_qt(check_text_settings_controls(box_->controls()).refusal.text()));
  if (!problem_->text().isEmpty()) return std::nullopt;
  TextFileSettings settings = read_text_settings(box_->controls(), settings_);
  settings.column_options = fields_->column_options();
  return settings;
}

void COpenTextFileDlg::reload() {
  const auto settings = current_settings();
  if (!settings) return;
  settings_ = *settings;
  TextImport import;
  import.text = settings_;
  import.threads = 1;
  reader_->read(import);
}

void COpenTextFileDlg::show_sample(const TextImportResult& sample,
                                   const std::shared_ptr<const CWorkSheet>& table) {
  sample_ = table;
  if (table == nullptr) {
    fields_->clear_sample();
    problem_->setText(to_qt(sample.failure.text()));
    return;
  }
  fields_->show_sample(table);
  std::erase_if(filters_, [&](const auto& filter) { return filter.first >= table->field_count(); });
}

void COpenTextFileDlg::set_filter() {
  if (sample_ == nullptr) return;
  const auto column = static_cast<size_t>(std::max(fields_->choices().currentIndex().column(), 0));
  const DatabaseSettings no_flags;
  const FormulaSettings formulas = formula_settings_of(platform::user_regional_settings());
  const auto present = filters_.find(column);
  CFieldFilterDlg dialog({*sample_, no_flags, formulas, recent_texts_}, column,
                         present != filters_.end() ? std::optional(present->second) : std::nullopt,
                         search_options(profile_), dialogs_, this);
  const bool accepted = dialog.exec() == QDialog::Accepted;
  store_search_options(dialog.options(), profile_);
  if (accepted) filters_.insert_or_assign(column, dialog.criterion());
}

void COpenTextFileDlg::ask_about_fitting(bool on) {
  if (!dialogs_.accept(check_auto_fit(on, false))) fit_widths_->setChecked(false);
}

void COpenTextFileDlg::accept() {
  const auto settings = current_settings();
  if (!settings) {
    QApplication::beep();
    return;
  }
  if (!dialogs_.accept(check_date_conversion(*settings))) return;
  settings_ = *settings;
  profile_.text_file_options = left_settings(settings_, suggested_, profile_.text_file_options);
  profile_.check_box_options.auto_col_width_on_import = fits_column_widths();
  QDialog::accept();
}

}  // namespace rowvane
