#include "core/messages/error_code.h"

#include <algorithm>
#include <array>

namespace rowvane {
namespace {

struct ErrorText {
  ErrorCode code;
  std::string_view text;
};

// In order of the codes. Users know these texts and search for them: the misspellings stay.
constexpr std::array kErrorTexts = {
    ErrorText{ErrorCode::kImageMemory, "Out of memory while loading an image"},
    ErrorText{ErrorCode::kTooManyImages, "Too many images in one document"},
    ErrorText{ErrorCode::kImageProtocol, "An unsupported image source (protocol)"},
    ErrorText{ErrorCode::kImageFormat, "An unsupported image format"},
    ErrorText{ErrorCode::kContainerMemory, "Out of memory while allocating container data"},
    ErrorText{ErrorCode::kImageNotFound, "Can't find the specified image on the image list"},
    ErrorText{ErrorCode::kTooManyContainerObjects, "There can be max. 255 objects in one container"},
    ErrorText{ErrorCode::kOutOfResources,
              "Out of memory or system resources.\nIf this happens while saving a large database, try using "
              "\"Save Database Copy As\" instead of \"Save\"."},
    ErrorText{ErrorCode::kLastTable, "A database must contain at least one table"},
    ErrorText{ErrorCode::kInvalidPath, "An invalid worksheet/folder path - not found"},
    ErrorText{ErrorCode::kInvalidCacheIndex, "An invalid cache index"},
    ErrorText{ErrorCode::kNoTableSelected, "No table selected"},
    ErrorText{ErrorCode::kTooManyStyles, "Too many styles in one document"},
    ErrorText{ErrorCode::kTooManyDropDownLists, "Too many drop-down lists in one document"},
    ErrorText{ErrorCode::kNoPagesToPrint, "No pages to print"},
    ErrorText{ErrorCode::kInvalidPageRange, "An invalid print page range"},
    ErrorText{ErrorCode::kZoomTooSmall, "The zoom factor is too small"},
    ErrorText{ErrorCode::kMarginTooSmall,
              "The current margin(s) is smaller than the min. margin of the printer"},
    ErrorText{ErrorCode::kNoPrinter, "No printer selected."},
    ErrorText{ErrorCode::kInvalidBinaryFormat, "An invalid binary file format"},
    ErrorText{ErrorCode::kNotEnoughColumns,
              "Not enought empty columns to the right of the last non-empty column"},
    ErrorText{ErrorCode::kNotEnoughRows, "Not enought empty rows below the last row non-empty row"},
    ErrorText{ErrorCode::kCryptographicKey, "Can't generate the cryptographic key"},
    ErrorText{ErrorCode::kInvalidPassword, "Invalid password"},
    ErrorText{ErrorCode::kClipboard, "Can't open the Clipboard"},
    ErrorText{ErrorCode::kTooManyRecords, "Too many records."},
    ErrorText{ErrorCode::kTooManySortKeys, "Too many sort keys"},
    ErrorText{ErrorCode::kInvalidDatabase, "Missing or invalid database specification."},
    ErrorText{ErrorCode::kInvalidExcelXmlDatabase,
              "Missing or invalid database specification.\nPlease check that the file has the structure of "
              "an Excel XML spreadsheet."},
    ErrorText{ErrorCode::kNoLabels, "No labels defined. You must define some label format first."},
    ErrorText{ErrorCode::kTooManyLabels, "Too many labels formats."},
    ErrorText{ErrorCode::kPrintAreaTooSmall,
              "The print are is too small. Please make sure page margins are set correctly."},
    ErrorText{ErrorCode::kTooManyPivotTables,
              "Too many pivot tables. The limit is 100 pivot tables per one database table."},
    ErrorText{ErrorCode::kPendingUpdates,
              "All pending updates must be terminated before changing the table."},
    ErrorText{ErrorCode::kFieldInPivotTable,
              "Can't delete this field because it's in use by one or more pivot tables. Please delete or "
              "modify those pivot tables first."},
    ErrorText{ErrorCode::kFieldTypeMismatch, "The entered data doesn't match the field type."},
    ErrorText{ErrorCode::kConversionRule, "Can't convert the data according to the defined conversion rule."},
    ErrorText{ErrorCode::kChartMemory, "Out of memory while creating a chart"},
    ErrorText{ErrorCode::kChartArrayFormula, "The chart requires an array formula"},
    ErrorText{ErrorCode::kChartStackedSeries, "The stacked series of the chart can't be combined"},
    ErrorText{ErrorCode::kChartAxisLimits, "Invalid limits of a chart axis"},
    ErrorText{ErrorCode::kChartTooManyAxes, "Too many chart axes"},
    ErrorText{ErrorCode::kChartTooManySeries, "Too many chart series"},
    ErrorText{ErrorCode::kChartTooManyGridlines, "Too many user gridlines in one chart"},
    ErrorText{ErrorCode::kFileOpen, "The specified file doesn't exist or can't be open"},
    ErrorText{ErrorCode::kFileCreate, "Can't create or open the specified file for writing"},
    ErrorText{ErrorCode::kFileClose, "Error while closing the specified file"},
    ErrorText{ErrorCode::kFileSeek, "Error while repositioning a file pointer"},
    ErrorText{ErrorCode::kFileRead, "Error while reading from a file"},
    ErrorText{ErrorCode::kFileWrite, "Error while writing to a file"},
    ErrorText{ErrorCode::kFileDelete, "Error while deleting a file"},
    ErrorText{ErrorCode::kFileInfo, "Error while checking the file size/info"},
    ErrorText{ErrorCode::kFileBuffer, "Error while allocating a file read/write buffer"},
    ErrorText{ErrorCode::kFileInUse, "Can't open the specified file. File in use."},
    ErrorText{ErrorCode::kFileDecrypt, "Error while decrypting a file"},
    ErrorText{ErrorCode::kFileEncrypt, "Error while encrypting a file"},
    ErrorText{ErrorCode::kBinaryFieldsCorrupted,
              "Error while reading binary fields: the file might be corrupted."},
    ErrorText{ErrorCode::kFolderPath, "Can't use a folder path. A file path is required."},
    ErrorText{ErrorCode::kBinaryFieldsTooLarge,
              "The file containing long-text and images/files fields exceeded the 2 GB limit.\nPlease split "
              "the database or compact it."},
    ErrorText{ErrorCode::kHtmlTableIdNotFound,
              "Can't find the HTML TABLE element with the specified identifying attribute"},
    ErrorText{ErrorCode::kHtmlTableNotFound, "Can't find any HTML TABLE element"},
    ErrorText{ErrorCode::kUtf8Only, "Only UTF-8 encoding is supported"},
    ErrorText{ErrorCode::kManifest, "Can't find the manifest file or its content is incorrect."},
    ErrorText{ErrorCode::kNewerVersion, "The file format requires a newer Rowvane version."},
    ErrorText{ErrorCode::kJpegLibrary, "Can't load the JPEG library \"ijl15.dll\""},
    ErrorText{ErrorCode::kJpegRead, "Error while reading a JPEG image"},
    ErrorText{ErrorCode::kJpegWrite, "Error while writing a JPEG image"},
    ErrorText{ErrorCode::kPngLibrary, "Can't initialize the PNG codec"},
    ErrorText{ErrorCode::kPngRead, "Error while reading a PNG image"},
    ErrorText{ErrorCode::kPngWrite, "Error while writing a PNG image"},
    ErrorText{ErrorCode::kBitmapRead, "Error while reading a bitmap"},
    ErrorText{ErrorCode::kBitmapWrite, "Error while writing a bitmap"},
    ErrorText{ErrorCode::kBitmapFormat, "An unsupported bitmap format"},
    ErrorText{ErrorCode::kXmlMemory, "Ouf of memory while reading an XML file"},
    ErrorText{ErrorCode::kXmlElement, "An unexpected XML element"},
    ErrorText{ErrorCode::kXmlAttributeValue, "An invalid XML attribute value"},
    ErrorText{ErrorCode::kXmlMissingAttribute, "A missing XML attribute"},
    ErrorText{ErrorCode::kXmlElementData, "Invalid XML element data"},
    ErrorText{ErrorCode::kXmlUtf8Only, "Only UTF-8 encoding is supported in XML files"},
    ErrorText{ErrorCode::kXmlCdataTooLong, "CDATA data is too long (max. 0.5MB is supported)."},
    ErrorText{ErrorCode::kRecordSize, "Too many database fields - max. record size = 64K"},
    ErrorText{ErrorCode::kOutOfMemory, "Out of memory."},
    ErrorText{ErrorCode::kNoSourceRows, "Source data must contain at least one row."},
    ErrorText{ErrorCode::kPivotOutputColumns,
              "Too many pivot table output columns. The limit is 16384 minus the row columns minus 2."},
    ErrorText{ErrorCode::kTooManyZipStreams,
              "Too many zip streams in the database file.\nThe total number of tables and binary fields "
              "can't exceed 65,535."},
    ErrorText{ErrorCode::kZipState, "Inconsistent zip stream state"},
    ErrorText{ErrorCode::kZipCorrupted, "Corrupted zip stream data"},
    ErrorText{ErrorCode::kZipMemory, "Out of memory while processing a zip stream"},
    ErrorText{ErrorCode::kZipUnexpectedEnd, "Unexpected end of zip stream"},
    ErrorText{ErrorCode::kZlibVersion, "Zlib version mismatch"},
    ErrorText{ErrorCode::kZlibUnknown, "Uknown zlib error"},
    ErrorText{ErrorCode::kPcre, "Internal PCRE error"},
    ErrorText{ErrorCode::kOutputTooLong, "The output string is too long"},
    ErrorText{ErrorCode::kInvalidUtf8,
              "The text contains an invalid UTF-8 sequence.\nPlease try the \"ANSI\" encoding instead of "
              "\"UTF-8\"."},
    ErrorText{ErrorCode::kNameNotUnique, "Names within the same folder or table must be unique."},
    ErrorText{ErrorCode::kLastField, "A table must contain at least one field"},
    ErrorText{ErrorCode::kNotNumeric,
              "Some data in the text table can't be converted to numeric field values."},
    ErrorText{ErrorCode::kValidation, "The entered data doesn't match the validation formula."},
    ErrorText{ErrorCode::kPartialTables,
              "The file couldn't be read completely. Partially read tables are shown for debugging only."},
    ErrorText{ErrorCode::kEncryptedDataChanged,
              "Detected changes in some of the encrypted field data.\nYou can't save modified encrypted "
              "contents because you won't be able to decrypt the data."},
    ErrorText{ErrorCode::kEncryptedField,
              "Encrypted fields can't be edited. You need to decrypt them first."},
    ErrorText{ErrorCode::kPathTooLong, "The resulting file path is too long."},
    ErrorText{ErrorCode::kFileExists, "Can't perform renaming if a file already exists."},
    ErrorText{ErrorCode::kNoFileName, "The specified file path doesn't contain any valid file name."},
    ErrorText{ErrorCode::kPathNotFound, "The specified file path doesn't exist."},
};

static_assert(std::is_sorted(kErrorTexts.begin(), kErrorTexts.end(),
                             [](const ErrorText& a, const ErrorText& b) { return a.code < b.code; }));

}  // namespace

std::string_view error_text(ErrorCode code) {
  const auto* found =
      std::lower_bound(kErrorTexts.begin(), kErrorTexts.end(), code,
                       [](const ErrorText& entry, ErrorCode wanted) { return entry.code < wanted; });
  return found != kErrorTexts.end() && found->code == code ? found->text : "No error";
}

}  // namespace rowvane
