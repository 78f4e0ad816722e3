// Renders the window and its dialogs to pictures, without a display.
//   rowvane_pictures DATABASE TEXT_FILE FOLDER
// Writes NAME-light.png and NAME-dark.png for each; QT_SCALE_FACTOR=2 in the environment renders for a screen
// of 200 percent.
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QTimer>
#include <cstdio>
#include <functional>

#include "crypto/protection.h"
#include "ui/dialogs/drop_down_lists_dlg.h"
#include "ui/dialogs/field_dlg.h"
#include "ui/dialogs/field_encryption_dlg.h"
#include "ui/dialogs/field_filter_dlg.h"
#include "ui/dialogs/insert_password_dlg.h"
#include "ui/dialogs/keyboard_dlg.h"
#include "ui/dialogs/open_text_file_dlg.h"
#include "ui/dialogs/options_dlg.h"
#include "ui/dialogs/profile_protect_dlg.h"
#include "ui/dialogs/protect_dlg.h"
#include "ui/dialogs/record_flag_types_dlg.h"
#include "ui/dialogs/save_text_file_dlg.h"
#include "ui/main_frame.h"
#include "ui/text.h"
#include "ui/theme.h"

namespace {

using namespace rowvane;

constexpr int kSampleMilliseconds = 1000;  // that a dialog has for reading its sample

class Pictures {
 public:
  Pictures(QString database, QString text_file, QString folder)
      : database_(std::move(database)), text_file_(std::move(text_file)), folder_(std::move(folder)) {}

  bool make(const QString& colors) {
    colors_ = colors;
    ProgramProfile profile(dialogs_, dialogs_, nullptr);
    CMainFrame frame(profile, dialogs_);
    frame.show();
    if (!frame.open_file(database_)) return false;
    QApplication::processEvents();
    CDatabaseWindow& window = *frame.current_window();
    save(frame, "window");

    make_dialogs(window.document(), window.pane()->table(), profile);
    return saved_;
  }

 private:
  void make_dialogs(DatabaseDocument& document, CWorkSheet& table, ProgramProfile& profile) {
    profile::Settings& settings = profile.settings();
    COpenTextFileDlg open(text_file_, settings, dialogs_);
    save(open, "open-text", kSampleMilliseconds);
    CSaveTextFileDlg text(table, settings, dialogs_);
    save(text, "save-text");
    CFieldDlg field(document, *document.database().find_table("products"), 3, 3, profile.settings(),
                    dialogs_);
    save(field, "field");
    CDropDownListsDlg lists(document.database(), {}, dialogs_);
    save(lists, "drop-down-lists");
    CRecordFlagTypesDlg flags(document.database(), dialogs_);
    save(flags, "record-flag-types");
    COptionsDlg options(settings, dialogs_);
    save(options, "options");
    const FieldFilterContext filter_context{table, document.database().settings(),
                                            document.formula_settings(), document.recent_texts()};
    CFieldFilterDlg filter(filter_context, 3, Criterion{CriterionKind::kStartsWith, "Gal"}, SearchOptions(),
                           dialogs_);
    save(filter, "field-filter");
    CInsertPasswordDlg password(database_);
    save(password, "password");
    CProtectDlg protect(nullptr, dialogs_);
    save(protect, "protect");
    CProfileProtectDlg protect_profile(dialogs_);
    save(protect_profile, "protect-profile");
    CFieldEncryptionDlg encrypt(CFieldEncryptionDlg::Use::kEncrypt, table, 0, dialogs_);
    save(encrypt, "encrypt-fields");
    CKeyboardDlg keyboard;
    save(keyboard, "keyboard");
  }

  void save(QWidget& widget, const QString& name, int wait = 0) {
    widget.show();
    QTimer::singleShot(wait, &wait_, &QEventLoop::quit);
    wait_.exec();
    QApplication::processEvents();
    const QString path = QDir(folder_).filePath(name + "-" + colors_ + ".png");
    saved_ = widget.grab().save(path) && saved_;
    std::printf("%s\n", path.toLocal8Bit().constData());
  }

  QString database_;
  QString text_file_;
  QString folder_;
  QString colors_;
  QEventLoop wait_;
  MessageBoxes dialogs_;
  bool saved_ = true;
};

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // The platform without a display tells at length what it can't do.
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type >= QtCriticalMsg) std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
  });
  const QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() != 4 || !QDir().mkpath(arguments[3])) {
    std::fputs("usage: rowvane_pictures DATABASE TEXT_FILE FOLDER\n", stderr);
    return 2;
  }
  Pictures pictures(arguments[1], arguments[2], arguments[3]);
  for (const bool dark : {false, true}) {
    rowvane::set_dark_colors(dark);
    if (!pictures.make(dark ? "dark" : "light")) return 1;
  }
  return 0;
}
