// Every command of the window, defined once: its text, shortcut, icon, tip and menu.
#pragma once

#include <QAction>
#include <QObject>
#include <functional>
#include <map>
#include <span>

namespace rowvane {

enum class Command {
  kNew,
  kOpen,
  kOpenTextFile,
  kClose,
  kSave,
  kSaveAs,
  kSaveCopyAs,
  kImport,
  kExport,
  kCompact,
  kLoadProfile,
  kSaveProfileAs,
  kRegisterFileType,
  kUnregisterFileType,
  kUninstall,
  kExit,
  kUndo,
  kRedo,
  kCut,
  kCopy,
  kPaste,
  kClear,
  kFillDown,
  kTextToDates,
  kSelectAll,
  kEditCell,
  kInsertToday,
  kCopyFromAbove,
  kOpenLink,
  kInsertRecords,
  kAppendRecord,
  kDuplicateRecords,
  kDeleteRecords,
  kInsertField,
  kFieldProperties,
  kRenameField,
  kDeleteField,
  kHideField,
  kShowAllFields,
  kNewTable,
  kNewFolder,
  kRenameItem,
  kDeleteItem,
  kShowExplorer,
  kShowFindToolbar,
  kDarkMode,
  kOptions,
  kZoomIn,
  kZoomOut,
  kZoomReset,
  kFind,
  kFindNext,
  kFindPrevious,
  kFreezeFields,
  kFreezeRecords,
  kUnfreeze,
  kMoreLines,
  kFewerLines,
  kSetFilter,
  kSearch,
  kClearFilter,
  kFindByValue,
  kShowAllRecords,
  kSortAscending,
  kSortDescending,
  kNoSorting,
  kUpdateFormulas,
  kProtect,
  kProtectProfile,
  kEncryptFields,
  kDecryptFields,
  kDropDownLists,
  kRecordFlagTypes,
  kKeyboard,
  kAbout,
};

// When a command can be given.
enum class Needs {
  kNothing,
  kDatabase,  // an open database
  kTable,     // a table in view
  kRecords,   // records in view
  kGrid,      // a table in view, as a grid
  kGridRecords,
  kChanges,  // something to be saved
  kUndo,
  kRedo,
};

struct CommandText {
  Command command;
  const char* menu;  // "&File", "&Edit>Con&vert" for a menu within one; "|" at the end begins a new group
  const char* text;
  const char* shortcut;  // in the portable form; several separated by "; "
  const char* icon;      // of :/icons; empty: none
  const char* tip;
  Needs needs = Needs::kNothing;
  bool checkable = false;
};

// In the order of the menus.
std::span<const CommandText> command_texts();

// The actions of one window.
class Actions final : public QObject {
  Q_OBJECT

 public:
  explicit Actions(QObject* parent = nullptr);

  QAction* of(Command command) const { return actions_.at(command); }
  // Enables those whose needs HAS answers true for.
  void update(const std::function<bool(Needs)>& has);

 private:
  std::map<Command, QAction*> actions_;
};

}  // namespace rowvane
