#include "ui/dialogs/options_dlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include "app/profile/options_change.h"
#include "exchange/text/text_settings_dialog.h"
#include "ui/dialogs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

QString words_text(const std::vector<std::string>& words) {
  QStringList all;
  for (const std::string& word : words) all << to_qt(word);
  return all.join(' ');
}

}  // namespace

COptionsDlg::COptionsDlg(profile::Settings& settings, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent),
      settings_(settings),
      dialogs_(dialogs),
      entered_(settings),
      pages_(new QTabWidget(this)) {
  setWindowTitle(tr("Options"));
  add_general_page();
  add_table_page();
  add_file_page();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &COptionsDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(pages_);
  layout->addWidget(buttons);
}

QFormLayout& COptionsDlg::add_page(const QString& title) {
  auto* page = new QWidget(pages_);
  auto* form = new QFormLayout(page);
  form->setContentsMargins(14, 14, 14, 14);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  pages_->addTab(page, title);
  return *form;
}

QCheckBox* COptionsDlg::add_flag(QFormLayout& page, const QString& text, bool& option) {
  auto* box = new QCheckBox(text, this);
  box->setChecked(option);
  connect(box, &QCheckBox::toggled, this, [&option](bool on) { option = on; });
  page.addRow(box);
  return box;
}

QSpinBox* COptionsDlg::add_number(QFormLayout& page, const QString& text, int& option, const QString& suffix,
                                  const QString& at_least) {
  auto* box = new QSpinBox(this);
  const profile::NumberRange range = option_range(entered_, option);
  box->setRange(static_cast<int>(range.least), static_cast<int>(range.most));
  box->setGroupSeparatorShown(true);
  box->setSuffix(suffix);
  box->setSpecialValueText(at_least);
  box->setValue(option);
  box->setAccessibleName(QString(text).remove('&').remove(':'));
  connect(box, &QSpinBox::valueChanged, this, [&option](int value) { option = value; });
  page.addRow(text, box);
  return box;
}

void COptionsDlg::add_general_page() {
  QFormLayout& page = add_page(tr("&General"));
  profile::GeneralOptions& general = entered_.general_options;
  add_number(page, tr("&Maximum number of records:"), general.max_records);
  add_number(page, tr("Steps that can be &undone:"), general.undo_level);
  add_number(page, tr("Used &processor cores:"), general.used_processor_cores, {}, tr("All"));
  add_flag(page, tr("Update &calculated fields automatically"), entered_.check_box_options.auto_update);
  add_flag(page, tr("Open databases &read-only"), general.read_only);
  add_flag(page, tr("&Dark colors"), entered_.toolbar_options.dark_mode);
}

void COptionsDlg::add_font(QFormLayout& page, profile::Font& font) {
  auto* name = new QFontComboBox(this);
  name->setAccessibleName(tr("Font"));
  if (font.name.empty()) {
    name->setCurrentIndex(-1);
    name->lineEdit()->setPlaceholderText(tr("As the system has it"));
  } else {
    name->setCurrentFont(QFont(to_qt(font.name)));
  }
  connect(name, &QFontComboBox::currentTextChanged, this,
          [&font](const QString& text) { font.name = to_utf8(text); });
  page.addRow(tr("&Font:"), name);
  add_number(page, tr("Font si&ze:"), font.size, tr(" pt"), tr("As the system has it"));
  auto* note = new QLabel(tr("Another font is used for tables that are opened from now on."), this);
  page.addRow(note);
}

void COptionsDlg::add_table_page() {
  QFormLayout& page = add_page(tr("&Tables"));
  profile::CheckBoxOptions& boxes = entered_.check_box_options;
  int& enter = entered_.general_options.when_enter_pressed;
  auto* list = new QComboBox(this);
  list->addItems({tr("Go to the record below"), tr("Go to the next field"), tr("Stay"), tr("Edit the cell")});
  list->setCurrentIndex(enter);
  connect(list, &QComboBox::currentIndexChanged, this, [&enter](int index) { enter = index; });
  page.addRow(tr("&When Enter is pressed:"), list);
  add_flag(page, tr("Offer the values of &drop-down lists"), entered_.general_options.drop_down_lists);
  add_flag(page, tr("Choose dates in a &calendar"), boxes.use_date_picker);
  add_flag(page, tr("Show &long texts in tips"), boxes.show_memo_tooltips);
  add_flag(page, tr("W&rap long texts"), boxes.wrap_text_in_memo_fields);
  add_flag(page, tr("Show &images as thumbnails"), boxes.table_view_thumbnails);
  add_number(page, tr("Size of &thumbnails:"), boxes.table_view_thumb_size, tr(" px"));
  add_font(page, entered_.table_font);
}

void COptionsDlg::add_file_page() {
  QFormLayout& page = add_page(tr("&Files"));
  profile::GeneralOptions& general = entered_.general_options;
  add_flag(page, tr("Keep the former file as a &backup when saving"), general.backups);
  add_number(page, tr("Save &automatically every:"), general.auto_save, tr(" min"), tr("Never"));
  add_number(page, tr("&Row limit of saved text files:"), general.text_export_row_limit, {}, tr("None"));
  QCheckBox* fit = add_flag(page, tr("Fit column &widths when text files are opened"),
                            entered_.check_box_options.auto_col_width_on_import);
  connect(fit, &QCheckBox::clicked, this, [this, fit](bool on) {
    if (!dialogs_.accept(check_auto_fit(on, false))) fit->setChecked(false);
  });
  add_flag(page, tr("Show the &progress of opening and saving"),
           entered_.check_box_options.show_save_load_progress);
  add_flag(page, tr("Tell of &members of a file that no table uses"),
           entered_.check_box_options.show_unused_zip_streams);
  add_flag(page, tr("&List opened files among the recent ones"),
           entered_.check_box_options.add_recently_used_files);
  extensions_ = new QLineEdit(words_text(general.non_deflate_files), this);
  extensions_->setCursorPosition(0);
  extensions_->setAccessibleName(tr("Files stored without compression"));
  auto* label = new QLabel(tr("Files stored without &compression, by their extensions:"), this);
  label->setBuddy(extensions_);
  page.addRow(label);
  page.addRow(extensions_);
}

void COptionsDlg::accept() {
  const auto extensions = parse_extensions(to_utf8(extensions_->text()));
  if (!extensions) {
    dialogs_.show(to_utf8(tr("Please enter file extensions such as \"jpg zip\".")), MessageIcon::kWarning);
    pages_->setCurrentIndex(pages_->count() - 1);
    return extensions_->setFocus();
  }
  entered_.general_options.non_deflate_files = *extensions;
  if (!dialogs_.accept(check_options_change(settings_, entered_))) return;
  settings_ = entered_;
  QDialog::accept();
}

}  // namespace rowvane
