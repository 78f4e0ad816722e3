#include "core/messages/messages.h"

#include <algorithm>
#include <array>

#include "core/program_version.h"

namespace rowvane {
namespace {

struct Message {
  MessageId id;
  std::string_view text;
};

const std::array kMessages = {
    Message{MessageId::kUninstall,
            "You are about to uninstall Rowvane from your system.\n\nIf there are any databases in the "
            "installation folder, they will be moved to the Recycle Bin.\n\nContinue?"},
    Message{MessageId::kUninstalled,
            "Rowvane was uninstalled.\nYou can now delete the remaining installation folder in the File "
            "Explorer window."},
    Message{MessageId::kUninstallForUser,
            "You are about to uninstall Rowvane from your system.\n\nIf there are any databases in the "
            "installation folder, they will be moved to the Recycle Bin.\n\nNote: A file type that was "
            "registered as an administrator is removed only when you uninstall as an "
            "administrator.\n\nContinue?"},
    Message{MessageId::kMaxRecordsChanged,
            "A new maximum number of records has been specified.\n\nYou must reload the database for the "
            "changes to take effect."},
    Message{MessageId::kTextNotNumeric,
            "Some data in the text table can not be converted to numeric field values."},
    Message{MessageId::kServerRegistered, "COM interfaces were registered."},
    Message{MessageId::kServerUnregistered, "COM interfaces were unregistered."},
    Message{MessageId::kTooManyRecordsInFile,
            "The number of records in the file is greater than the current\n'Settings > Maximum number of "
            "records' value.\nOverflowing records were discarded."},
    Message{MessageId::kTooManyColumnsInFile,
            "The number of fields (columns) in the file is greater than the maximum number of columns in "
            "Rowvane.\nOverflowing columns were discarded."},
    Message{MessageId::kCellsTruncated,
            "Some data fields (cells) in the file are longer than the maximum Rowvane text field "
            "length.\nOverflowing data was truncated."},
    Message{MessageId::kAutoFitSlow,
            "Selecting the 'Auto-fit column widths' and 'Auto-fit row heights'\noptions might slow down "
            "opening large text, xBase and html files. Continue?"},
    Message{MessageId::kTooManyKeyFields, "Please select no more than %1!d! fields as sort keys."},
    Message{MessageId::kProgramTitle, program_name_and_version()},
    Message{MessageId::kFileTypeRegistered, "Rowvane *.rvb file type registered successfully."},
    Message{MessageId::kFileTypeUnregistered, "Rowvane *.rvb file type unregistered successfully."},
    Message{MessageId::kOldFormat,
            "This database file uses the old format.\nIt will be converted and saved under a new name when "
            "you use the Save command."},
    Message{MessageId::kPasswordsDiffer, "The entered passwords do not match. Please re-type your password."},
    Message{MessageId::kPasswordTooShort, "Please enter at least 6 characters as a password."},
    Message{MessageId::kReadOnlyOpenQuestion,
            "The protection option you've selected will allow anyone to open this database in the "
            "'read-only' mode without using the password.\nContinue?"},
    Message{MessageId::kUseNativeFormat,
            "To apply your current password protection and encryption settings for this workbook, you must "
            "use the native binary file format.\n\nClick OK to switch to the binary file format and to "
            "continue saving the workbook."},
    Message{MessageId::kRecordsNotProtected,
            "Records in this file format will not be protected with your current password and encryption "
            "settings."},
    Message{MessageId::kTableNameExists,
            "A table with that name already exists. Please enter a unique name."},
    Message{MessageId::kFieldNameExists,
            "A field with that name already exists. Please enter a unique field name."},
    Message{MessageId::kConversionUnavailable,
            "Sorry, this type of conversion is not available.\n'Memo/Long Text' and 'Images/Files' fields "
            "can't be changed.\n"},
    Message{
        MessageId::kNothingToCompact,
        "The database contains neither 'Long Text' nor 'Images/Files' fields.\nNo compacting is necessary."},
    Message{MessageId::kNoCompactingRequired, "The database doesn't require compacting."},
    Message{MessageId::kCompacted, "The database was successfully compacted."},
    Message{MessageId::kNoRegistryPermission,
            "Your account does not have permission to update the registry database."},
    Message{MessageId::kFieldNameNeedsLetter, "Please enter a valid field name starting with a letter."},
    Message{
        MessageId::kNewTablesFound,
        "Rowvane found new tables in the opened archive.\n\nDo you want to add them to the database now?"},
    Message{MessageId::kTooManyRecordFlagTypes, "You can define up to 10 record flag types."},
    Message{
        MessageId::kFileNearLimit,
        "WARNING!\nThe size of the file is either near or already beyond its maximum limit of 4GB. Before "
        "closing it, please split the data or replace largests of the inserted files by shortcuts."},
    Message{MessageId::kProfileNotLoaded,
            "There was a problem with loading the profile file.\nThe default application settings are being "
            "used."},
    Message{MessageId::kUniqueNameNeeded, "Please enter a unique field or table name."},
    Message{MessageId::kFeaturesLostAsText,
            "You added some features to the databases that will be lost when saving in the current plain "
            "text format.\nConsider using the Save As command to switch to the *.rvb/*.zip format "
            "first.\n\nContinue anyway?"},
    Message{MessageId::kConvertToZip64,
            "This database file is in the standard older zip format\nused by Rowvane 16.4 and earlier "
            "versions.\n\nConvert this file to a newer zip64 format when saving?"},
};

// Reads "N!s!" or "N!d!" at the front of REST; answers its length, or 0.
size_t parse_place(std::string_view rest, size_t& number, char& kind) {
  if (rest.size() < 4 || rest[0] < '1' || rest[0] > '9') return 0;
  number = static_cast<size_t>(rest[0] - '0');
  kind = rest[2];
  return rest[1] == '!' && (kind == 's' || kind == 'd') && rest[3] == '!' ? 4 : 0;
}

bool append_insert(std::string& out, const MessageInsert& insert, char kind) {
  if (const auto* text = std::get_if<std::string_view>(&insert)) {
    if (kind == 's') out += *text;
    return kind == 's';
  }
  if (kind == 'd') out += std::to_string(std::get<long long>(insert));
  return kind == 'd';
}

}  // namespace

std::string_view message_text(MessageId id) {
  const auto* found =
      std::find_if(kMessages.begin(), kMessages.end(), [id](const Message& m) { return m.id == id; });
  return found != kMessages.end() ? found->text : std::string_view();
}

std::string fill_inserts(std::string_view text, std::initializer_list<MessageInsert> inserts) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%') {
      const std::string_view rest = text.substr(i + 1);
      if (!rest.empty() && rest[0] == '%') {
        out += '%';
        ++i;
        continue;
      }
      size_t number = 0;
      char kind = 0;
      const size_t length = parse_place(rest, number, kind);
      if (length > 0 && number <= inserts.size() && append_insert(out, inserts.begin()[number - 1], kind)) {
        i += length;
        continue;
      }
    }
    out += text[i];
  }
  return out;
}

std::string message(MessageId id, std::initializer_list<MessageInsert> inserts) {
  return fill_inserts(message_text(id), inserts);
}

}  // namespace rowvane
