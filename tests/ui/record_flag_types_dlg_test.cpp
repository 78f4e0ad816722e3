#include "ui/dialogs/record_flag_types_dlg.h"

#include <QListWidget>
#include <QPushButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "text_dialog_support.h"
#include "ui/database_window.h"
#include "ui/scripted_dialogs.h"

namespace rowvane {
namespace {

using testing::ElementsAre;

class RecordFlagTypesDlgTest : public testing::Test {
 protected:
  RecordFlagTypesDlgTest() {
    DatabaseSettings shared;
    shared.record_flag_types = {{"red", 0xFF0000}, {"green", 0x00FF00}};
    EXPECT_EQ(database.change_settings(shared), ErrorCode::kOk);
  }
  profile::Settings settings;
  ScriptedDialogs dialogs;
  CDatabaseWindow window{std::make_unique<DatabaseDocument>(Options()), settings, dialogs};
  Database& database = window.document().database();
};

TEST_F(RecordFlagTypesDlgTest, RefusesTheEleventhTypeAndNamesThatAreTaken) {
  CRecordFlagTypesDlg dialog(database, dialogs);
  dialog.show();
  auto& list = *dialog.findChild<QListWidget*>();
  for (int i = 0; i < 9; ++i) dialog.add_type();
  EXPECT_THAT(dialogs.shown, ElementsAre(message(MessageId::kTooManyRecordFlagTypes)));
  EXPECT_EQ(list.count(), 10);
  list.item(9)->setText("RED");
  dialog.accept();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(dialogs.shown.size(), 2u);
  list.item(9)->setText("last");
  dialog.accept();
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(database.settings().record_flag_types.size(), 10u);
}

TEST_F(RecordFlagTypesDlgTest, FlagsStayWithTheirRecords) {
  CWorkSheet& table = window.pane()->table();
  window.pane()->select_all();
  window.pane()->flag_records(2);
  EXPECT_EQ(table.flag_type(1), 2);
  EXPECT_EQ(table.flag_type(20), 2);
  CRecordFlagTypesDlg dialog(database, dialogs);
  dialog.delete_type();
  dialog.set_color(QColor(0x112233));
  dialog.accept();
  EXPECT_EQ(database.settings().record_flag_types, (std::vector<RecordFlagType>{{"green", 0x112233}}));
  EXPECT_EQ(table.flag_type(1), 1);
  window.document().undo();
  EXPECT_EQ(table.flag_type(1), 2);
  window.document().undo();
  EXPECT_EQ(table.flag_type(1), 0);
}

}  // namespace
}  // namespace rowvane
