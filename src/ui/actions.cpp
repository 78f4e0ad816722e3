#include "ui/actions.h"

#include <array>

#include "ui/icons.h"

namespace rowvane {
namespace {

// clang-format off
constexpr std::array kCommands = {
    CommandText{Command::kNew, "&File", "&New Database", "Ctrl+N", "new", "Begin a new database"},
    CommandText{Command::kOpen, "&File", "&Open...", "Ctrl+O", "open", "Open a database or a text file"},
    CommandText{Command::kOpenTextFile, "&File", "Open &Text File...", "Ctrl+Shift+O", "", "Open a text file and say how it is read"},
    CommandText{Command::kClose, "&File", "&Close", "Ctrl+W", "", "Close the database", Needs::kDatabase},
    CommandText{Command::kSave, "&File|", "&Save", "Ctrl+S", "save", "Save the database", Needs::kDatabase},
    CommandText{Command::kSaveAs, "&File", "Save &As...", "Ctrl+Shift+S", "", "Save the database as another file", Needs::kDatabase},
    CommandText{Command::kSaveCopyAs, "&File", "Save Database Cop&y As...", "", "", "Save a copy; the database stays with its file", Needs::kDatabase},
    CommandText{Command::kImport, "&File|", "&Import Table...", "Ctrl+I", "import", "Add a text file to the database as a new table", Needs::kDatabase},
    CommandText{Command::kExport, "&File", "&Export Table...", "Ctrl+E", "export", "Save the table as a text file", Needs::kTable},
    CommandText{Command::kProtect, "&File|", "&Protect Database...", "", "lock", "Set or remove the password of the database", Needs::kDatabase},
    CommandText{Command::kCompact, "&File", "Co&mpact Database", "", "", "Drop what no record refers to from the file", Needs::kDatabase},
    CommandText{Command::kLoadProfile, "&File|", "&Load Profile...", "", "", "Take the settings from another file"},
    CommandText{Command::kSaveProfileAs, "&File", "Save Profile As...", "", "", "Save the settings to another file"},
    CommandText{Command::kProtectProfile, "&File", "Protect Profile...", "", "", "Set or remove the password of the settings"},
    CommandText{Command::kExit, "&File|", "E&xit", "Ctrl+Q", "", "Close all databases and end the program"},

    CommandText{Command::kUndo, "&Edit", "&Undo", "Ctrl+Z", "undo", "Take back the last change", Needs::kUndo},
    CommandText{Command::kRedo, "&Edit", "&Redo", "Ctrl+Y; Ctrl+Shift+Z", "redo", "Make the change again that was taken back", Needs::kRedo},
    CommandText{Command::kCut, "&Edit|", "Cu&t", "Ctrl+X", "cut", "Copy the selected cells and empty them", Needs::kRecords},
    CommandText{Command::kCopy, "&Edit", "&Copy", "Ctrl+C", "copy", "Copy the selected cells", Needs::kRecords},
    CommandText{Command::kPaste, "&Edit", "&Paste", "Ctrl+V", "paste", "Write the copied cells over the selected ones", Needs::kRecords},
    CommandText{Command::kClear, "&Edit", "C&lear", "Del", "", "Empty the selected cells", Needs::kRecords},
    CommandText{Command::kFillDown, "&Edit", "Fill &Down", "Ctrl+D", "", "Give the selected cells the values of the first one", Needs::kRecords},
    CommandText{Command::kSelectAll, "&Edit", "Select &All", "Ctrl+A", "", "Select all cells", Needs::kTable},
    CommandText{Command::kEditCell, "&Edit", "&Edit Cell", "F2", "", "Change the value of the current cell", Needs::kRecords},
    CommandText{Command::kInsertToday, "&Edit", "Insert &Today", "Ctrl+;", "", "Enter the date of today", Needs::kRecords},
    CommandText{Command::kCopyFromAbove, "&Edit", "Value from A&bove", "Ctrl+'", "", "Enter the value of the cell above", Needs::kRecords},
    CommandText{Command::kOpenLink, "&Edit", "&Open Link", "", "", "Open what the link in the current cell leads to (Ctrl+click)", Needs::kRecords},
    CommandText{Command::kTextToDates, "&Edit>Con&vert Field Data", "Text To Standard &Date String", "", "", "Write the dates in the selected text fields as YYYY-MM-DD", Needs::kRecords},

    CommandText{Command::kNewTable, "&Table", "&New Table...", "Ctrl+T", "table", "Add an empty table", Needs::kDatabase},
    CommandText{Command::kNewFolder, "&Table", "New &Folder...", "", "folder", "Add a folder for tables", Needs::kDatabase},
    CommandText{Command::kRenameItem, "&Table", "&Rename...", "", "", "Give the table or folder another name", Needs::kDatabase},
    CommandText{Command::kDeleteItem, "&Table", "&Delete", "", "", "Delete the table or folder", Needs::kDatabase},
    CommandText{Command::kInsertField, "&Table|", "Insert &Field...", "", "field", "Add a field before the current one", Needs::kTable},
    CommandText{Command::kFieldProperties, "&Table", "Field &Properties...", "Alt+Return", "", "Change what the current field is: its type, formula, format and more", Needs::kTable},
    CommandText{Command::kRenameField, "&Table", "Rename Field...", "", "", "Give the current field another name", Needs::kTable},
    CommandText{Command::kDeleteField, "&Table", "Delete Field", "", "", "Delete the current field and its values", Needs::kTable},
    CommandText{Command::kHideField, "&Table", "&Hide Field", "", "", "Show the current field no more; its values stay", Needs::kTable},
    CommandText{Command::kShowAllFields, "&Table", "Show A&ll Fields", "", "", "Show hidden fields again", Needs::kTable},
    CommandText{Command::kEncryptFields, "&Table|", "&Encrypt Field Data...", "", "lock", "Encrypt the values of fields under a password", Needs::kTable},
    CommandText{Command::kDecryptFields, "&Table", "Decr&ypt Field Data...", "", "", "Give encrypted fields their values back", Needs::kTable},
    CommandText{Command::kDropDownLists, "&Table|", "Drop-Down &Lists...", "", "", "Edit the lists that fields offer their values from", Needs::kDatabase},

    CommandText{Command::kInsertRecords, "&Records", "&Insert Records", "Ctrl+Ins", "insert", "Insert as many empty records as are selected", Needs::kTable},
    CommandText{Command::kAppendRecord, "&Records", "&Append Record", "Ctrl+Shift+N", "", "Add an empty record at the end", Needs::kTable},
    CommandText{Command::kDuplicateRecords, "&Records", "D&uplicate Records", "", "", "Insert copies of the selected records below them", Needs::kRecords},
    CommandText{Command::kDeleteRecords, "&Records", "&Delete Records", "Ctrl+Del", "delete", "Delete the selected records", Needs::kRecords},
    CommandText{Command::kRecordFlagTypes, "&Records", "Record Fla&g Types...", "", "", "Edit the flags that records can get", Needs::kDatabase},
    CommandText{Command::kUpdateFormulas, "&Records|", "&Update All Calculated Fields", "F9", "", "Work out all formulas", Needs::kDatabase},

    CommandText{Command::kFind, "&Search", "&Find...", "Ctrl+F", "find", "Look for a text in the shown records", Needs::kRecords},
    CommandText{Command::kFindNext, "&Search", "Find &Next", "F3", "", "Go to the next cell with the text", Needs::kRecords},
    CommandText{Command::kFindPrevious, "&Search", "Find &Previous", "Shift+F3", "", "Go to the cell before with the text", Needs::kRecords},
    CommandText{Command::kSetFilter, "&Search|", "Set Search &Filter...", "Ctrl+Shift+L", "filter", "Show only the records whose current field is as you say", Needs::kTable},
    CommandText{Command::kClearFilter, "&Search", "&Clear Search Filter", "", "", "Take the filter of the current field away", Needs::kTable},
    CommandText{Command::kSearch, "&Search", "Searc&h (Ctrl+Enter)", "", "", "Search again with the filters that are set", Needs::kTable},
    CommandText{Command::kFindByValue, "&Search", "&Quick Search by Value", "Ctrl+Shift+F", "quick-search", "Show the records with the value of the current cell", Needs::kRecords},
    CommandText{Command::kShowAllRecords, "&Search", "Show &All Records (2 x Escape)", "", "", "Remove all search filters", Needs::kTable},
    CommandText{Command::kSortAscending, "&Search|", "&Ascending (+Shift)", "F7; Shift+F7", "ascending", "Sort by the current field; with Shift by a further one", Needs::kTable},
    CommandText{Command::kSortDescending, "&Search", "&Descending (+Shift)", "F8; Shift+F8", "descending", "Sort by the current field from its end; with Shift by a further one", Needs::kTable},
    CommandText{Command::kNoSorting, "&Search", "&No Sorting", "", "", "Show the records in the order in which they were entered", Needs::kTable},

    CommandText{Command::kShowExplorer, "&View", "&Database Explorer", "Ctrl+B", "explorer", "Show the tree of folders and tables", Needs::kNothing, true},
    CommandText{Command::kShowFindToolbar, "&View", "Find &Toolbar", "", "", "Keep the Find toolbar in view", Needs::kNothing, true},
    CommandText{Command::kZoomIn, "&View|", "Zoom &In", "Ctrl++; Ctrl+=", "", "Show the table larger", Needs::kGrid},
    CommandText{Command::kZoomOut, "&View", "Zoom &Out", "Ctrl+-", "", "Show the table smaller", Needs::kGrid},
    CommandText{Command::kZoomReset, "&View", "&Normal Size", "Ctrl+0", "", "Show the table in its normal size", Needs::kGrid},
    CommandText{Command::kFreezeFields, "&View|", "&Freeze Fields", "", "", "Let the fields up to the current one stay in view", Needs::kGridRecords},
    CommandText{Command::kFreezeRecords, "&View", "Freeze &Records", "", "", "Let the records above the current one stay in view", Needs::kGridRecords},
    CommandText{Command::kUnfreeze, "&View", "&Unfreeze", "", "", "Let all fields and records scroll again", Needs::kGrid},
    CommandText{Command::kMoreLines, "&View|", "&More Lines", "Ctrl+Alt+Down", "", "Show more lines of text in each record", Needs::kGrid},
    CommandText{Command::kFewerLines, "&View", "F&ewer Lines", "Ctrl+Alt+Up", "", "Show fewer lines of text in each record", Needs::kGrid},
    CommandText{Command::kDarkMode, "&View|", "&Dark Colors", "", "", "Bright text on a dark ground", Needs::kNothing, true},
    CommandText{Command::kOptions, "&View", "O&ptions...", "Ctrl+,", "", "How the program works"},

    CommandText{Command::kKeyboard, "&Help", "&Keyboard...", "F1", "", "The keys of all commands"},
    CommandText{Command::kRegisterFileType, "&Help|", "Register Rowvane *.rvb File Type", "", "", "Open databases with Rowvane from the desktop"},
    CommandText{Command::kUnregisterFileType, "&Help", "Unregister Rowvane *.rvb File Type", "", "", "Open databases with Rowvane no more"},
    CommandText{Command::kUninstall, "&Help", "&Uninstall...", "", "", "Take Rowvane off this computer"},
    CommandText{Command::kAbout, "&Help|", "&About Rowvane", "", "", "The version of the program"},
};
// clang-format on

QList<QKeySequence> shortcuts_of(const CommandText& command) {
  if (command.shortcut[0] == '\0') return {};
  return QKeySequence::listFromString(QString::fromLatin1(command.shortcut));
}

}  // namespace

std::span<const CommandText> command_texts() {
  return kCommands;
}

Actions::Actions(QObject* parent) : QObject(parent) {
  for (const CommandText& command : kCommands) {
    auto* action = new QAction(tr(command.text), this);
    action->setToolTip(tr(command.tip));
    action->setStatusTip(tr(command.tip));
    action->setShortcuts(shortcuts_of(command));
    action->setCheckable(command.checkable);
    if (command.icon[0] != '\0') action->setIcon(icon(command.icon));
    actions_.emplace(command.command, action);
  }
  actions_.at(Command::kExit)->setMenuRole(QAction::QuitRole);
}

void Actions::update(const std::function<bool(Needs)>& has) {
  for (const CommandText& command : kCommands) of(command.command)->setEnabled(has(command.needs));
}

}  // namespace rowvane
