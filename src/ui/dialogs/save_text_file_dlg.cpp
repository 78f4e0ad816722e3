#include "ui/dialogs/save_text_file_dlg.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "file/export_archive.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kSuggestedRows = 1'000'000;

}  // namespace

CSaveTextFileDlg::CSaveTextFileDlg(const CWorkSheet& table, uint64_t row_limit, QWidget* parent)
    : QDialog(parent),
      table_(table),
      box_(new TextSettingsBox(TextSettingsBox::Use::kSave, this)),
      fields_(new QListWidget(this)),
      files_(new QCheckBox(tr("Save 'Images/Files' &objects to a zip file"), this)),
      long_texts_(new QCheckBox(tr("Save 'Long Text' &data to a zip file"), this)),
      several_files_(
          new QCheckBox(tr("Save multiple files (file, file(1),...,file(n)) with the row limit:"), this)),
      row_limit_(new QSpinBox(this)),
      problem_(new QLabel(this)) {
  setWindowTitle(tr("Save Text File"));
  resize(720, 460);
  for (size_t i = 0; i < table.field_count(); ++i) {
    auto* item = new QListWidgetItem(to_qt(field_list_text(table.field(i))), fields_);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
    item->setCheckState(Qt::Checked);
  }
  row_limit_->setRange(1, std::numeric_limits<int>::max());
  row_limit_->setValue(row_limit > 0 ? static_cast<int>(row_limit) : kSuggestedRows);
  several_files_->setChecked(row_limit > 0);
  row_limit_->setEnabled(several_files_->isChecked());
  connect(several_files_, &QCheckBox::toggled, row_limit_, &QWidget::setEnabled);
  problem_->setTextFormat(Qt::PlainText);

  auto* label = new QLabel(tr("&Saved Fields:"), this);
  label->setBuddy(fields_);
  auto* all = new QPushButton(tr("Select &All"), this);
  connect(all, &QPushButton::clicked, this, [this] {
    for (int i = 0; i < fields_->count(); ++i) fields_->item(i)->setCheckState(Qt::Checked);
  });
  auto* left = new QVBoxLayout();
  for (QWidget* widget : std::initializer_list<QWidget*>{label, fields_, all}) left->addWidget(widget);
  auto* limit = new QHBoxLayout();
  limit->addWidget(several_files_);
  limit->addWidget(row_limit_);
  auto* right = new QVBoxLayout();
  for (QWidget* widget : std::initializer_list<QWidget*>{box_, files_, long_texts_}) right->addWidget(widget);
  right->addLayout(limit);
  right->addStretch(1);
  auto* upper = new QHBoxLayout();
  upper->addLayout(left, 1);
  upper->addLayout(right, 1);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CSaveTextFileDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(box_, &TextSettingsBox::changed, this, [this] { problem_->setText(problem()); });
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(upper, 1);
  layout->addWidget(problem_);
  layout->addWidget(buttons);
}

TextExport CSaveTextFileDlg::settings() const {
  TextExport settings;
  settings.text = read_text_settings(box_->controls(), TextFileSettings());
  for (int i = 0; i < fields_->count(); ++i) {
    if (fields_->item(i)->checkState() == Qt::Checked) settings.fields.push_back(static_cast<size_t>(i));
  }
  settings.save_files = files_->isChecked();
  settings.save_long_texts = long_texts_->isChecked();
  settings.make_archive = make_export_archive;
  settings.row_limit = several_files_->isChecked() ? static_cast<uint64_t>(row_limit_->value()) : 0;
  return settings;
}

// No field at all would mean all of them.
QString CSaveTextFileDlg::problem() const {
  const std::string controls = check_text_settings_controls(box_->controls());
  if (!controls.empty()) return to_qt(controls);
  const TextExport chosen = settings();
  if (chosen.fields.empty()) return tr("Choose at least one field.");
  return to_qt(check_text_export_settings(table_, chosen));
}

void CSaveTextFileDlg::accept() {
  problem_->setText(problem());
  if (problem_->text().isEmpty()) QDialog::accept();
}

}  // namespace rowvane
