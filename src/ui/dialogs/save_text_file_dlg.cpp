#include "ui/dialogs/save_text_file_dlg.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/dialogs.h"
#include "ui/dialogs/named_text_settings.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kSuggestedRows = 1'000'000;

}  // namespace

CSaveTextFileDlg::CSaveTextFileDlg(const CWorkSheet& table, profile::Settings& profile, Dialogs& dialogs,
                                   QWidget* parent)
    : QDialog(parent),
      table_(table),
      profile_(profile),
      dialogs_(dialogs),
      shown_(profile.text_file_options),
      box_(new TextSettingsBox(TextSettingsBox::Use::kSave, this)),
      fields_(new FieldCheckList(
          table, [](const Field&) { return true; }, this)),
      files_(new QCheckBox(tr("Save 'Images/Files' &objects to a zip file"), this)),
      long_texts_(new QCheckBox(tr("Save 'Long Text' &data to a zip file"), this)),
      several_files_(
          new QCheckBox(tr("Save multiple files (file, file(1),...,file(n)) with the row limit:"), this)),
      row_limit_(new QSpinBox(this)),
      problem_(new QLabel(this)) {
  setWindowTitle(tr("Save Text File"));
  resize(760, 480);
  fields_->tick_all();
  files_->setEnabled(has_type({FieldType::kFiles}));
  long_texts_->setEnabled(has_type({FieldType::kLongText, FieldType::kCode}));
  const int limit = profile.general_options.text_export_row_limit;
  row_limit_->setRange(1, std::numeric_limits<int>::max());
  row_limit_->setGroupSeparatorShown(true);
  row_limit_->setValue(limit > 0 ? limit : kSuggestedRows);
  row_limit_->setAccessibleName(tr("Row limit"));
  row_limit_->setEnabled(limit > 0);
  several_files_->setChecked(limit > 0);
  connect(several_files_, &QCheckBox::toggled, row_limit_, &QWidget::setEnabled);
  problem_->setTextFormat(Qt::PlainText);
  problem_->setWordWrap(true);

  auto* upper = new QHBoxLayout();
  upper->setSpacing(24);
  upper->addLayout(field_part(), 1);
  upper->addLayout(options_part(), 1);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CSaveTextFileDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* lowest = new QHBoxLayout();
  lowest->setSpacing(6);
  lowest->addWidget(problem_, 1);
  lowest->addWidget(buttons);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(upper, 1);
  layout->addLayout(lowest);
  box_->show_settings(shown_);
  const auto show_problem = [this] { problem_->setText(problem()); };
  connect(box_, &TextSettingsBox::changed, this, show_problem);
  connect(fields_, &QListWidget::itemChanged, this, show_problem);
  connect(several_files_, &QCheckBox::toggled, this, show_problem);
  connect(row_limit_, &QSpinBox::valueChanged, this, show_problem);
}

bool CSaveTextFileDlg::has_type(std::initializer_list<FieldType> types) const {
  return std::ranges::any_of(table_.data().fields, [&](const Field& field) {
    return std::ranges::find(types, field.type) != types.end();
  });
}

QLayout* CSaveTextFileDlg::field_part() {
  auto* label = new QLabel(tr("&Saved Fields:"), this);
  label->setBuddy(fields_);
  auto* all = new QPushButton(tr("Select &All"), this);
  all->setAutoDefault(false);
  connect(all, &QPushButton::clicked, fields_, &FieldCheckList::tick_all);
  auto* part = new QVBoxLayout();
  part->setSpacing(6);
  part->addWidget(label);
  part->addWidget(fields_, 1);
  part->addWidget(all, 0, Qt::AlignLeft);
  return part;
}

QLayout* CSaveTextFileDlg::options_part() {
  auto* named = new NamedTextSettings(
      profile_.named_text_file_settings, dialogs_,
      [this]() -> std::optional<TextFileSettings> {
        if (!check_text_settings_controls(box_->controls()).passes()) return std::nullopt;
        return read_text_settings(box_->controls(), shown_);
      },
      this);
  connect(named, &NamedTextSettings::loaded, this, [this](const TextFileSettings& settings) {
    shown_ = settings;
    box_->show_settings(settings);
  });
  auto* part = new QVBoxLayout();
  part->setSpacing(6);
  part->addWidget(box_);
  part->addWidget(files_);
  part->addWidget(long_texts_);
  part->addWidget(several_files_);
  part->addWidget(row_limit_, 0, Qt::AlignLeft);
  part->addStretch(1);
  part->addWidget(named, 0, Qt::AlignRight);
  return part;
}

TextExport CSaveTextFileDlg::settings() const {
  TextExport settings;
  settings.text = read_text_settings(box_->controls(), shown_);
  settings.fields = fields_->checked_fields();
  settings.save_files = files_->isChecked();
  settings.save_long_texts = long_texts_->isChecked();
  settings.row_limit = several_files_->isChecked() ? static_cast<uint64_t>(row_limit_->value()) : 0;
  return settings;
}

// No field at all would mean all of them.
QString CSaveTextFileDlg::problem() const {
  const Check controls = check_text_settings_controls(box_->controls());
  if (!controls.passes()) return to_qt(controls.refusal.text());
  const TextExport chosen = settings();
  if (chosen.fields.empty()) return tr("Choose at least one field.");
  return to_qt(check_text_export_settings(table_, chosen).refusal.text());
}

void CSaveTextFileDlg::accept() {
  problem_->setText(problem());
  if (!problem_->text().isEmpty()) {
    QApplication::beep();
    return;
  }
  const TextExport chosen = settings();
  profile_.text_file_options = chosen.text;
  profile_.general_options.text_export_row_limit = static_cast<int>(chosen.row_limit);
  QDialog::accept();
}

}  // namespace rowvane
