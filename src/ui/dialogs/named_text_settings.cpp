#include "ui/dialogs/named_text_settings.h"

#include <QGuiApplication>
#include <QMenu>

#include "ui/dialogs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

// In a menu a "&" would mark the letter behind it.
QString menu_line(std::string_view text) {
  return to_qt(text).replace("&", "&&");
}

}  // namespace

NamedTextSettings::NamedTextSettings(SavedTextSettings& saved, Dialogs& dialogs, Current current,
                                     QWidget* parent)
    : QPushButton(tr("&Load predefined settings"), parent),
      saved_(saved),
      dialogs_(dialogs),
      current_(std::move(current)),
      menu_(new QMenu(this)) {
  setAutoDefault(false);
  setMenu(menu_);
  connect(menu_, &QMenu::aboutToShow, this, &NamedTextSettings::fill_menu);
}

void NamedTextSettings::fill_menu() {
  menu_->clear();
  const std::vector<std::string> lines = saved_.menu_texts();
  const size_t count = saved_.entries().size();
  for (size_t i = 0; i < lines.size(); ++i) {
    QAction* action = menu_->addAction(menu_line(lines[i]));
    action->setEnabled(i < count);
    connect(action, &QAction::triggered, this,
            [this, i] { choose(i, QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)); });
  }
  menu_->addSeparator();
  menu_->addAction(tr("&Save Current Text Settings As..."), this, &NamedTextSettings::save_current);
  QMenu* removal = menu_->addMenu(tr("&Delete"));
  removal->setEnabled(count > 0);
  for (size_t i = 0; i < count; ++i)
    removal->addAction(menu_line(saved_.entries()[i].name), this, [this, i] { erase(i); });
}

void NamedTextSettings::choose(size_t entry, bool with_shift) {
  if (!with_shift) {
    if (const TextFileSettings* settings = saved_.load(entry)) emit loaded(TextFileSettings(*settings));
  } else if (const auto settings = current_()) {
    saved_.overwrite(entry, *settings);
  }
}

void NamedTextSettings::save_current() {
  const auto settings = current_();
  if (!settings) return;
  QString name = to_qt(saved_.proposed_name());
  while (const auto entered = dialogs_.ask_text(tr("Save Current Text Settings As"), tr("Name:"), name)) {
    if (dialogs_.accept(SavedTextSettings::check_name(to_utf8(*entered))))
      return saved_.add(to_utf8(*entered), *settings);
    name = *entered;
  }
}

void NamedTextSettings::erase(size_t entry) {
  saved_.erase(entry);
}

}  // namespace rowvane
