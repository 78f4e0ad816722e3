// The numbered messages of the program: questions, notices and warnings, in one table.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace rowvane {

// Numbers are shown to users and scripts and never change.
enum class MessageId : int {
  kUninstall = 102,
  kUninstalled = 103,
  kUninstallForUser = 104,
  kMaxRecordsChanged = 106,
  kTextNotNumeric = 107,
  kServerRegistered = 108,
  kServerUnregistered = 109,
  kTooManyRecordsInFile = 123,
  kTooManyColumnsInFile = 124,
  kCellsTruncated = 125,
  kAutoFitSlow = 126,
  kTooManyKeyFields = 127,  // %1!d!: the limit
  kProgramTitle = 128,
  kFileTypeRegistered = 134,
  kFileTypeUnregistered = 135,
  kOldFormat = 144,
  kPasswordsDiffer = 146,
  kPasswordTooShort = 147,
  kReadOnlyOpenQuestion = 148,
  kUseNativeFormat = 149,
  kRecordsNotProtected = 150,
  kTableNameExists = 157,
  kFieldNameExists = 158,
  kConversionUnavailable = 173,
  kNothingToCompact = 174,
  kNoCompactingRequired = 175,
  kCompacted = 176,
  kNoRegistryPermission = 177,
  kFieldNameNeedsLetter = 180,
  kNewTablesFound = 183,
  kTooManyRecordFlagTypes = 187,
  kFileNearLimit = 188,
  kProfileNotLoaded = 189,
  kUniqueNameNeeded = 193,
  kFeaturesLostAsText = 196,
  kConvertToZip64 = 198,
};

// The text with its inserts in place, such as "%1!s!".
std::string_view message_text(MessageId id);

using MessageInsert = std::variant<std::string_view, long long>;

// Puts INSERTS into the places "%1!s!" (text) and "%1!d!" (number) of TEXT; "%%" gives "%". A place without
// an insert of its kind stays as it stands.
std::string fill_inserts(std::string_view text, std::initializer_list<MessageInsert> inserts);

std::string message(MessageId id, std::initializer_list<MessageInsert> inserts = {});

// Texts without a number.
namespace texts {

inline constexpr std::string_view kEntryTruncated = "The entered text will be truncated to max. 8192 bytes.";
inline constexpr std::string_view kConversionTruncated =  // %1!s!, %2!s!: the two type names
    "The conversion\n\n%1!s! -> %2!s!\n\nwas completed but some text data\ncontaining more than 8169 "
    "characters was truncated.";
inline constexpr std::string_view kNoConversionToFiles =
    "Conversion from \"Text\" or \"Number\" to \"Images/Files\" is not possible.\nPlease convert to \"Long "
    "Text\" or \"Code\" first.";
inline constexpr std::string_view kNoConversionFromFiles =
    "Conversion from \"Images/Files\" to \"Text\" or \"Number\" is not possible.\nPlease convert to \"Long "
    "Text\" or \"Code\" first.";
inline constexpr std::string_view kSaveCopyAndReload =
    "This conversion takes effect in a saved copy of the database.\nPlease save a database copy and reload "
    "it.";
inline constexpr std::string_view kParseDatesSlow =
    "Note: the \"Parse Dates\" option may significantly slow down opening a text file.\nIf the file is "
    "large, you can choose to parse only selected columns once the file is open\nusing the \"Edit > Convert "
    "Field Data > Text To Standard Date String\" command.\nContinue with the current settings?";
inline constexpr std::string_view kZip32Limits =
    "Zip32 files have a limit of 4GB for one database file and\nthe number of all memo fields and inserted "
    "images in one file\nis approx. 64K.\n\nZip64 doesn't have the above limitations, but some 3rd "
    "party\nzip archivers may use their own zip64 format variants\nso if for any reasons you need to edit "
    "such files without\nRowvane you should make sure the data exchange is possible.\n\nContinue?";

inline constexpr std::string_view kLaterObjectsLeftOut =  // %1!s!: tables, or the database
    "A newer Rowvane version keeps more with the following than this version can adapt to your changes. The "
    "file was saved without it: %1!s!";

inline constexpr std::string_view kInvalidFormula = "  Invalid formula!  ";
inline constexpr std::string_view kAutomaticUpdateMode =
    "This will switch to the automatic update mode for calculated fields.\n\nContinue?";
inline constexpr std::string_view kManualUpdateMode =
    "This will switch to the manual (F9) update mode for calculated fields.\n\nContinue?";
inline constexpr std::string_view kDisplayedUpdateSlow =
    "Updating all formulas in all displayed records may take a long time. Continue?";

}  // namespace texts

}  // namespace rowvane
